#pragma once

#include <string>
#include <vector>

#include <QString>

#include "ui/dialogs.h"

/// Answers the program's questions as a test wants, and remembers what was told and asked.
class ScriptedDialogs : public Dialogs {
 public:
  std::vector<QString> told;   // every text, in order
  std::vector<QString> asked;  // likewise
  bool ok = true;              // the answer to OK or Cancel
  QString line;                // the answer to a question for a line
  std::optional<std::string> base;
  std::string base_start;  // what ChooseBase was to show first

  void Tell(QWidget*, const QString& text, BoxIcon, const QString&) override { told.push_back(text); }
  bool AskOkCancel(QWidget*, const QString& text, BoxIcon, const QString&) override {
    asked.push_back(text);
    return ok;
  }
  QString AskLine(QWidget*, const QString& prompt, const QString&) override {
    asked.push_back(prompt);
    return line;
  }
  std::optional<std::string> ChooseBase(QWidget*, const std::string& start) override {
    base_start = start;
    return base;
  }
};
