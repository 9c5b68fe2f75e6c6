#include "config/ui/frmOpen.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "base/ru_literal.h"
#include "support/fixed_clock.h"
#include "support/memory_settings.h"
#include "support/scripted_dialogs.h"
#include "support/temp_folder.h"
#include "ui/text.h"

namespace {

using testing::ElementsAre;

class FrmOpen : public testing::Test {
 protected:
  FrmOpen() {
    folder_.Put("forum.ini",
                "[FORUMS]\r\nmax=3\r\nf1=kdv\r\nf2=ptrv\r\nf3=moysha\r\n"
                "[kdv]\r\nNAME=Форум КДВ\r\nPATHDB=kdv\\\r\n[ptrv]\r\nNAME=Площадь\r\nStopDownLoad=1\r\n"
                "[moysha]\r\nNAME=Беседка\r\nPATHDB=none\\\r\n"_ru);
    folder_.Put("kdv/KDV_2002.mdb");
    folder_.Put("kdv/kdv_2003.mdb");
    folder_.Put("ptrv_2001.mdb");
  }

  template <typename Control>
  static Control* Find(const frmOpen& dialog, const char* name) {
    auto* control = dialog.findChild<Control*>(QString::fromLatin1(name));
    if (control == nullptr) throw std::runtime_error(name);
    return control;
  }
  static QComboBox* List(const frmOpen& dialog, const char* name) { return Find<QComboBox>(dialog, name); }
  static std::vector<std::string> Entries(const QComboBox* list) {
    std::vector<std::string> texts;
    for (int i = 0; i < list->count(); ++i) texts.push_back(list->itemText(i).toStdString());
    return texts;
  }
  static std::string BaseText(const frmOpen& dialog) {
    return Find<QLineEdit>(dialog, "txtBase")->text().toStdString();
  }
  static void Click(const frmOpen& dialog, const char* name) { Find<QPushButton>(dialog, name)->click(); }

  TempFolder folder_;
  DiskFileSystem files_;
  mdl_AZ::ForumIni ini_{files_, folder_.path()};
  FixedClock clock_{2002, 3, 15};
  mdl_AZ::ForumLog log_{ini_, files_, clock_};
  MemorySettings settings_;
  ScriptedDialogs dialogs_;
};

TEST_F(FrmOpen, AFirstStartOffersForumsDaysAndCaptionsAndHasNoBaseChosen) {
  const frmOpen dialog(ini_, log_, settings_, dialogs_);
  EXPECT_THAT(Entries(List(dialog, "cmbSpec")), ElementsAre("  ", "Форум КДВ", "Беседка"));
  EXPECT_THAT(Entries(List(dialog, "cmbDays")), ElementsAre("15", "30", "45", "60", "Весь архив"));
  EXPECT_THAT(Entries(List(dialog, "cmbFormat")), ElementsAre("Тема", "Тема - Автор", "Тема - Автор - Дата"));
  EXPECT_EQ(List(dialog, "cmbDays")->currentText(), "30");
  EXPECT_EQ(BaseText(dialog), "не выбран");
  EXPECT_THAT(Entries(List(dialog, "cmbBase")), ElementsAre("Площадь (ptrv_2001.mdb )"));
  EXPECT_EQ(List(dialog, "cmbBase")->currentIndex(), -1);
  EXPECT_EQ(dialog.ChosenBase(), "");
}

TEST_F(FrmOpen, PresetsTheStoredSettings) {
  settings_.Set("DefaultBase", folder_.path() + "\\PTRV_2001.mdb");  // as another system wrote it
  settings_.Set("LoadDays", "Весь архив");
  settings_.Set("MessageFormat", "Тема - Автор");
  const frmOpen dialog(ini_, log_, settings_, dialogs_);
  EXPECT_EQ(dialog.ChosenBase(), folder_ / "ptrv_2001.mdb");
  EXPECT_EQ(List(dialog, "cmbBase")->currentIndex(), 0);
  EXPECT_EQ(List(dialog, "cmbDays")->currentText(), "Весь архив");
  EXPECT_EQ(List(dialog, "cmbFormat")->currentText(), "Тема - Автор");
}

TEST_F(FrmOpen, ChoosingAForumSelectsItsNewestBase) {
  const frmOpen dialog(ini_, log_, settings_, dialogs_);
  List(dialog, "cmbSpec")->setCurrentIndex(1);
  EXPECT_THAT(Entries(List(dialog, "cmbBase")), ElementsAre("Форум КДВ (kdv_2003.mdb )", "Форум КДВ (kdv_2002.mdb )"));
  EXPECT_EQ(BaseText(dialog), folder_ / "kdv/kdv_2003.mdb");
  List(dialog, "cmbBase")->setCurrentIndex(1);
  EXPECT_EQ(dialog.ChosenBase(), folder_ / "kdv/KDV_2002.mdb");  // the real spelling
  for (const QWidget* control : {static_cast<QWidget*>(List(dialog, "cmbBase")), Find<QWidget>(dialog, "txtBase")})
    EXPECT_EQ(control->toolTip().toStdString(), folder_ / "kdv/KDV_2002.mdb");

  List(dialog, "cmbSpec")->setCurrentIndex(2);  // its folder does not exist
  EXPECT_EQ(List(dialog, "cmbBase")->count(), 0);
  EXPECT_EQ(BaseText(dialog), folder_ / "kdv/KDV_2002.mdb");  // unchanged
  EXPECT_TRUE(Find<QLabel>(dialog, "lblHint")->text().contains(QStringLiteral("Обзор…")));
  List(dialog, "cmbSpec")->setCurrentIndex(0);
  EXPECT_EQ(BaseText(dialog), folder_ / "ptrv_2001.mdb");
}

TEST_F(FrmOpen, BrowsingTakesAnyFileThatExists) {
  const frmOpen dialog(ini_, log_, settings_, dialogs_);
  Click(dialog, "cmdBrowse");  // cancelled
  EXPECT_EQ(dialogs_.base_start, folder_.path());
  dialogs_.base = folder_ / "gone.mdb";
  Click(dialog, "cmdBrowse");
  EXPECT_THAT(dialogs_.told, ElementsAre(QStringLiteral("Такого файла не существует !")));
  EXPECT_EQ(dialog.ChosenBase(), "");
  dialogs_.base = folder_.Put("日本.mdb");
  Click(dialog, "cmdBrowse");
  EXPECT_EQ(dialog.ChosenBase(), folder_ / "日本.mdb");
  EXPECT_EQ(List(dialog, "cmbBase")->currentIndex(), -1);
}

TEST_F(FrmOpen, OkWantsABaseAndANumberOfDays) {
  frmOpen dialog(ini_, log_, settings_, dialogs_);
  Click(dialog, "cmdOK");
  EXPECT_EQ(dialogs_.told.back(), "Выберите базу сообщений (mdb файл) для загрузки !");
  List(dialog, "cmbBase")->setCurrentIndex(0);
  for (const char* days : {"0", "", "abc"}) {
    dialogs_.told.clear();
    List(dialog, "cmbDays")->setCurrentText(days);
    Click(dialog, "cmdOK");
    EXPECT_THAT(dialogs_.told, ElementsAre(QStringLiteral("Ошибка во введенном числе дней"))) << days;
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
  }
  EXPECT_EQ(settings_.saves(), 0);

  List(dialog, "cmbDays")->setCurrentText("Весь архив");
  List(dialog, "cmbFormat")->setCurrentIndex(2);
  Click(dialog, "cmdOK");
  EXPECT_EQ(dialog.result(), QDialog::Accepted);
  EXPECT_EQ(dialog.ChosenBase(), folder_ / "ptrv_2001.mdb");
  EXPECT_EQ(settings_.Get("LoadDays", ""), "Весь архив");
  EXPECT_EQ(settings_.Get("MessageFormat", ""), "Тема - Автор - Дата");
  EXPECT_EQ(settings_.Get("DefaultBase", "none"), "none");  // the properties dialog's affair
}

TEST_F(FrmOpen, TheArchiveButtonBeginsWithTheDaysOfTheOpenBase) {
  frmOpen dialog(ini_, log_, settings_, dialogs_);
  dialog.StartWithDays(folder_ / "ptrv_2001.mdb");
  dialog.show();
  EXPECT_EQ(dialog.focusWidget(), List(dialog, "cmbDays"));
  EXPECT_EQ(dialog.ChosenBase(), folder_ / "ptrv_2001.mdb");
}

TEST_F(FrmOpen, AForumListThatCannotBeReadIsExplainedAndBrowsingStillWorks) {
  folder_.Put("forum.ini", "[FORUMS]\r\nmax=many\r\n");
  const frmOpen dialog(ini_, log_, settings_, dialogs_);
  EXPECT_TRUE(Find<QLabel>(dialog, "lblHint")->text().contains(QStringLiteral("forum.ini")));
  dialogs_.base = folder_ / "ptrv_2001.mdb";
  Click(dialog, "cmdBrowse");
  EXPECT_EQ(dialog.ChosenBase(), folder_ / "ptrv_2001.mdb");
}

TEST_F(FrmOpen, EveryControlHasALabelForTheEyeAndTheScreenReader) {
  const frmOpen dialog(ini_, log_, settings_, dialogs_);
  for (const char* name : {"cmbSpec", "cmbBase", "txtBase", "cmbDays", "cmbFormat"}) {
    const auto* control = Find<QWidget>(dialog, name);
    EXPECT_FALSE(control->accessibleName().isEmpty()) << name;
    const auto labels = dialog.findChildren<QLabel*>();
    EXPECT_TRUE(std::any_of(labels.begin(), labels.end(), [&](QLabel* label) { return label->buddy() == control; }))
        << name;
  }
}

}  // namespace
