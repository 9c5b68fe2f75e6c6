#include "download_fixed/socket_fetch.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "base/cat.h"
#include "base/ru_literal.h"
#include "support/download_stage.h"

namespace {

/// A peer that does one thing whenever the window waits for events.
class ScriptedSocket : public PageSocket {
 public:
  explicit ScriptedSocket(Script& script) : script_(script) {}

  void Report(PageSocketEvents* events) override { events_ = events; }
  int State() const override { return state_; }
  void Connect(std::string_view host, std::uint16_t port) override {
    script_.Add(Cat("connect to ", host, ":", port));
    state_ = socket_state::kConnecting;
  }
  void Send(std::string_view bytes) override { script_.Add(Cat("send ", bytes)); }
  std::string Read() override { return std::exchange(waiting_, {}); }
  void Close() override { state_ = socket_state::kClosed; }

  void Accept() {
    state_ = socket_state::kConnected;
    events_->Connected();
  }
  void Bring(std::string bytes) {
    waiting_ = std::move(bytes);
    events_->DataArrival(waiting_.size());
  }
  void HangUp() {
    state_ = socket_state::kClosing;
    events_->ClosedByPeer();
  }
  void Break() {
    state_ = socket_state::kError;
    events_->Failed(10061, "В соединении отказано"_ru);
  }
  void ShowAs(int state) { state_ = state; }

 private:
  Script& script_;
  PageSocketEvents* events_ = nullptr;
  std::string waiting_;
  int state_ = socket_state::kClosed;
};

struct Stage : DownloadStage {
  FixedDownload with{records, fetcher, view, ini, forum_log, clock, ""};
  ScriptedSocket socket{script};
  SocketFetch fetch{socket, with};
  std::vector<std::function<void()>> peer;  // what it does, one each time events run
  std::size_t done = 0;

  std::string Fetch() {
    view.on_events = [this] {
      if (done < peer.size()) peer[done++]();
    };
    return fetch.FetchPageBySocket("forum.test", "/a?b=1");
  }
};

TEST(FetchPageBySocket, GathersThePiecesInOrder) {
  Stage stage;
  ScriptedSocket& socket = stage.socket;
  stage.peer = {[&] { socket.Accept(); },          [&] { socket.Bring("one "); },  [&] { socket.Bring("two "); },
                [&] { stage.fetch.Clck_Timer(); }, [&] { socket.Bring("three"); }, [&] { socket.HangUp(); }};
  EXPECT_EQ(stage.Fetch(), "one two three");
  EXPECT_EQ(stage.script.Take(), R"(connect to forum.test:80
wait
send GET /a?b=1\r\nAccept: text/html\r\n\r\n
wait
events
events
bar1:  Загружено 8 байт
wait
events
)");
  stage.done = 0;
  EXPECT_EQ(stage.Fetch(), "one two three") << "nothing is left from the call before";
  EXPECT_NE(stage.script.text().find("bar1:  Загружено 8 байт\n"), std::string::npos) << "the count starts over";
}

TEST(FetchPageBySocket, AnErrorIsLoggedAndEndsThePage) {
  Stage refused;
  refused.peer = {[&] { refused.socket.Break(); }};
  EXPECT_EQ(refused.Fetch(), "");
  EXPECT_EQ(refused.script.text(), "connect to forum.test:80\nwait\nlog: \\r\\n9:05:07 - В соединении отказано\n");
  Stage broken;
  broken.peer = {[&] { broken.socket.Accept(); }, [&] { broken.socket.Bring("half"); }, [&] { broken.socket.Break(); }};
  EXPECT_EQ(broken.Fetch(), "half");
}

TEST(FetchPageBySocket, APageWithoutEndIsCutOff) {
  Stage stage;
  stage.peer = {[&] { stage.socket.Bring(std::string(PageFetcher::kMaxPageBytes + 1, 'x')); }};
  stage.Fetch();
  EXPECT_NE(stage.script.text().find("Страница слишком велика"), std::string::npos);
}

TEST(SocketStatus, HasATextForMostStates) {
  const std::pair<int, std::string> cases[] = {
      {0, ""},
      {1, "bar1: Открываю соединение\n"},
      {2, ""},
      {3, "bar1: Жду... Загружено 0 байт\n"},
      {4, "bar1: Resolving Host ...\n"},
      {5, "bar1: HostResolved ...\n"},
      {6, "bar1: Соединяюсь с сайтом...\n"},
      {7, "bar1:  Загружено 0 байт\n"},
      {8, "bar1: Закрываю соединение...\n"},
      {9, "bar1: Ошибка...\n"},
      {10, ""},
  };
  for (const auto& [state, want] : cases) {
    Stage stage;
    stage.socket.ShowAs(state);
    stage.fetch.Clck_Timer();
    EXPECT_EQ(stage.script.text(), want) << state;
  }
}

}  // namespace
