#include "config/ui/frmOpen.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/ru_literal.h"
#include "support/memory_settings.h"
#include "support/offscreen_app.h"
#include "support/program_stage.h"
#include "support/scripted_dialogs.h"
#include "ui/text.h"

namespace {

const auto* const app = testing::AddGlobalTestEnvironment(new OffscreenApp);

using testing::ElementsAre;

class FrmOpen : public testing::Test, protected ProgramStage {
 protected:
  FrmOpen() {
    folder_.Put("forum.ini",
                "[FORUMS]\r\nmax=3\r\nf1=kdv\r\nf2=ptrv\r\nf3=moysha\r\n"
                "[kdv]\r\nNAME=Форум КДВ\r\nPATHDB=kdv\\\r\n[ptrv]\r\nNAME=Площадь\r\nStopDownLoad=1\r\n"
                "[moysha]\r\nNAME=Беседка\r\nPATHDB=none\\\r\n"_ru);
    for (const char* base : {"kdv/KDV_2002.mdb", "kdv/kdv_2003.mdb", "ptrv_2001.mdb"}) folder_.Put(base);
  }

  void Open() { dialog_ = std::make_unique<frmOpen>(ini_, log_, settings_, dialogs_); }
  template <typename Control>
  Control* Find(const char* name) const {
    auto* control = dialog_->findChild<Control*>(QString::fromLatin1(name));
    if (control == nullptr) throw std::runtime_error(name);
    return control;
  }
  QComboBox* List(const char* name) const { return Find<QComboBox>(name); }
  std::vector<std::string> Entries(const char* name) const {
    std::vector<std::string> texts;
    for (int i = 0; i < List(name)->count(); ++i) texts.push_back(List(name)->itemText(i).toStdString());
    return texts;
  }
  std::string BaseText() const { return Find<QLineEdit>("txtBase")->text().toStdString(); }
  bool HintSays(const QString& words) const { return Find<QLabel>("lblHint")->text().contains(words); }
  void Click(const char* name) { Find<QPushButton>(name)->click(); }

  MemorySettings settings_;
  ScriptedDialogs dialogs_;
  std::unique_ptr<frmOpen> dialog_;
};

TEST_F(FrmOpen, AFirstStartOffersForumsDaysAndCaptionsAndHasNoBaseChosen) {
  Open();
  EXPECT_THAT(Entries("cmbSpec"), ElementsAre("  ", "Форум КДВ", "Беседка"));
  EXPECT_THAT(Entries("cmbDays"), ElementsAre("15", "30", "45", "60", "Весь архив"));
  EXPECT_THAT(Entries("cmbFormat"), ElementsAre("Тема", "Тема - Автор", "Тема - Автор - Дата"));
  EXPECT_THAT(Entries("cmbBase"), ElementsAre("Площадь (ptrv_2001.mdb )"));
  EXPECT_EQ(List("cmbDays")->currentText(), "30");
  EXPECT_EQ(BaseText(), "не выбран");
  EXPECT_EQ(List("cmbBase")->currentIndex(), -1);
  EXPECT_EQ(dialog_->ChosenBase(), "");
  const auto labels = dialog_->findChildren<QLabel*>();
  for (const char* name : {"cmbSpec", "cmbBase", "txtBase", "cmbDays", "cmbFormat"}) {
    const auto* control = Find<QWidget>(name);
    EXPECT_FALSE(control->accessibleName().isEmpty()) << name;
    EXPECT_TRUE(std::any_of(labels.begin(), labels.end(), [&](QLabel* label) { return label->buddy() == control; }))
        << name << " has no label for the eye";
  }
}

TEST_F(FrmOpen, PresetsTheStoredSettings) {
  settings_.Set("DefaultBase", folder_.path() + "\\PTRV_2001.mdb");  // as another system wrote it
  settings_.Set("LoadDays", "Весь архив");
  settings_.Set("MessageFormat", "Тема - Автор");
  Open();
  EXPECT_EQ(dialog_->ChosenBase(), folder_ / "ptrv_2001.mdb");
  EXPECT_EQ(List("cmbBase")->currentIndex(), 0);
  EXPECT_EQ(List("cmbDays")->currentText(), "Весь архив");
  EXPECT_EQ(List("cmbFormat")->currentText(), "Тема - Автор");
}

TEST_F(FrmOpen, ChoosingAForumSelectsItsNewestBase) {
  Open();
  List("cmbSpec")->setCurrentIndex(1);
  EXPECT_THAT(Entries("cmbBase"), ElementsAre("Форум КДВ (kdv_2003.mdb )", "Форум КДВ (kdv_2002.mdb )"));
  EXPECT_EQ(BaseText(), folder_ / "kdv/kdv_2003.mdb");
  List("cmbBase")->setCurrentIndex(1);
  const std::string real_spelling = folder_ / "kdv/KDV_2002.mdb";
  EXPECT_EQ(dialog_->ChosenBase(), real_spelling);
  for (const char* name : {"cmbBase", "txtBase"})
    EXPECT_EQ(Find<QWidget>(name)->toolTip().toStdString(), real_spelling);

  List("cmbSpec")->setCurrentIndex(2);  // its folder does not exist
  EXPECT_EQ(List("cmbBase")->count(), 0);
  EXPECT_EQ(BaseText(), real_spelling) << "unchanged";
  EXPECT_TRUE(HintSays(QStringLiteral("Обзор…")));
  List("cmbSpec")->setCurrentIndex(0);
  EXPECT_EQ(BaseText(), folder_ / "ptrv_2001.mdb");
}

TEST_F(FrmOpen, BrowsingTakesAnyFileThatExists) {
  Open();
  Click("cmdBrowse");  // cancelled
  EXPECT_EQ(dialogs_.base_start, folder_.path());
  dialogs_.base = folder_ / "gone.mdb";
  Click("cmdBrowse");
  EXPECT_THAT(dialogs_.told, ElementsAre(QStringLiteral("Такого файла не существует !")));
  EXPECT_EQ(dialog_->ChosenBase(), "");
  dialogs_.base = folder_.Put("日本.mdb");
  Click("cmdBrowse");
  EXPECT_EQ(dialog_->ChosenBase(), folder_ / "日本.mdb");
  EXPECT_EQ(List("cmbBase")->currentIndex(), -1);
}

TEST_F(FrmOpen, OkWantsABaseAndANumberOfDays) {
  Open();
  Click("cmdOK");
  EXPECT_EQ(dialogs_.told.back(), "Выберите базу сообщений (mdb файл) для загрузки !");
  List("cmbBase")->setCurrentIndex(0);
  for (const char* days : {"0", "", "abc"}) {
    dialogs_.told.clear();
    List("cmbDays")->setCurrentText(days);
    Click("cmdOK");
    EXPECT_THAT(dialogs_.told, ElementsAre(QStringLiteral("Ошибка во введенном числе дней"))) << days;
    EXPECT_EQ(dialog_->result(), QDialog::Rejected);
  }
  EXPECT_EQ(settings_.saves(), 0);

  List("cmbDays")->setCurrentText("Весь архив");
  List("cmbFormat")->setCurrentIndex(2);
  Click("cmdOK");
  EXPECT_EQ(dialog_->result(), QDialog::Accepted);
  EXPECT_EQ(dialog_->ChosenBase(), folder_ / "ptrv_2001.mdb");
  EXPECT_EQ(settings_.Get("LoadDays", ""), "Весь архив");
  EXPECT_EQ(settings_.Get("MessageFormat", ""), "Тема - Автор - Дата");
  EXPECT_EQ(settings_.Get("DefaultBase", "none"), "none");  // the properties dialog's affair
}

TEST_F(FrmOpen, TheArchiveButtonBeginsWithTheDaysOfTheOpenBase) {
  Open();
  dialog_->StartWithDays(folder_ / "ptrv_2001.mdb");
  EXPECT_EQ(dialog_->focusWidget(), List("cmbDays"));
  EXPECT_EQ(dialog_->ChosenBase(), folder_ / "ptrv_2001.mdb");
}

TEST_F(FrmOpen, AForumListThatCannotBeReadIsExplainedAndBrowsingStillWorks) {
  folder_.Put("forum.ini", "[FORUMS]\r\nmax=many\r\n");
  Open();
  EXPECT_TRUE(HintSays(QStringLiteral("forum.ini")));
  dialogs_.base = folder_ / "ptrv_2001.mdb";
  Click("cmdBrowse");
  EXPECT_EQ(dialog_->ChosenBase(), folder_ / "ptrv_2001.mdb");
}

}  // namespace
