#pragma once

#include <string_view>

#include <QComboBox>

#include "ui/text.h"

/// A drop-down list that takes the width of its place, not that of its longest entry.
QComboBox* ChoiceList(const char* name);
/// The same with a field for a text of the user's own, which is taken as it is typed.
QComboBox* FreeChoiceList(const char* name);

/// @param texts  Windows-1251
template <typename Texts>
void AddEntries(QComboBox* list, const Texts& texts) {
  for (const std::string_view text : texts) list->addItem(FromCp1251(text));
}
