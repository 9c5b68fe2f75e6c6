#include "ui/controls.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QLineEdit>

QLabel* LabelFor(QWidget* control, const char* name, const QString& text) {
  auto* label = Named<QLabel>(name, text);
  label->setBuddy(control);
  QString words = text;
  words.remove(QLatin1Char('&'));
  if (words.endsWith(QLatin1Char(':'))) words.chop(1);
  control->setAccessibleName(words);
  // The text box and the entries of a list are controls of their own to a screen reader.
  if (const auto* list = qobject_cast<QComboBox*>(control); list != nullptr) {
    list->view()->setAccessibleName(words);
    if (list->isEditable()) list->lineEdit()->setAccessibleName(words);
  }
  return label;
}

QLabel* HintLabel(const char* name, int lines) {
  auto* label = Named<QLabel>(name);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  label->setMinimumHeight(lines * label->fontMetrics().lineSpacing());
  return label;
}
