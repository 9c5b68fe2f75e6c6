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
  std::string base_start;  // what ChooseBase or ChooseNewBase was to show first
  std::optional<std::string> folder;
  std::vector<std::string> pages;

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
  std::optional<std::string> ChooseNewBase(QWidget* parent, const std::string& start) override {
    return ChooseBase(parent, start);
  }
  std::optional<std::string> ChooseFolder(QWidget*, const QString&, const std::string&) override { return folder; }
  std::vector<std::string> ChoosePages(QWidget*, const std::string&) override { return pages; }
};
