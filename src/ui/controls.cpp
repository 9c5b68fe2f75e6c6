#include "ui/controls.h"

QLabel* LabelFor(QWidget* control, const char* name, const QString& text) {
  auto* label = Named<QLabel>(name, text);
  label->setBuddy(control);
  QString words = text;
  words.remove(QLatin1Char('&'));
  if (words.endsWith(QLatin1Char(':'))) words.chop(1);
  control->setAccessibleName(words);
  return label;
}
