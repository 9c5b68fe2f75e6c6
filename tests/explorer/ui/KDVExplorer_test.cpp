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
#include "support/memory_settings.h"
#include "support/program_stage.h"
#include "support/scripted_dialogs.h"
#include "ui/text.h"

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::StartsWith;

/// The other windows, as a user who does one thing in each.
class ScriptedWindows : public OtherWindows {
 public:
  std::function<void(KDVExplorer&)> in_open_dialog = [](KDVExplorer&) {};
  std::vector<bool> open_dialogs;  // for each shown: were the days in focus?

  void OpenBaseDialog(KDVExplorer& explorer, bool days_in_focus) override {
    open_dialogs.push_back(days_in_focus);
    in_open_dialog(explorer);
  }
  void OpenLink(const QUrl&) override {}
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

class Explorer : public testing::Test, protected ProgramStage {
 protected:
  Explorer() : ProgramStage(FixedClock(2002, 12, 31)) {
    folder_.Put("forum.ini", "[FORUMS]\r\nmax=1\r\nf1=kdv\r\n[kdv]\r\nname=KDV\r\n");
    settings_.Set("LoadDays", cp1251::ToUtf8(user_settings::kWholeArchiveText));
  }

  /// A new window in the place of the last one. @param base  named at the start; may be empty
  void Start(const std::string& base = {}) {
    explorer_ = std::make_unique<KDVExplorer>(needs_);
    if (base.empty()) return;
    explorer_->LoadInsteadOfDialog(base);
    explorer_->show();
    explorer_->activateWindow();
    Activate();
  }
  void Activate() {
    QEvent activation(QEvent::WindowActivate);
    QCoreApplication::sendEvent(explorer_.get(), &activation);
    QCoreApplication::processEvents();
  }
  template <typename Control>
  Control* Find(const char* name) const {
    auto* control = explorer_->findChild<Control*>(QString::fromLatin1(name));
    if (control == nullptr) throw std::runtime_error(name);
    return control;
  }
  void Trigger(const char* action, const QString& answer = {}) {
    dialogs_.asked.clear();
    dialogs_.told.clear();
    dialogs_.line = answer;
    Find<QAction>(action)->trigger();
  }
  std::string Field(const char* name) const { return Find<QLineEdit>(name)->text().toStdString(); }
  std::string Body() const { return Find<MessageBody>("body")->toPlainText().toStdString(); }
  std::string Status() const { return Find<StatusPanels>("StatBar")->Panel(1).toStdString(); }
  std::string TopStatus() const { return Find<StatusPanels>("statBarTop")->Panel(1).toStdString(); }
  std::string Title() const { return explorer_->windowTitle().toStdString(); }
  /// The tags of the buttons in their order, "-" behind one that cannot be pressed, "|" for a separator.
  std::string Buttons() const {
    std::string tags;
    for (const QAction* button : Find<QToolBar>("tBar")->actions())
      tags +=
          button->isSeparator() ? "| " : button->data().toString().toStdString() + (button->isEnabled() ? " " : "- ");
    return tags;
  }
  std::string Missing() const { return folder_ / "kdv_none.mdb"; }

  MemorySettings settings_;
  ImpatientDialogs dialogs_;
  ScriptedWindows windows_;
  ExplorerNeeds needs_{files_, clock_, ini_, settings_, dialogs_, windows_};
  std::unique_ptr<KDVExplorer> explorer_;
};

TEST_F(Explorer, AStartShowsTheOpenBaseDialogOnceAndTheArchiveButtonItsDays) {
  Start();
  EXPECT_TRUE(windows_.open_dialogs.empty());  // not before the window is there
  Activate();
  Activate();
  EXPECT_THAT(windows_.open_dialogs, ElementsAre(false));
  EXPECT_EQ(Title(), "Quorvex");
  EXPECT_EQ(TopStatus(), "Quorvex");
  Trigger("cmdOpen");
  Trigger("cmdArchive");
  EXPECT_THAT(windows_.open_dialogs, ElementsAre(false, false, true));
}

TEST_F(Explorer, WithoutABaseWhatNeedsOneIsOffAndAsksNothing) {
  Start();
  EXPECT_EQ(Buttons(), "1 1 2- | 5- | 7 | 6- | - | 4 ");
  auto* bar = Find<ToolBar>("tBar");
  bar->ButtonClick("6", false);
  for (const char* entry : {"mnuEmail", "mnuSearch"}) bar->ButtonMenuClick(Find<QAction>(entry)->data().toString());
  EXPECT_TRUE(dialogs_.asked.empty());
  EXPECT_TRUE(dialogs_.told.empty());
}

TEST_F(Explorer, ABaseThatCannotBeOpenedIsToldOnceAndAnotherCanBeChosen) {
  Start();
  windows_.in_open_dialog = [this](KDVExplorer& window) { window.LoadLater(Missing()); };
  dialogs_.meanwhile = [&] {  // the box closes, the window becomes active: nothing runs twice
    Activate();
    Find<QAction>("cmdOpen")->trigger();
  };
  Activate();
  Activate();
  ASSERT_EQ(dialogs_.told.size(), 1U);
  EXPECT_EQ(dialogs_.told[0].toStdString(),
            "Ошибка при загрузке " + Missing() + "\r\nПожалуйста, выберите другой файл...");
  EXPECT_EQ(windows_.open_dialogs.size(), 1U);
  EXPECT_EQ(TopStatus(), "Quorvex");
  EXPECT_NE(Status(), "");  // the reason
  dialogs_.meanwhile = [] {};
  Trigger("cmdOpen");
  EXPECT_EQ(windows_.open_dialogs.size(), 2U);
}

TEST_F(Explorer, PanesKeepTheirShareAndTheirLeastHeight) {
  Start(Missing());
  EXPECT_EQ(explorer_->minimumSize(), QSize(467, 533));
  auto* splitter = Find<PercentSplitter>("imgSplitter");
  const auto share_at = [&](int height) {
    explorer_->resize(800, height);
    return 100.0 * splitter->sizes()[0] / (splitter->height() - splitter->handleWidth());
  };
  const auto drag = [&](int to) {
    auto* bar = Find<QSplitterHandle>("picSplitter");
    QTest::mousePress(bar, Qt::LeftButton, {}, bar->rect().center());
    const QPoint target(10, to);
    QMouseEvent move(QEvent::MouseMove, bar->mapFrom(splitter, target), splitter->mapToGlobal(target), Qt::NoButton,
                     Qt::LeftButton, {});
    QCoreApplication::sendEvent(bar, &move);
    QTest::mouseRelease(bar, Qt::LeftButton, {}, bar->rect().center());
  };
  for (const int height : {720, 900, 533}) EXPECT_NEAR(share_at(height), 70, 0.5) << height;
  drag(splitter->height() / 2);
  for (const int height : {533, 900}) EXPECT_NEAR(share_at(height), 50, 2) << "the user's share, not the one before";
  drag(0);
  EXPECT_EQ(splitter->sizes()[0], 67);
  drag(splitter->height());
  EXPECT_EQ(splitter->sizes()[1], 67);
}

TEST_F(Explorer, TheStoredTextSizeHoldsFromTheStart) {
  settings_.Set("TextFontSize", "1e400");
  EXPECT_NO_THROW(Start());
  settings_.Set("TextFontSize", "18");
  Start();
  EXPECT_EQ(Find<MessageBody>("body")->font().pointSize(), 18);
}

TEST_F(Explorer, TheWindowComesBackAsItWasLeft) {
  Start(Missing());
  explorer_->resize(700, 600);
  Find<PercentSplitter>("imgSplitter")->SetPercent(40);
  explorer_->close();
  Start();
  EXPECT_EQ(explorer_->size(), QSize(700, 600));
  EXPECT_NEAR(Find<PercentSplitter>("imgSplitter")->Percent(), 40, 1);

  settings_.Set("SplitterPercent", "1e99");
  settings_.Set("WindowGeometry", "broken");
  Start();
  EXPECT_EQ(Find<PercentSplitter>("imgSplitter")->Percent(), 70);
}

/// The window with a real base of 3,000 messages open, which was named at the start.
class ExplorerWithBase : public Explorer {
 protected:
  void SetUp() override {
    if (!std::filesystem::exists(Sample("kdv_2002"))) GTEST_SKIP() << "no sample bases";
    std::filesystem::copy_file(Sample("kdv_2002"), base_);
    Start(base_);
  }
  static std::filesystem::path Sample(const std::string& name) {
    return std::filesystem::path(FORUM_SAMPLES) / (name + ".mdb");
  }
  MessageTree& Tree() { return *Find<MessageTree>("tree"); }
  const TreeModel& Model() { return *static_cast<const TreeModel*>(Tree().model()); }
  QModelIndex Top(int row) { return Model().index(row, 0); }
  QModelIndex Results() { return Top(Model().rowCount() - 1); }
  std::string ResultsText() { return Results().data().toString().toStdString(); }
  int ResultCount() { return Model().rowCount(Results()); }
  /// Chooses a node of the thread grouping.
  void Choose(std::int32_t number) {
    Tree().setCurrentIndex(Model().IndexOf(Model().Tree().Find(NodeKind::kThreadMessage, number)));
  }
  void Click(const QModelIndex& node) {
    Tree().scrollTo(node);
    QTest::mouseClick(Tree().viewport(), Qt::LeftButton, Qt::NoModifier, Tree().visualRect(node).center());
  }
  bool IsInTree(std::int32_t number) { return Model().Tree().Find(NodeKind::kThreadMessage, number) != kNoNode; }
  bool IsInBase(std::int32_t number) { return ReadMessage(explorer_->Base().connection(), number).has_value(); }
  /// Can the message be deleted, alone and with its replies?
  std::pair<bool, bool> CanBeDeleted() const {
    return {Find<QAction>("mnuDelete")->isEnabled(), Find<QAction>("mnuDeleteThread")->isEnabled()};
  }

  const std::string base_ = folder_ / "kdv_2002.mdb";
};

TEST_F(ExplorerWithBase, IsShownFromTheStartOrWhenTheDialogCloses) {
  EXPECT_TRUE(windows_.open_dialogs.empty());
  EXPECT_EQ(Model().rowCount(), 5);
  Start();
  windows_.in_open_dialog = [&](KDVExplorer& window) { window.LoadLater(base_); };
  Activate();
  EXPECT_EQ(windows_.open_dialogs.size(), 1U);
  EXPECT_TRUE(dialogs_.told.empty());
  EXPECT_EQ(Title(), "KDV (" + base_ + ")");
  EXPECT_EQ(TopStatus(), Title());
  EXPECT_THAT(Status(), StartsWith("Загрузил 3000 сообщений, из них несогласованных -"));
  EXPECT_EQ(Model().rowCount(), 5);
  EXPECT_TRUE(Find<QProgressBar>("Progress")->isHidden());
  EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
  EXPECT_EQ(Buttons(), "1 1 2 | 5 | 7 | 6 |  | 4 ");
}

TEST_F(ExplorerWithBase, AFailedOpenKeepsItUnlessAnotherFileHasTakenItsPlace) {
  explorer_->Load(Missing());
  EXPECT_EQ(dialogs_.told.size(), 1U);
  EXPECT_EQ(Title(), "Quorvex");
  EXPECT_EQ(explorer_->Base().path(), base_);
  EXPECT_EQ(Model().rowCount(), 5);
  explorer_->Load(Sample("access97_types"));  // no message base
  EXPECT_EQ(dialogs_.told.size(), 2U);
  EXPECT_EQ(Model().rowCount(), 0) << "its messages are those of another base";
}

TEST_F(ExplorerWithBase, AClickAndAKeyShowAMessageAlike) {
  const QModelIndex threads = Top(0);
  Click(threads);
  EXPECT_THAT(Status(), StartsWith("Здесь отображаются сообщения, отсортированные по темам"));
  EXPECT_EQ(Field("txtSubj") + Body(), "No Text");
  explorer_->SetStatus(QStringLiteral("..."));
  Click(threads);
  EXPECT_THAT(Status(), StartsWith("Здесь отображаются")) << "a node clicked again tells again";

  QTest::keyClick(&Tree(), Qt::Key_Down);
  EXPECT_EQ(Status(), "Код сообщения: 3094");
  EXPECT_EQ(explorer_->msgKod(), 3094);
  const std::string subject = Field("txtSubj"), body = Body();
  EXPECT_THAT(subject, StartsWith("Тема : "));
  EXPECT_THAT(Field("txtAuthor"), StartsWith("Автор : "));
  EXPECT_THAT(Field("txtData"), StartsWith("Дата : "));
  QTest::keyClick(&Tree(), Qt::Key_Return);
  EXPECT_EQ(explorer_->focusWidget(), Find<MessageBody>("body"));

  Click(threads);
  EXPECT_EQ(explorer_->msgKod(), 3094);  // a group is no message
  Click(Model().index(0, 0, threads));
  EXPECT_EQ(Field("txtSubj"), subject);
  EXPECT_EQ(Body(), body);
  Trigger("cmdRebuild");  // a rebuilt tree shows no message until one is chosen
  EXPECT_EQ(Field("txtSubj") + Body(), "");
}

TEST_F(ExplorerWithBase, StandsInTheMenuUntilItCannotBeOpened) {
  for (int time = 0; time < 2; ++time) {
    recent_bases::Remember(settings_, Missing());
    Start(base_);
  }
  EXPECT_THAT(recent_bases::List(settings_), ElementsAre(base_, Missing()));
  Start();
  const auto entries = Find<QMenu>("mnuRecent")->actions();
  ASSERT_EQ(entries.size(), 2);
  entries[1]->trigger();
  EXPECT_EQ(dialogs_.told.size(), 1U);
  EXPECT_THAT(recent_bases::List(settings_), ElementsAre(base_));
  Find<QMenu>("mnuRecent")->actions().at(0)->trigger();
  EXPECT_EQ(explorer_->Base().path(), base_);
}

TEST_F(ExplorerWithBase, IsOpenedWhereItIsDropped) {
  Start();
  const auto is_taken = [&](const QList<QUrl>& urls) {
    QMimeData data;
    data.setUrls(urls);
    QDragEnterEvent enter({}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QCoreApplication::sendEvent(explorer_.get(), &enter);
    if (!enter.isAccepted()) return false;
    QDropEvent drop({}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(explorer_.get(), &drop);
    QCoreApplication::processEvents();
    return true;
  };
  const QUrl dragged = QUrl::fromLocalFile(QStringFromPath(base_)), page("file:///tmp/page.html"),
             far("http://forum.example/a.mdb");
  for (const QList<QUrl>& urls : {QList{page}, QList{far}, QList{dragged, dragged}}) EXPECT_FALSE(is_taken(urls));
  EXPECT_TRUE(is_taken({dragged}));
  EXPECT_EQ(explorer_->Base().path(), base_);
}

TEST_F(ExplorerWithBase, ASearchFillsTheResultsAndMarksWhatItFound) {
  Trigger("cmdSearch", QStringLiteral("РУБЛЬ"));
  ASSERT_EQ(dialogs_.asked.size(), 1U);
  EXPECT_EQ(dialogs_.asked[0].toStdString(),
            "Введите строку для поиска (строка ищется в тексте и теме сообщения, поиск идет по всему архиву)");
  const std::string count = std::to_string(ResultCount());
  EXPECT_GT(ResultCount(), 10);
  EXPECT_EQ(ResultsText(), "Результаты поиска : " + count + " записей");
  EXPECT_EQ(Status(), "Найдено " + count + " записей. Они доступны в разделе 'Результаты поиска'");
  EXPECT_TRUE(Find<QProgressBar>("Progress")->isHidden());
  EXPECT_TRUE(Tree().viewport()->rect().intersects(Tree().visualRect(Results()))) << "the results are in sight";

  auto* body = Find<MessageBody>("body");
  int marked = 0;
  for (int hit = 0; hit < ResultCount(); ++hit) {
    Tree().setCurrentIndex(Model().index(hit, 0, Results()));
    for (const auto& mark : body->extraSelections())
      EXPECT_EQ(mark.cursor.selectedText().toLower().toStdString(), "рубль");
    marked += !body->extraSelections().isEmpty();
  }
  EXPECT_GT(marked, ResultCount() / 2);  // the others hold it in their subjects
  EXPECT_EQ(CanBeDeleted(), std::pair(false, false));
  Choose(3094);
  EXPECT_TRUE(body->extraSelections().isEmpty());

  Trigger("mnuSearch", QStringLiteral("   "));
  EXPECT_EQ(ResultsText(), "Результаты поиска : " + count + " записей");
  Trigger("mnuSearch", QStringLiteral("нет такого текста"));
  EXPECT_EQ(ResultsText(), "Результаты поиска : 0 записей");
  EXPECT_EQ(Model().rowCount(), 5);
}

TEST_F(ExplorerWithBase, ASearchThatFailsIsToldAndTheNextOneWorks) {
  Trigger("cmdSearch", QStringLiteral("рубль"));
  Trigger("cmdSearch", QStringLiteral("日本"));
  EXPECT_THAT(dialogs_.told, ElementsAre(QStringLiteral("В базах не бывает таких знаков: 日本")));
  EXPECT_GT(ResultCount(), 0);
  Trigger("cmdSearch", QStringLiteral("it's"));
  ASSERT_EQ(dialogs_.told.size(), 1U);
  EXPECT_FALSE(dialogs_.told[0].isEmpty());
  EXPECT_EQ(Status(), "Поиск не выполнен");
  EXPECT_EQ(ResultsText(), "Результаты поиска");
  EXPECT_EQ(ResultCount(), 0);
  EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
  Trigger("cmdSearch", QStringLiteral("рубль"));
  EXPECT_GT(ResultCount(), 0);
}

TEST_F(ExplorerWithBase, EscStopsASearch) {
  QTimer::singleShot(0, [this] { QTest::keyClick(&Tree(), Qt::Key_Escape); });  // comes while it runs
  Trigger("cmdSearch", QStringLiteral("а"));
  EXPECT_EQ(Status(), "Поиск остановлен");
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
  Tree().setCurrentIndex(Top(0));
  EXPECT_EQ(CanBeDeleted(), std::pair(false, false));
  Choose(3);  // answers 1
  EXPECT_EQ(CanBeDeleted(), std::pair(true, false));
  dialogs_.ok = false;
  Trigger("mnuDelete");
  EXPECT_TRUE(IsInTree(3));
  dialogs_.ok = true;
  QTest::keyClick(&Tree(), Qt::Key_Delete);
  EXPECT_EQ(dialogs_.asked.size(), 2U);
  EXPECT_FALSE(IsInTree(3) || IsInBase(3));
  EXPECT_THAT(Status(), StartsWith("Сообщение удалено."));
  EXPECT_TRUE(Tree().currentIndex().isValid());
  EXPECT_EQ(explorer_->msgKod(), Model().Tree().Number(explorer_->ChosenNode()))
      << "the message that is chosen now is on show";

  Choose(1);
  EXPECT_EQ(CanBeDeleted(), std::pair(true, true));
  Trigger("mnuDeleteThread");
  EXPECT_THAT(Status(), StartsWith("Удалено "));
  EXPECT_FALSE(IsInTree(1) || IsInBase(1));
  explorer_->SR();
  EXPECT_THAT(Status(), StartsWith("Загрузил "));
  EXPECT_FALSE(IsInTree(3));
  EXPECT_EQ(CanBeDeleted(), std::pair(false, false));
}

TEST_F(ExplorerWithBase, ThatAnotherProgramWritesKeepsItsMessages) {
  MessageBase other(files_, clock_, ini_);
  other.OpenBase(base_);
  const MessageBase::Writing writing(other);
  Choose(1);
  Trigger("mnuDeleteThread");
  EXPECT_EQ(dialogs_.told.size(), 1U);
  EXPECT_TRUE(IsInTree(1) && IsInBase(1));
}

TEST_F(ExplorerWithBase, WhatIsOnShowCanBeCopied) {
  EXPECT_FALSE(Find<QAction>("mnuCopyMessage")->isEnabled());
  Choose(3);
  Trigger("mnuCopyNumber");
  EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), "3");
  Trigger("mnuCopyMessage");
  EXPECT_THAT(QGuiApplication::clipboard()->text().toStdString(),
              testing::AllOf(StartsWith(Field("txtSubj") + "\n"), EndsWith("\n\n" + Body())));
}

}  // namespace
