#pragma once

#include <utility>

#include <QLabel>
#include <QString>
#include <QWidget>

#include "ui/dialogs.h"  // every window that has controls also tells and asks

/// Makes a control that is found by its object name; what follows goes to its constructor. A layout
/// or a parent owns it in the end.
template <typename Control, typename... Arguments>
Control* Named(const char* name, Arguments&&... arguments) {
  auto* control = new Control(std::forward<Arguments>(arguments)...);
  control->setObjectName(QString::fromLatin1(name));
  return control;
}

/// The label of a control, with the mnemonic that leads to it; the control takes the label's words as
/// its accessible name.
/// @param text  "&Форум:"; the colon and the mark are not part of the name
QLabel* LabelFor(QWidget* control, const char* name, const QString& text);

/// A place for sentences that come and go. The window keeps its size whatever it says in so many lines.
QLabel* HintLabel(const char* name, int lines);
