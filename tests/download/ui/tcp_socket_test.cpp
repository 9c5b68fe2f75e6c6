#include "download/ui/tcp_socket.h"

#include <gtest/gtest.h>

#include <string>

#include <QCoreApplication>

#include "base/cat.h"
#include "base/cp1251.h"
#include "download/ui/scripted_server.h"

namespace {

constexpr const char* kRequest = "GET /\r\nAccept: text/html\r\n\r\n";

/// Asks for a page and writes down what happens; closes as a fetch does.
class Events : public PageSocketEvents {
 public:
  explicit Events(TcpSocket& socket) : socket_(socket) { socket_.Report(this); }

  void Connected() override {
    told += Cat("connected ", socket_.State(), "\n");
    socket_.Send(kRequest);
  }
  void DataArrival(std::size_t waiting) override {
    const std::string bytes = socket_.Read();
    EXPECT_EQ(bytes.size(), waiting);
    page += bytes;
    QCoreApplication::processEvents();  // may bring more, or the end
  }
  void ClosedByPeer() override {
    told += Cat("closed by peer ", socket_.State(), "\n");
    socket_.Close();
  }
  void Failed(int number, std::string_view description) override {
    told += Cat("error ", number, " ", cp1251::ToUtf8(description), " ", socket_.State(), "\n");
    socket_.Close();
  }

  void Fetch(std::uint16_t port) {
    socket_.Connect("127.0.0.1", port);
    while (socket_.State() > socket_state::kClosed) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }

  std::string told, page;

 private:
  TcpSocket& socket_;
};

TEST(TcpSocket, BringsAllThatThePeerSentBeforeItClosedAndIsReadyForTheNextPage) {
  const QByteArray large = QByteArray("0123456789").repeated(50'000);
  const ScriptedServer::Answer answers[] = {
      {.bytes = "page"}, {.bytes = ""}, {.bytes = "drop by drop", .pace = Pace::kByteByByte}, {.bytes = large}};
  for (const auto& answer : answers) {
    ScriptedServer server;
    server.answers = {answer};
    TcpSocket socket;
    Events events(socket);
    socket.Close();  // harmless
    for (int page = 0; page < 2; ++page) events.Fetch(server.port());
    EXPECT_EQ(QByteArray::fromStdString(events.page), answer.bytes + answer.bytes);
    EXPECT_EQ(events.told, "connected 7\nclosed by peer 8\nconnected 7\nclosed by peer 8\n");
    EXPECT_EQ(server.requests(), std::vector<std::string>(2, kRequest));
  }
}

TEST(TcpSocket, ReportsARefusedConnectionOnce) {
  ScriptedServer server;
  server.Close();
  TcpSocket socket;
  Events events(socket);
  events.Fetch(server.port());
  EXPECT_EQ(events.told, "error 10061 В соединении отказано 9\n");
  EXPECT_EQ(events.page, "");
}

TEST(TcpSocket, ReportsNothingOfItsOwnClosing) {
  ScriptedServer server;
  TcpSocket socket;
  Events events(socket);
  server.on_request = [&] { socket.Close(); };  // the peer never answers
  events.Fetch(server.port());
  EXPECT_EQ(events.told, "connected 7\n");
  EXPECT_EQ(socket.State(), socket_state::kClosed);
}

}  // namespace
