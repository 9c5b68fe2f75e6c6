#include "ui/choice_lists.h"

#include "ui/controls.h"

QComboBox* ChoiceList(const char* name) {
  auto* list = Named<QComboBox>(name);
  list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  list->setMinimumContentsLength(12);
  list->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  return list;
}

QComboBox* FreeChoiceList(const char* name) {
  QComboBox* list = ChoiceList(name);
  list->setEditable(true);
  list->setInsertPolicy(QComboBox::NoInsert);
  list->setCompleter(nullptr);  // it would turn a typed 3 into 30
  return list;
}
