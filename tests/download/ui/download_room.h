#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <QAbstractItemView>
#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

#include "base/cat.h"
#include "base/ru_literal.h"
#include "download/ui/http_fetcher.h"
#include "download/ui/scripted_server.h"
#include "download/ui/tcp_socket.h"
#include "download_configured/ui/frmDownload2.h"
#include "download_fixed/ui/frmDownload.h"
#include "jet/check.h"
#include "store/new_base.h"
#include "support/faulty_file.h"
#include "support/fixed_clock.h"
#include "support/hand_alarm.h"
#include "support/scripted_dialogs.h"
#include "ui/text.h"

enum class Sort { kFixed, kConfigured };
inline constexpr Sort kBothSorts[] = {Sort::kFixed, Sort::kConfigured};

/// A download window on the screen, over a base on a disk in memory and a forum on this machine that answers as told.
struct DownloadRoom {
  using Answer = ScriptedServer::Answer;

  explicit DownloadRoom(Sort sort, std::vector<std::int32_t> in_base = {}, const char* base_name = nullptr)
      : is_fixed(sort == Sort::kFixed) {
    WriteForumIni();
    const std::string path = base_name != nullptr ? base_name : is_fixed ? "/kdv.mdb" : "/moysha.mdb";
    CreateMessageBase(files, path, {}, clock);
    base.OpenBase(path);
    for (BaseRecordset rows(base); const std::int32_t number : in_base) {
      rows.AddNew();
      rows.SetNumber("Код"_ru, number);
      rows.Update();
    }
    server.answer_to = [this](const std::string& request) {
      if (request.find("/data.txt") != std::string::npos) return Whole(Cat(last_on_forum));
      const int number = std::stoi(request.substr(request.find("messages/") + 9));
      return answer ? answer(number) : Whole(Page());
    };
    const DownloadNeeds needs{base, ini, log, clock, dialogs, inet, alarm};
    if (is_fixed)
      window = std::make_unique<frmDownload>(needs, socket);
    else
      window = std::make_unique<frmDownload2>(needs);
    window->show();
  }

  /// @param timeout  seconds of the configured forum; only a test that hangs comes as far as the usual one
  void WriteForumIni(int timeout = 20) {
    files.SetContent("/forum.ini", Cat("[FORUMS]\r\nmax=2\r\nf1=kdv\r\nf2=moysha\r\n[kdv]\r\nURL=", server.Url(""),
                                       "\r\n[moysha]\r\nname=Беседка\r\nURLSFX=.html\r\nURL="_ru,
                                       server.Url("/messages/"), "\r\nTIMEOUT=", timeout, "\r\n"));
  }

  /// A message that both sorts of forum take for theirs.
  static std::string Page() {
    return Cat("<title>T</title><textarea COLS=55 ROWS=6>B</textarea><b>N</b><i>15/03/02</i>", std::string(150, ' '));
  }
  static Answer Whole(const std::string& page, const char* status = "200 OK") {
    return {.bytes = QByteArray::fromStdString(
                Cat("HTTP/1.1 ", status, "\r\nContent-Length: ", page.size(), "\r\n\r\n", page))};
  }

  template <typename Control>
  Control* Find(const char* name) const {
    return window->findChild<Control*>(QString::fromLatin1(name));
  }
  std::string Text(const char* box) const { return Find<QLineEdit>(box)->text().toStdString(); }
  std::string Panel(int number) const { return Find<StatusPanels>("dlBar")->Panel(number).toStdString(); }
  void Click(const char* button) const { Find<QPushButton>(button)->click(); }
  void Manual(const QString& begin, const QString& end) const {
    Find<QRadioButton>("chkManual")->setChecked(true);
    Find<QLineEdit>("txtBegin")->setText(begin);
    Find<QLineEdit>("txtEnd")->setText(end);
    Click("cmdDownload");
  }
  QAbstractItemModel* Rows() const { return Find<QAbstractItemView>("lvDownload")->model(); }
  /// A column of the list, in the order of adding.
  std::vector<std::string> Column(int column) const {
    std::vector<std::string> texts;
    for (int row = 0; row < Rows()->rowCount(); ++row)
      texts.push_back(
          Rows()->index(is_fixed ? Rows()->rowCount() - 1 - row : row, column).data().toString().toStdString());
    return texts;
  }
  bool IsIdle() const {
    return Find<QPushButton>("cmdDownload")->isEnabled() && Find<QPushButton>("cmdGetLast")->isEnabled() &&
           QApplication::overrideCursor() == nullptr;
  }
  /// The numbers in the base, which must be without a fault.
  std::vector<std::int32_t> InBase() {
    NoProgress progress;
    EXPECT_EQ(jet::Check(base.database(), progress).errors, 0U);
    std::vector<std::int32_t> numbers;
    auto rows = base.connection().OpenSnapshot("SELECT Код FROM База ORDER BY Код"_ru);
    for (; !rows.Eof(); rows.MoveNext()) numbers.push_back(rows.Int(0));
    return numbers;
  }

  const bool is_fixed;
  int last_on_forum = 0;
  std::function<Answer(int number)> answer;  // instead of a whole page

  FaultyFileSystem files;
  FixedClock clock{2002, 3, 15};
  mdl_AZ::ForumIni ini{files, "/"};
  mdl_AZ::ForumLog log{ini, files, clock};
  MessageBase base{files, clock, ini};
  ScriptedDialogs dialogs;
  ScriptedServer server;
  HttpFetcher inet{nullptr, 100'000};
  TcpSocket socket;
  HandAlarm alarm;
  std::unique_ptr<DownloadWindow> window;
};
