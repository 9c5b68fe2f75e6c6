// How long a download window keeps its user waiting: a session over many pages of a server on this machine, while a
// timer asks every millisecond whether the window answers.
//
//   session_window_bench [PAGES]

#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "base/cat.h"
#include "base/ru_literal.h"
#include "demo_forum/demo_pages.h"
#include "download/ui/http_fetcher.h"
#include "download/ui/qt_alarm.h"
#include "download/ui/tcp_socket.h"
#include "download_configured/ui/frmDownload2.h"
#include "download_fixed/ui/frmDownload.h"
#include "store/new_base.h"

namespace {

/// Answers every request with the same page, over one connection.
class PageServer {
 public:
  PageServer() {
    listener_.listen(QHostAddress::LocalHost);
    QObject::connect(&listener_, &QTcpServer::newConnection, &listener_, [this] {
      QTcpSocket* const peer = listener_.nextPendingConnection();
      QObject::connect(peer, &QTcpSocket::readyRead, peer, [this, peer] {
        if (peer->readAll().endsWith("\r\n\r\n")) peer->write(answer_);
      });
    });
  }
  void Serve(const std::string& page) {
    answer_ = QByteArray::fromStdString(Cat("HTTP/1.1 200 OK\r\nContent-Length: ", page.size(), "\r\n\r\n", page));
  }
  std::string Address() const { return Cat("127.0.0.1:", listener_.serverPort(), "/"); }

 private:
  QTcpServer listener_;
  QByteArray answer_;
};

/// The longest time between two turns of the event loop, in milliseconds.
class Gaps {
 public:
  Gaps() {
    QObject::connect(&timer_, &QTimer::timeout, [this] {
      longest_ = std::max(longest_, since_.nsecsElapsed());
      since_.restart();
    });
    since_.start();
    timer_.start(1);
  }
  double Longest() const { return static_cast<double>(longest_) / 1e6; }

 private:
  QTimer timer_;
  QElapsedTimer since_;
  qint64 longest_ = 0;
};

void Measure(DownloadWindow& window, const char* name, int pages) {
  const auto find = [&](const char* control) { return window.findChild<QWidget*>(QString::fromLatin1(control)); };
  window.show();
  qobject_cast<QRadioButton*>(find("chkManual"))->setChecked(true);
  qobject_cast<QLineEdit*>(find("txtBegin"))->setText(QStringLiteral("1"));
  qobject_cast<QLineEdit*>(find("txtEnd"))->setText(QString::number(pages));
  QCoreApplication::processEvents();
  QElapsedTimer clock;
  clock.start();
  const Gaps gaps;
  qobject_cast<QPushButton*>(find("cmdDownload"))->click();
  const double seconds = static_cast<double>(clock.elapsed()) / 1e3;
  std::printf("%-14s %zu of %d pages stored in %.2f s, longest gap %.1f ms\n", name, window.StoredMessages().size(),
              pages, seconds, gaps.Longest());
}

struct ProgramFolder {
  ProgramFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "quorvex_bench_XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) std::abort();
    path = pattern;
  }
  ~ProgramFolder() { std::filesystem::remove_all(path); }
  std::string path;
};

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("DISPLAY")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  const int pages = argc > 1 ? std::atoi(argv[1]) : 2000;
  const ProgramFolder folder;
  PageServer server;
  std::ofstream(folder.path + "/forum.ini")
      << Cat("[FORUMS]\r\nmax=2\r\nf1=kdv\r\nf2=moysha\r\n[kdv]\r\nURL=", server.Address(),
             "\r\n[moysha]\r\nURL=", server.Address(), "\r\n");
  DiskFileSystem files;
  const SystemClock clock;
  const mdl_AZ::ForumIni ini(files, folder.path);
  const mdl_AZ::ForumLog log(ini, files, clock);
  QtDialogs dialogs;
  HttpFetcher inet;
  TcpSocket Winsock;
  QtAlarm alarm;
  MessageRecord message;
  message.Тема = "О курсе"_ru;
  message.Автор = "Ваня"_ru;
  message.Дата = OleDate{37'330};
  message.Текст.assign(1000, 'x');
  for (const std::string kind : {"kdv", "moysha"}) {
    MessageBase base(files, clock, ini);
    const std::string path = folder.path + "/" + kind + ".mdb";
    CreateMessageBase(files, path, {}, clock);
    base.OpenBase(path);
    server.Serve(demo_pages::MessagePage(kind, message));
    const DownloadNeeds needs{base, ini, log, clock, dialogs, inet, alarm};
    if (kind == "kdv") {
      frmDownload window(needs, Winsock);
      Measure(window, "frmDownload", pages);
    } else {
      frmDownload2 window(needs);
      Measure(window, "frmDownload2", pages);
    }
  }
  return 0;
}
