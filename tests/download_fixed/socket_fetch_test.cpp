#include "download_fixed/socket_fetch.h"

#include <gtest/gtest.h>

#include <functional>
#include <utility>
#include <vector>

#include "base/cat.h"
#include "base/ru_literal.h"
#include "support/download_stage.h"

namespace {

struct ScriptedSocket : PageSocket {
  explicit ScriptedSocket(Script& to) : script(to) {}

  void Report(PageSocketEvents* to) override { events = to; }
  int State() const override { return state; }
  void Connect(std::string_view host, std::uint16_t port) override {
    script.Add(Cat("connect to ", host, ":", port));
    state = socket_state::kConnecting;
  }
  void Send(std::string_view bytes) override { script.Add(Cat("send ", bytes)); }
  std::string Read() override { return std::exchange(waiting, {}); }
  void Close() override { state = socket_state::kClosed; }

  // What the peer does.
  void Accept() {
    state = socket_state::kConnected;
    events->Connected();
  }
  void Bring(std::string bytes) {
    waiting = std::move(bytes);
    events->DataArrival(waiting.size());
  }
  void HangUp() {
    state = socket_state::kClosing;
    events->ClosedByPeer();
  }
  void Break() {
    state = socket_state::kError;
    events->Failed(10061, "В соединении отказано"_ru);
  }

  Script& script;
  PageSocketEvents* events = nullptr;
  std::string waiting;
  int state = socket_state::kClosed;
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
  for (int call = 0; call < 2; ++call) {  // nothing is left of the one before
    stage.done = 0;
    EXPECT_EQ(stage.Fetch(), "one two three");
    EXPECT_EQ(stage.script.Take(), Events(R"(connect to forum.test:80 | wait
send GET /a?b=1\r\nAccept: text/html\r\n\r\n | wait | events | events | bar1:  Загружено 8 байт | wait | events
)"));
  }
}

TEST(FetchPageBySocket, AnErrorIsLoggedAndEndsThePage) {
  Stage refused, broken, endless;
  refused.peer = {[&] { refused.socket.Break(); }};
  EXPECT_EQ(refused.Fetch(), "");
  EXPECT_EQ(refused.script.text(), "connect to forum.test:80\nwait\nlog: \\r\\n9:05:07 - В соединении отказано\n");
  broken.peer = {[&] { broken.socket.Accept(); }, [&] { broken.socket.Bring("half"); }, [&] { broken.socket.Break(); }};
  EXPECT_EQ(broken.Fetch(), "half");
  endless.peer = {[&] { endless.socket.Bring(std::string(PageFetcher::kMaxPageBytes + 1, 'x')); }};
  endless.Fetch();
  EXPECT_TRUE(endless.script.Tells("log: \\r\\n9:05:07 - Страница слишком велика"));
}

TEST(SocketStatus, HasATextForMostStates) {
  constexpr const char* kTexts[] = {// by the state's number
                                    "",
                                    "Открываю соединение",
                                    "",
                                    "Жду... Загружено 0 байт",
                                    "Resolving Host ...",
                                    "HostResolved ...",
                                    "Соединяюсь с сайтом...",
                                    " Загружено 0 байт",
                                    "Закрываю соединение...",
                                    "Ошибка...",
                                    ""};
  for (int state = 0; const std::string text : kTexts) {
    Stage stage;
    stage.socket.state = state++;
    stage.fetch.Clck_Timer();
    EXPECT_EQ(stage.script.text(), text.empty() ? "" : Cat("bar1: ", text, "\n"));
  }
}

}  // namespace
