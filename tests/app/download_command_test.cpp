#include "app/download_command.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include <QApplication>
#include <QLineEdit>
#include <QRadioButton>
#include <QTest>
#include <QTimer>

#include "base/cat.h"
#include "base/ru_literal.h"
#include "download/ui/tcp_socket.h"
#include "store/new_base.h"
#include "support/faulty_file.h"
#include "support/fixed_clock.h"
#include "support/hand_alarm.h"
#include "support/memory_settings.h"
#include "support/scripted_dialogs.h"
#include "support/scripted_fetcher.h"

namespace {

struct NoWindows : OtherWindows {
  void OpenBaseDialog(KDVExplorer&, bool) override {}
  void OpenLink(const QUrl&) override {}
};

/// The main window with an empty base open.
struct Stage {
  explicit Stage(const std::string& base) {
    files.SetContent("/forum.ini",
                     "[FORUMS]\r\nmax=7\r\nf1=rts-an\r\nf2=kdv\r\nf3=ptrv\r\nf4=moysha\r\nf5=gelium\r\nf6=ows_ptrv\r\n"
                     "f7=other\r\n[kdv]\r\nURL=kdv.test\r\n[gelium]\r\nStopDownLoad=1\r\n");
    CreateMessageBase(files, "/" + base, {}, clock);
    explorer.LoadInsteadOfDialog("/" + base);
    explorer.Load("/" + base);
  }
  /// @param in_window  what the user does there; the window then closes
  void Download(std::function<void(QWidget&)> in_window = {}) {
    QTimer::singleShot(0, &explorer, [this, in_window] {
      QWidget* const window = QApplication::activeModalWidget();
      if (window == nullptr) return;
      shown = window->objectName().toStdString();
      if (in_window) in_window(*window);
      window->close();
    });
    DownloadMessages(explorer, {ini, log, clock, dialogs, inet, Winsock, alarm});
    QCoreApplication::processEvents();
  }

  FaultyFileSystem files;
  FixedClock clock{2002, 3, 16};
  mdl_AZ::ForumIni ini{files, "/"};
  mdl_AZ::ForumLog log{ini, files, clock};
  MemorySettings settings;
  ScriptedDialogs dialogs;
  NoWindows windows;
  KDVExplorer explorer{{files, clock, ini, settings, dialogs, windows}};
  Script script;
  ScriptedFetcher inet{script};
  TcpSocket Winsock;
  HandAlarm alarm;
  std::string shown;  // the object name of the window
};

constexpr const char* kPage = "<title>T</title><textarea COLS=55 ROWS=6>B</textarea>";

void FetchRange(QWidget& window, const char* end) {
  window.findChild<QRadioButton*>("chkManual")->setChecked(true);
  window.findChild<QLineEdit*>("txtBegin")->setText("1");
  window.findChild<QLineEdit*>("txtEnd")->setText(end);
  QTest::keyClick(&window, Qt::Key_Return);  // the default button
}

TEST(DownloadMessages, OpensTheWindowOfTheForumOrSaysWhyNot) {
  const struct {
    const char *base, *window, *told;
  } cases[] = {
      {"rts-an.mdb", "frmDownload", ""},
      {"kdv_2002.mdb", "frmDownload", ""},
      {"ptrv.mdb", "frmDownload2", ""},
      {"moysha.mdb", "frmDownload2", ""},
      {"ows_ptrv.mdb", "frmDownload2", ""},
      {"other.mdb", "", ""},
      {"gelium.mdb", "", "gelium\r\nотключен для загрузки новых сообщений!"},
      {"my_kdv.mdb", "",
       "Из имени файла базы сообщений непонятно, что это за база. \r\nПоэтому откуда качать, я тоже не знаю..."},
  };
  for (const auto& c : cases) {
    Stage stage(c.base);
    stage.Download();
    EXPECT_EQ(stage.shown, c.window) << c.base;
    EXPECT_EQ((stage.dialogs.told.empty() ? "" : stage.dialogs.told[0].toStdString()), c.told) << c.base;
  }
}

TEST(DownloadMessages, ABaseThatAnotherProgramWritesIsTold) {
  Stage stage("kdv.mdb");
  MessageBase other(stage.files, stage.clock, stage.ini);
  other.OpenBase("/kdv.mdb");
  const MessageBase::Writing writing(other);
  stage.Download();
  EXPECT_EQ(stage.shown, "");
  EXPECT_EQ(stage.dialogs.told.size(), 1U);
}

TEST(DownloadMessages, TheMainWindowShowsTheFirstNewMessage) {
  Stage stage("kdv.mdb");
  auto* tree = stage.explorer.findChild<MessageTree*>();
  for (const int number : {1, 2}) stage.inet.Serve(Cat("kdv.test/messages/", number, ".html"), kPage);
  stage.settings.Set("LoadDays", cp1251::ToUtf8(user_settings::kWholeArchiveText));
  stage.Download([](QWidget& window) { FetchRange(window, "2"); });
  EXPECT_EQ(stage.explorer.msgKod(), 2) << "the newest thread stands on top";
  EXPECT_TRUE(tree->currentIndex().data(Qt::FontRole).value<QFont>().bold());
  stage.Download();  // nothing is stored, nothing changes
  EXPECT_TRUE(tree->currentIndex().isValid());
}

TEST(DownloadMessages, MessagesOlderThanTheDaysOnShowAreTold) {
  Stage stage("kdv.mdb");
  stage.inet.Serve("kdv.test/messages/1.html", kPage);
  stage.Download([](QWidget& window) { FetchRange(window, "1"); });
  EXPECT_EQ(stage.explorer.findChild<StatusPanels*>("StatBar")->Panel(1).toStdString(),
            "Эти сообщения старше показанных дней: чтобы увидеть их, нажмите кнопку АРХИВ");
}

TEST(DownloadMessages, TheMainWindowTellsWhatTheBaseRefusedInTheEnd) {
  Stage stage("kdv.mdb");
  for (const int number : {1, 2, 3})
    stage.inet.Serve(Cat("kdv.test/messages/", number, ".html"), [&stage, number] {
      if (number == 3) stage.files.FailAt(1, FaultyFileSystem::Fault::kFail, FaultyFileSystem::Lasting::kFromThenOn);
      return std::string(kPage);
    });
  stage.Download([](QWidget& window) { FetchRange(window, "3"); });
  EXPECT_TRUE(stage.explorer.findChild<StatusPanels*>("StatBar")->Panel(1).startsWith(
      QStringLiteral("Не записано сообщений: 2. Загрузите их ещё раз, номера с 2 по 3. Изменения не записаны")));
}

}  // namespace
