#include "explorer/ui/KDVExplorer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

#include <QAction>
#include <QClipboard>
#include <QCoreApplication>
#include <QMenu>
#include <QMimeData>
#include <QSplitterHandle>
#include <QTest>
#include <QTimer>

#include "config/recent_bases.h"
#include "store/message_rows.h"
#include "support/fixed_clock.h"
#include "support/memory_settings.h"
#include "support/scripted_dialogs.h"
#include "support/temp_folder.h"
#include "ui/text.h"

namespace {

using testing::ElementsAre;
using testing::StartsWith;

/// The other windows, as a user who does one thing in each.
class ScriptedWindows : public OtherWindows {
 public:
  std::function<void(KDVExplorer&)> in_open_dialog = [](KDVExplorer&) {};
  std::vector<bool> open_dialogs;  // for each shown: were the days in focus?
  std::vector<QString> links;

  void OpenBaseDialog(KDVExplorer& explorer, bool days_in_focus) override {
    open_dialogs.push_back(days_in_focus);
    in_open_dialog(explorer);
  }
  void OpenLink(const QUrl& target) override { links.push_back(target.toString()); }
};

/// Gives a command while a box is on the screen.
class ImpatientDialogs : public ScriptedDialogs {
 public:
  std::function<void()> meanwhile = [] {};
  void Tell(QWidget* parent, const QString& text, BoxIcon icon, const QString& title) override {
    ScriptedDialogs::Tell(parent, text, icon, title);
    meanwhile();
  }
};

class Explorer : public testing::Test {
 protected:
  Explorer() {
    folder_.Put("forum.ini", "[FORUMS]\r\nmax=1\r\nf1=kdv\r\n[kdv]\r\nname=KDV\r\n");
    settings_.Set("LoadDays", cp1251::ToUtf8(user_settings::kWholeArchiveText));
  }

  static void Activate(KDVExplorer& explorer) {
    QEvent activation(QEvent::WindowActivate);
    QCoreApplication::sendEvent(&explorer, &activation);
    QCoreApplication::processEvents();
  }
  template <typename Control>
  static Control* Find(const KDVExplorer& explorer, const char* name) {
    auto* control = explorer.findChild<Control*>(QString::fromLatin1(name));
    if (control == nullptr) throw std::runtime_error(name);
    return control;
  }
  static std::string Field(const KDVExplorer& explorer, const char* name) {
    return Find<QLineEdit>(explorer, name)->text().toStdString();
  }
  static std::string Body(const KDVExplorer& explorer) {
    return Find<MessageBody>(explorer, "body")->toPlainText().toStdString();
  }
  static std::string Status(const KDVExplorer& explorer) {
    return Find<StatusPanels>(explorer, "StatBar")->Panel(1).toStdString();
  }
  static std::string TopStatus(const KDVExplorer& explorer) {
    return Find<StatusPanels>(explorer, "statBarTop")->Panel(1).toStdString();
  }
  /// Places of the buttons that can be pressed, from 1, separators counted.
  static std::vector<int> EnabledButtons(const KDVExplorer& explorer) {
    std::vector<int> places;
    const QList<QAction*> buttons = Find<QToolBar>(explorer, "tBar")->actions();
    for (int i = 0; i < buttons.size(); ++i)
      if (!buttons[i]->isSeparator() && buttons[i]->isEnabled()) places.push_back(i + 1);
    return places;
  }
  static void Click(MessageTree& tree, const QModelIndex& node) {
    tree.scrollTo(node);
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, Qt::NoModifier, tree.visualRect(node).center());
  }
  std::string Missing() const { return folder_ / "kdv_none.mdb"; }
  /// A copy of a real base of 3,000 messages; empty when there is none.
  std::string Sample() const {
    const std::filesystem::path sample = std::filesystem::path(FORUM_SAMPLES) / "kdv_2002.mdb";
    if (!std::filesystem::exists(sample)) return {};
    std::filesystem::copy_file(sample, folder_ / "kdv_2002.mdb", std::filesystem::copy_options::skip_existing);
    return folder_ / "kdv_2002.mdb";
  }
  void OpenAtStart(KDVExplorer& explorer, const std::string& path) {
    explorer.LoadInsteadOfDialog(path);
    explorer.show();
    Activate(explorer);
  }

  TempFolder folder_;
  DiskFileSystem files_;
  FixedClock clock_{2002, 12, 31};
  mdl_AZ::ForumIni ini_{files_, folder_.path()};
  MemorySettings settings_;
  ImpatientDialogs dialogs_;
  ScriptedWindows windows_;
  ExplorerNeeds needs_{files_, clock_, ini_, settings_, dialogs_, windows_};
};

TEST_F(Explorer, AStartShowsTheOpenBaseDialogOnce) {
  KDVExplorer explorer(needs_);
  EXPECT_TRUE(windows_.open_dialogs.empty());  // not before the window is there
  Activate(explorer);
  Activate(explorer);
  EXPECT_THAT(windows_.open_dialogs, ElementsAre(false));
  EXPECT_EQ(explorer.windowTitle().toStdString(), "Quorvex");
  EXPECT_EQ(TopStatus(explorer), "Quorvex");
}

TEST_F(Explorer, ButtonsHaveTheirTagsAndWaitForABase) {
  const KDVExplorer explorer(needs_);
  std::vector<std::string> tags;
  for (const QAction* button : Find<QToolBar>(explorer, "tBar")->actions())
    tags.push_back(button->isSeparator() ? "|" : button->data().toString().toStdString());
  EXPECT_THAT(tags, ElementsAre("1", "1", "2", "|", "5", "|", "7", "|", "6", "|", "", "|", "4"));
  for (const int place : EnabledButtons(explorer)) EXPECT_TRUE(place != 3 && place != 9 && place != 11) << place;
  EXPECT_EQ(Find<QAction>(explorer, "mnuEmail")->data().toString().toStdString(), "п1");
  EXPECT_EQ(Find<QAction>(explorer, "mnuSearch")->data().toString().toStdString(), "п2");
}

TEST_F(Explorer, TheArchiveButtonOpensTheDialogAtTheDays) {
  const KDVExplorer explorer(needs_);
  Find<QAction>(explorer, "cmdOpen")->trigger();
  Find<QAction>(explorer, "cmdArchive")->trigger();
  // The first button is an activation as well: the first start's own dialog comes after it.
  EXPECT_EQ(windows_.open_dialogs.front(), false);
  EXPECT_EQ(windows_.open_dialogs.back(), true);
}

TEST_F(Explorer, ABaseThatCannotBeOpenedIsToldOnceAndAnotherCanBeChosen) {
  KDVExplorer explorer(needs_);
  windows_.in_open_dialog = [this](KDVExplorer& window) { window.LoadLater(Missing()); };
  dialogs_.meanwhile = [&] {  // the box closes, the window becomes active: nothing runs twice
    Activate(explorer);
    Find<QAction>(explorer, "cmdOpen")->trigger();
  };
  Activate(explorer);
  Activate(explorer);
  ASSERT_EQ(dialogs_.told.size(), 1U);
  EXPECT_EQ(dialogs_.told[0].toStdString(),
            "Ошибка при загрузке " + Missing() + "\r\nПожалуйста, выберите другой файл...");
  EXPECT_EQ(windows_.open_dialogs.size(), 1U);
  EXPECT_EQ(TopStatus(explorer), "Quorvex");
  EXPECT_NE(Status(explorer), "");  // the reason
  dialogs_.meanwhile = [] {};
  Find<QAction>(explorer, "cmdOpen")->trigger();
  EXPECT_EQ(windows_.open_dialogs.size(), 2U);
}

TEST_F(Explorer, TheChosenBaseIsShownWhenTheDialogCloses) {
  const std::string base = Sample();
  if (base.empty()) GTEST_SKIP() << "no sample bases";
  KDVExplorer explorer(needs_);
  windows_.in_open_dialog = [&](KDVExplorer& window) { window.LoadLater(base); };
  const std::vector<int> before = EnabledButtons(explorer);
  Activate(explorer);
  EXPECT_EQ(windows_.open_dialogs.size(), 1U);
  EXPECT_TRUE(dialogs_.told.empty());
  EXPECT_EQ(explorer.windowTitle().toStdString(), "KDV (" + base + ")");
  EXPECT_EQ(TopStatus(explorer), "KDV (" + base + ")");
  EXPECT_THAT(Status(explorer), StartsWith("Загрузил 3000 сообщений, из них несогласованных -"));
  EXPECT_EQ(Find<MessageTree>(explorer, "tree")->model()->rowCount(), 5);
  EXPECT_TRUE(Find<QProgressBar>(explorer, "Progress")->isHidden());
  EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
  EXPECT_GT(EnabledButtons(explorer).size(), before.size());
}

TEST_F(Explorer, ABaseNamedAtTheStartNeedsNoDialog) {
  const std::string base = Sample();
  if (base.empty()) GTEST_SKIP() << "no sample bases";
  KDVExplorer explorer(needs_);
  OpenAtStart(explorer, base);
  EXPECT_TRUE(windows_.open_dialogs.empty());
  EXPECT_EQ(Find<MessageTree>(explorer, "tree")->model()->rowCount(), 5);
}

TEST_F(Explorer, AFailedOpenKeepsTheBaseBeforeIt) {
  const std::string base = Sample();
  if (base.empty()) GTEST_SKIP() << "no sample bases";
  KDVExplorer explorer(needs_);
  OpenAtStart(explorer, base);
  explorer.LoadLater(Missing());
  Activate(explorer);
  EXPECT_EQ(dialogs_.told.size(), 1U);
  EXPECT_EQ(explorer.windowTitle().toStdString(), "Quorvex");
  EXPECT_EQ(explorer.Base().path(), base);
  EXPECT_EQ(Find<MessageTree>(explorer, "tree")->model()->rowCount(), 5);
}

TEST_F(Explorer, AClickAndAKeyShowAMessageAlike) {
  const std::string base = Sample();
  if (base.empty()) GTEST_SKIP() << "no sample bases";
  KDVExplorer explorer(needs_);
  OpenAtStart(explorer, base);
  auto* tree = Find<MessageTree>(explorer, "tree");
  const QModelIndex threads = tree->model()->index(0, 0);
  Click(*tree, threads);
  EXPECT_THAT(Status(explorer), StartsWith("Здесь отображаются сообщения, отсортированные по темам"));
  EXPECT_EQ(Body(explorer), "No Text");
  EXPECT_EQ(Field(explorer, "txtSubj"), "");

  QTest::keyClick(tree, Qt::Key_Down);
  EXPECT_EQ(Status(explorer), "Код сообщения: 3094");
  EXPECT_EQ(explorer.msgKod(), 3094);
  const std::string subject = Field(explorer, "txtSubj"), body = Body(explorer);
  EXPECT_THAT(subject, StartsWith("Тема : "));
  EXPECT_THAT(Field(explorer, "txtAuthor"), StartsWith("Автор : "));
  EXPECT_THAT(Field(explorer, "txtData"), StartsWith("Дата : "));

  Click(*tree, threads);
  EXPECT_EQ(explorer.msgKod(), 3094);  // a group is no message
  Click(*tree, tree->model()->index(0, 0, threads));
  EXPECT_EQ(Field(explorer, "txtSubj"), subject);
  EXPECT_EQ(Body(explorer), body);

  explorer.SR();  // a rebuilt tree shows no message until one is chosen
  EXPECT_EQ(Field(explorer, "txtSubj"), "");
  EXPECT_EQ(Body(explorer), "");
}

TEST_F(Explorer, ANodeClickedAgainTellsAgain) {
  const std::string base = Sample();
  if (base.empty()) GTEST_SKIP() << "no sample bases";
  KDVExplorer explorer(needs_);
  OpenAtStart(explorer, base);
  auto* tree = Find<MessageTree>(explorer, "tree");
  Click(*tree, tree->model()->index(0, 0));
  Find<StatusPanels>(explorer, "StatBar")->SetPanel(1, QStringLiteral("..."));
  Click(*tree, tree->model()->index(0, 0));
  EXPECT_THAT(Status(explorer), StartsWith("Здесь отображаются"));
}

TEST_F(Explorer, PanesKeepTheirShareAndTheirLeastHeight) {
  KDVExplorer explorer(needs_);
  explorer.LoadInsteadOfDialog(Missing());
  explorer.show();
  EXPECT_EQ(explorer.minimumSize(), QSize(467, 533));
  auto* splitter = Find<PercentSplitter>(explorer, "imgSplitter");
  const auto share = [splitter] {
    return 100.0 * splitter->sizes()[0] / (splitter->height() - splitter->handleWidth());
  };
  const auto drag = [&](int to) {
    auto* bar = Find<QSplitterHandle>(explorer, "picSplitter");
    QTest::mousePress(bar, Qt::LeftButton, {}, bar->rect().center());
    const QPoint target(10, to);
    QMouseEvent move(QEvent::MouseMove, bar->mapFrom(splitter, target), splitter->mapToGlobal(target), Qt::NoButton,
                     Qt::LeftButton, {});
    QCoreApplication::sendEvent(bar, &move);
    QTest::mouseRelease(bar, Qt::LeftButton, {}, bar->rect().center());
  };
  for (const int height : {720, 900, 533}) {
    explorer.resize(800, height);
    EXPECT_NEAR(share(), 70, 0.5) << height;
  }
  drag(splitter->height() / 2);
  EXPECT_NEAR(share(), 50, 2);
  explorer.resize(800, 900);
  EXPECT_NEAR(share(), 50, 2);  // the user's share, not the one before
  drag(0);
  EXPECT_EQ(splitter->sizes()[0], 67);
  drag(splitter->height());
  EXPECT_EQ(splitter->sizes()[1], 67);
}

TEST_F(Explorer, TheStoredTextSizeHoldsFromTheStart) {
  settings_.Set("TextFontSize", "1e400");
  EXPECT_NO_THROW(KDVExplorer{needs_});
  settings_.Set("TextFontSize", "18");
  KDVExplorer explorer(needs_);
  EXPECT_EQ(Find<MessageBody>(explorer, "body")->font().pointSize(), 18);
  explorer.SetTextSize(24);
  EXPECT_EQ(Find<MessageBody>(explorer, "body")->font().pointSize(), 24);
}

TEST_F(Explorer, BasesOpenedLatelyStandInTheMenuUntilTheyCannotBeOpened) {
  const std::string base = Sample();
  if (base.empty()) GTEST_SKIP() << "no sample bases";
  recent_bases::Remember(settings_, Missing());
  {
    KDVExplorer explorer(needs_);
    OpenAtStart(explorer, base);
    OpenAtStart(explorer, base);
  }
  EXPECT_THAT(recent_bases::List(settings_), ElementsAre(base, Missing()));
  KDVExplorer explorer(needs_);
  explorer.LoadInsteadOfDialog(Missing());
  const auto entries = Find<QMenu>(explorer, "mnuRecent")->actions();
  ASSERT_EQ(entries.size(), 2);
  entries[1]->trigger();
  EXPECT_EQ(dialogs_.told.size(), 1U);
  EXPECT_THAT(recent_bases::List(settings_), ElementsAre(base));
  Find<QMenu>(explorer, "mnuRecent")->actions().at(0)->trigger();
  EXPECT_EQ(explorer.Base().path(), base);
}

TEST_F(Explorer, ADroppedBaseIsOpened) {
  const std::string base = Sample();
  if (base.empty()) GTEST_SKIP() << "no sample bases";
  KDVExplorer explorer(needs_);
  explorer.LoadInsteadOfDialog(Missing());
  const auto is_taken = [&](const QList<QUrl>& urls) {
    QMimeData data;
    data.setUrls(urls);
    QDragEnterEvent enter({}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QCoreApplication::sendEvent(&explorer, &enter);
    if (!enter.isAccepted()) return false;
    QDropEvent drop({}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&explorer, &drop);
    QCoreApplication::processEvents();
    return true;
  };
  const QUrl dragged = QUrl::fromLocalFile(QStringFromPath(base));
  EXPECT_FALSE(is_taken({QUrl::fromLocalFile(QStringLiteral("/tmp/page.html"))}));
  EXPECT_FALSE(is_taken({QUrl(QStringLiteral("http://forum.example/a.mdb"))}));
  EXPECT_FALSE(is_taken({dragged, dragged}));
  EXPECT_TRUE(is_taken({dragged}));
  EXPECT_EQ(explorer.Base().path(), base);
}

TEST_F(Explorer, TheWindowComesBackAsItWasLeft) {
  {
    KDVExplorer explorer(needs_);
    explorer.LoadInsteadOfDialog(Missing());
    explorer.show();
    explorer.resize(700, 600);
    Find<PercentSplitter>(explorer, "imgSplitter")->SetPercent(40);
    explorer.close();
  }
  const KDVExplorer again(needs_);
  EXPECT_EQ(again.size(), QSize(700, 600));
  EXPECT_NEAR(Find<PercentSplitter>(again, "imgSplitter")->Percent(), 40, 1);

  settings_.Set("SplitterPercent", "1e99");
  settings_.Set("WindowGeometry", "broken");
  const KDVExplorer unharmed(needs_);
  EXPECT_EQ(Find<PercentSplitter>(unharmed, "imgSplitter")->Percent(), 70);
}

/// The window with the sample base open and its threads shown.
class ExplorerWithBase : public Explorer {
 protected:
  void SetUp() override {
    if (Sample().empty()) GTEST_SKIP() << "no sample bases";
    OpenAtStart(explorer_, Sample());
    explorer_.activateWindow();
  }
  void Trigger(const char* action, const QString& answer = {}) {
    dialogs_.asked.clear();
    dialogs_.told.clear();
    dialogs_.line = answer;
    Find<QAction>(explorer_, action)->trigger();
  }
  MessageTree& Tree() { return *Find<MessageTree>(explorer_, "tree"); }
  const TreeModel& Model() { return *static_cast<const TreeModel*>(Tree().model()); }
  QModelIndex Results() { return Tree().model()->index(Tree().model()->rowCount() - 1, 0); }
  std::string ResultsText() { return Results().data().toString().toStdString(); }
  int ResultCount() { return Tree().model()->rowCount(Results()); }
  /// Chooses a node of the thread grouping.
  void Choose(std::int32_t number) {
    const QModelIndex node = Model().IndexOf(Model().Tree().Find(NodeKind::kThreadMessage, number));
    Tree().setCurrentIndex(node);
  }
  bool IsInTree(std::int32_t number) { return Model().Tree().Find(NodeKind::kThreadMessage, number) != kNoNode; }
  bool IsInBase(std::int32_t number) { return ReadMessage(explorer_.Base().connection(), number).has_value(); }

  KDVExplorer explorer_{needs_};
};

TEST_F(Explorer, WithoutABaseNothingIsAsked) {
  KDVExplorer explorer(needs_);
  for (const char* tag : {"п1", "п2"}) Find<ToolBar>(explorer, "tBar")->ButtonMenuClick(QString::fromUtf8(tag));
  Find<ToolBar>(explorer, "tBar")->ButtonClick("6", false);
  EXPECT_TRUE(dialogs_.asked.empty());
  EXPECT_TRUE(dialogs_.told.empty());
}

TEST_F(ExplorerWithBase, ASearchFillsTheResultsAndMarksWhatItFound) {
  Trigger("cmdSearch", QStringLiteral("РУБЛЬ"));
  ASSERT_EQ(dialogs_.asked.size(), 1U);
  EXPECT_EQ(dialogs_.asked[0].toStdString(),
            "Введите строку для поиска (строка ищется в тексте и теме сообщения, поиск идет по всему архиву)");
  const std::string count = std::to_string(ResultCount());
  EXPECT_GT(ResultCount(), 10);
  EXPECT_EQ(ResultsText(), "Результаты поиска : " + count + " записей");
  EXPECT_EQ(Status(explorer_), "Найдено " + count + " записей. Они доступны в разделе 'Результаты поиска'");
  EXPECT_TRUE(Find<QProgressBar>(explorer_, "Progress")->isHidden());
  const QRect row = Tree().visualRect(Results());
  EXPECT_TRUE(row.isValid() && Tree().viewport()->rect().intersects(row)) << "the results are in sight";

  auto* body = Find<MessageBody>(explorer_, "body");
  int marked = 0;
  for (int hit = 0; hit < ResultCount(); ++hit) {
    Tree().setCurrentIndex(Tree().model()->index(hit, 0, Results()));
    for (const auto& mark : body->extraSelections())
      EXPECT_EQ(mark.cursor.selectedText().toLower().toStdString(), "рубль");
    marked += !body->extraSelections().isEmpty();
  }
  EXPECT_GT(marked, ResultCount() / 2);  // the others hold it in their subjects
  Choose(3094);
  EXPECT_TRUE(body->extraSelections().isEmpty());

  Trigger("mnuSearch", QStringLiteral("   "));
  EXPECT_EQ(ResultsText(), "Результаты поиска : " + count + " записей");
  Trigger("mnuSearch", QStringLiteral("нет такого текста"));
  EXPECT_EQ(ResultsText(), "Результаты поиска : 0 записей");
  EXPECT_EQ(Tree().model()->rowCount(), 5);
}

TEST_F(ExplorerWithBase, ASearchThatFailsIsToldAndTheNextOneWorks) {
  Trigger("cmdSearch", QStringLiteral("рубль"));
  Trigger("cmdSearch", QStringLiteral("it's"));
  ASSERT_EQ(dialogs_.told.size(), 1U);
  EXPECT_FALSE(dialogs_.told[0].isEmpty());
  EXPECT_EQ(ResultsText(), "Результаты поиска");
  EXPECT_EQ(ResultCount(), 0);
  EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
  Trigger("cmdSearch", QStringLiteral("рубль"));
  EXPECT_GT(ResultCount(), 0);
}

TEST_F(ExplorerWithBase, EscStopsASearch) {
  QTimer::singleShot(0, [this] { QTest::keyClick(&Tree(), Qt::Key_Escape); });  // comes while it runs
  Trigger("cmdSearch", QStringLiteral("а"));
  EXPECT_EQ(Status(explorer_), "Поиск остановлен");
  EXPECT_EQ(ResultCount(), 0);
  EXPECT_TRUE(dialogs_.told.empty());
}

TEST_F(ExplorerWithBase, AddressesOfAnAuthorStandInABox) {
  Trigger("mnuEmail", QStringLiteral("Ковяхков"));
  EXPECT_EQ(dialogs_.asked.at(0).toStdString(), "Введите ник участника форума :");
  ASSERT_EQ(dialogs_.told.size(), 1U);
  EXPECT_THAT(dialogs_.told[0].toStdString(), StartsWith("Ковяхков имеет следующие адреса : \r\n\r\nuser"));
  Trigger("mnuEmail");
  EXPECT_TRUE(dialogs_.told.empty());
}

TEST_F(ExplorerWithBase, AMessageIsDeletedFromBaseAndTree) {
  Choose(3);  // answers 1
  EXPECT_TRUE(Find<QAction>(explorer_, "mnuDelete")->isEnabled());
  dialogs_.ok = false;
  Trigger("mnuDelete");
  EXPECT_TRUE(IsInTree(3));
  dialogs_.ok = true;
  QTest::keyClick(&Tree(), Qt::Key_Delete);
  EXPECT_EQ(dialogs_.asked.size(), 2U);
  EXPECT_FALSE(IsInTree(3));
  EXPECT_FALSE(IsInBase(3));
  EXPECT_THAT(Status(explorer_), StartsWith("Сообщение удалено."));
  EXPECT_TRUE(Tree().currentIndex().isValid());
  EXPECT_EQ(explorer_.msgKod(), Model().Tree().Number(Model().NodeOf(Tree().currentIndex())))
      << "the message that is chosen now is on show";

  Choose(1);
  ASSERT_TRUE(Find<QAction>(explorer_, "mnuDeleteThread")->isEnabled());
  Trigger("mnuDeleteThread");
  EXPECT_THAT(Status(explorer_), StartsWith("Удалено "));
  EXPECT_FALSE(IsInTree(1));
  EXPECT_FALSE(IsInBase(1));
  explorer_.SR();
  EXPECT_THAT(Status(explorer_), StartsWith("Загрузил "));
  EXPECT_FALSE(IsInTree(3));
}

TEST_F(ExplorerWithBase, DeletionIsOfferedForMessagesOfThreadsOnly) {
  const auto offered = [this] {
    return std::pair(Find<QAction>(explorer_, "mnuDelete")->isEnabled(),
                     Find<QAction>(explorer_, "mnuDeleteThread")->isEnabled());
  };
  EXPECT_EQ(offered(), std::pair(false, false));
  Choose(1);
  EXPECT_EQ(offered(), std::pair(true, true));
  Tree().setCurrentIndex(Tree().model()->index(0, 0));
  EXPECT_EQ(offered(), std::pair(false, false));
  Trigger("cmdSearch", QStringLiteral("рубль"));
  Tree().setCurrentIndex(Tree().model()->index(0, 0, Results()));
  EXPECT_EQ(offered(), std::pair(false, false));
  Choose(1);
  explorer_.SR();
  EXPECT_EQ(offered(), std::pair(false, false));
}

TEST_F(ExplorerWithBase, WhatIsOnShowCanBeCopied) {
  EXPECT_FALSE(Find<QAction>(explorer_, "mnuCopyMessage")->isEnabled());
  Choose(3);
  Trigger("mnuCopyNumber");
  EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), "3");
  Trigger("mnuCopyMessage");
  EXPECT_THAT(
      QGuiApplication::clipboard()->text().toStdString(),
      testing::AllOf(StartsWith(Field(explorer_, "txtSubj") + "\n"), testing::EndsWith("\n\n" + Body(explorer_))));
}

TEST_F(ExplorerWithBase, ABaseThatAnotherProgramWritesKeepsItsMessages) {
  MessageBase other(files_, clock_, ini_);
  other.OpenBase(Sample());
  const MessageBase::Writing writing(other);
  Choose(1);
  Trigger("mnuDeleteThread");
  EXPECT_EQ(dialogs_.told.size(), 1U);
  EXPECT_TRUE(IsInTree(1));
  EXPECT_TRUE(IsInBase(1));
}

}  // namespace
