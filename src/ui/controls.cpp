#include "ui/controls.h"

#include <QComboBox>
#include <QLineEdit>

QLabel* LabelFor(QWidget* control, const char* name, const QString& text) {
  auto* label = Named<QLabel>(name, text);
  label->setBuddy(control);
  QString words = text;
  words.remove(QLatin1Char('&'));
  if (words.endsWith(QLatin1Char(':'))) words.chop(1);
  control->setAccessibleName(words);
  // The text box of a list is a control of its own to a screen reader.
  if (const auto* list = qobject_cast<QComboBox*>(control); list != nullptr && list->isEditable())
    list->lineEdit()->setAccessibleName(words);
  return label;
}
