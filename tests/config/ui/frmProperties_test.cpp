#include "config/ui/frmProperties.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <optional>

#include "support/memory_settings.h"
#include "support/scripted_dialogs.h"
#include "support/temp_folder.h"
#include "ui/text.h"

namespace {

using Values = std::map<std::string, std::string>;

class FrmProperties : public testing::Test {
 protected:
  /// A dialog over these settings alone.
  void Open(const Values& stored) {
    settings_ = {};
    dialogs_.told.clear();
    for (const auto& [key, value] : stored) settings_.Set(key, value);
    dialog_ = std::make_unique<frmProperties>(PropertiesNeeds{settings_, dialogs_, folder_.path()});
  }
  template <typename Control>
  Control* Find(const char* name) {
    return dialog_->findChild<Control*>(QString::fromLatin1(name));
  }
  QComboBox* List(const char* name) { return Find<QComboBox>(name); }
  void Click(const char* name) { Find<QAbstractButton>(name)->click(); }
  /// What is marked, then what the lists say, then the size of the text that they lead to.
  QString Shown() {
    QString marks;
    for (const char* name : {"chkThread", "chkDate", "chkAuthor", "chkAutoLoad", "optAll", "optNew", "optNo"})
      if (Find<QAbstractButton>(name)->isChecked()) marks.append(name + 3).append(" ");
    QStringList lists;
    for (const char* name : {"cmbDays", "cmbHighLight", "cmbFormat", "cmbTextSize"}) lists << List(name)->currentText();
    return marks + lists.join(",") + " size " + QString::number(dialog_->TextSize());
  }

  TempFolder folder_;
  MemorySettings settings_;
  ScriptedDialogs dialogs_;
  std::unique_ptr<frmProperties> dialog_;
};

TEST_F(FrmProperties, ShowsWhatIsStoredAndStoresWhatItShows) {
  const struct {
    Values stored;
    const char *shown, *saved;
  } cases[] = {
      {{}, "30,2,, size 0", "0,0,0,0,none,30,none"},
      {{{"BuildTreeByThread", "1"}, {"BuildTreeByAuthor", "2x"}, {"OpenThreads", "All"}, {"TextFontSize", "1e400"}},
       "Thread Author All 30,2,,1e400 size 144",
       "1,0,1,0,All,30,none"},
      {{{"BuildTreeByDate", "1"}, {"OpenThreads", "New"}, {"MessageFormat", "Автор"}},
       "Date New 30,2,Автор, size 0",
       "0,1,0,0,New,30,none"},
      {{{"OpenThreads", "Some"}, {"LoadDays", "Весь архив"}, {"TextFontSize", "10.5 пт"}},
       "Весь архив,2,,10.5 пт size 10.5",
       "0,0,0,0,Some,Весь архив,none"},
      {{{"DefaultBase", "/日本.mdb"}, {"DefaultBaseAutoLoad", "1"}},
       "AutoLoad 30,2,, size 0",
       "0,0,0,1,none,30,/日本.mdb"},
  };
  for (const auto& c : cases) {
    Open(c.stored);
    EXPECT_EQ(Shown(), c.shown);
    Click("cmdOK");
    QStringList saved;
    for (const char* key : {"BuildTreeByThread", "BuildTreeByDate", "BuildTreeByAuthor", "DefaultBaseAutoLoad",
                            "OpenThreads", "LoadDays", "DefaultBase"})
      saved << QString::fromStdString(settings_.Get(key, "none"));
    EXPECT_EQ(saved.join(","), c.saved);
    EXPECT_EQ(settings_.saves(), 1);
  }
}

TEST_F(FrmProperties, OkWantsDaysThatAreNumbersAndCancelStoresNothing) {
  const struct {
    const char *highlight, *load;
    bool accepted;
  } cases[] = {{"abc", "30", false}, {"0", "30", false},         {"", "30", false},         {"2", "", false},
               {"2", "0", false},    {"2", "весь архив", false}, {"2", "Весь архив", true}, {"3 дня", "1e9", true}};
  for (const auto& c : cases)
    for (const char* button : {"cmdOK", "cmdCancel"}) {
      const bool saved = c.accepted && button == std::string("cmdOK");
      Open({{"LoadDays", "60"}});
      List("cmbHighLight")->setCurrentText(c.highlight);
      List("cmbDays")->setCurrentText(c.load);
      Click(button);
      EXPECT_EQ(dialog_->result() == QDialog::Accepted, saved) << c.highlight << c.load;
      EXPECT_EQ(settings_.Get("LoadDays", ""), saved ? c.load : "60") << c.highlight << c.load;
      const bool refused = !c.accepted && button == std::string("cmdOK");
      EXPECT_EQ(dialogs_.told, std::vector<QString>(refused, QStringLiteral("Ошибка во введенном числе дней")));
    }
}

TEST_F(FrmProperties, TheDefaultBaseIsAFileThatExistsAndAnEmptyFieldIsNoChoice) {
  const std::string base = folder_.Put("日本.mdb");
  const std::pair<std::optional<std::string>, std::string> cases[] = {
      {std::nullopt, "/old.mdb"}, {folder_ / "gone.mdb", "/old.mdb"}, {folder_.path(), "/old.mdb"}, {base, base}};
  for (const auto& [chosen, shown] : cases) {
    Open({{"DefaultBase", "/old.mdb"}});
    dialogs_.base = chosen;
    Click("cmdChoose");
    EXPECT_EQ(PathFromQString(Find<QLineEdit>("txtDefaultBase")->text()), shown);
    EXPECT_EQ(dialogs_.told,
              std::vector<QString>(chosen && shown != base, QStringLiteral("Такого файла не существует !")));
  }
  Find<QLineEdit>("txtDefaultBase")->clear();
  Click("cmdOK");
  EXPECT_EQ(settings_.Get("DefaultBase", ""), "/old.mdb");
}

}  // namespace
