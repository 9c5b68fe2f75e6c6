#pragma once

#include <stdexcept>
#include <string>

#include <QPushButton>
#include <QWidget>

#include <gtest/gtest.h>

#include "base/ru_literal.h"
#include "support/fixed_clock.h"
#include "support/scripted_dialogs.h"
#include "support/temp_folder.h"
#include "upkeep/ui/upkeep_needs.h"

/// A program folder with two forums, and a user who answers as the test says.
class UpkeepStage : public testing::Test {
 protected:
  UpkeepStage() {
    folder_.Put("forum.ini",
                "[FORUMS]\r\nmax=2\r\nf1=kdv\r\nf2=ptrv\r\n[kdv]\r\nNAME=Форум КДВ\r\nPATHDB=kdv\\\r\n"
                "[ptrv]\r\nNAME=Площадь\r\nStopDownLoad=1\r\n"_ru);
  }

  template <typename Control>
  static Control* Find(const QWidget& window, const char* name) {
    auto* control = window.findChild<Control*>(QString::fromLatin1(name));
    if (control == nullptr) throw std::runtime_error(name);
    return control;
  }
  static void Click(const QWidget& window, const char* name) { Find<QPushButton>(window, name)->click(); }

  TempFolder folder_;
  DiskFileSystem files_;
  FixedClock clock_{2024, 3, 15};
  mdl_AZ::ForumIni ini_{files_, folder_.path()};
  ScriptedDialogs dialogs_;
  UpkeepNeeds needs_{files_, clock_, ini_, dialogs_};
};
