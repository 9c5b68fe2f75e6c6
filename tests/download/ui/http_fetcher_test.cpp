#include "download/ui/http_fetcher.h"

#include <gtest/gtest.h>

#include <memory>

#include <QCoreApplication>
#include <QTimer>

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "download/ui/scripted_server.h"

namespace {

constexpr std::int32_t kSeconds = 20;  // only a test that hangs comes that far
constexpr std::int32_t kShort = 1;

using States = std::vector<int>;
const States kSuccess{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 12};

QByteArray Page(const QByteArray& status, const QByteArray& body) {
  return "HTTP/1.1 " + status + "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

const QByteArray kOk = "HTTP/1.1 200 OK\r\n";
const QByteArray kChunked = kOk + "Transfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n2\r\nde\r\n0\r\n\r\n";
const QByteArray kGzip = Page("200 OK\r\nContent-Encoding: gzip",
                              QByteArray::fromHex("1f8b08000000000002ff2b2e2c4d4dad4a4d5128a6120300733dae8051000000"));

const ScriptedServer::Answer kHalf = {.bytes = kOk + "Content-Length: 9\r\n\r\nhalf", .then = Then::kKeepOpen};

struct Stage {
  explicit Stage(std::vector<ScriptedServer::Answer> answers = {}) {
    server.answers = std::move(answers);
    fetcher->OnStateChanged([this](int state) { states.push_back(state); });
  }
  ScriptedServer server;
  std::unique_ptr<HttpFetcher> fetcher = std::make_unique<HttpFetcher>(nullptr, 100'000);
  States states;

  std::string Get(std::string_view path = "/", std::int32_t timeout = kSeconds) {
    states.clear();
    return fetcher->OpenUrl(server.Url(path), timeout);
  }
  /// The error's number; 0 when a page came.
  int Failure(std::int32_t timeout = kSeconds) {
    try {
      Get("/", timeout);
      return 0;
    } catch (const TransferError& error) {
      EXPECT_NE(std::string(error.what()), "");
      return error.number();
    }
  }
};

TEST(HttpFetcher, TakesThePageAsItComesWhateverTheStatus) {
  const QByteArray bytes("a\0b\r\n\xC0\xFF\n", 8);
  const struct {
    QByteArray answer, page;
  } cases[] = {
      {Page("200 OK", bytes), bytes},
      {Page("401 Unauthorized", "who?"), "who?"},
      {Page("404 Not Found", "no"), "no"},
      {Page("503 Busy", "later"), "later"},
      {Page("302 Found", "no address"), "no address"},
      {Page("200 OK", ""), ""},
      {Page("200 OK\r\nContent-Type: text/html; charset=koi8-r", "\xC1"), "\xC1"},
      {"HTTP/1.0 200 OK\r\n\r\nto the end", "to the end"},
      {kChunked, "abcde"},
      {kGzip, QByteArray("squeezed ").repeated(9)},
  };
  for (const auto& c : cases)
    for (const Pace pace : {Pace::kAtOnce, Pace::kByteByByte}) {
      Stage stage({{.bytes = c.answer, .pace = pace}});
      EXPECT_EQ(QByteArray::fromStdString(stage.Get()), c.page) << c.answer.toStdString();
      EXPECT_EQ(stage.states, kSuccess);
    }
}

TEST(HttpFetcher, APageCutAnywhereIsAFailure) {
  for (const QByteArray& page : {Page("200 OK", "twenty bytes of page"), Page("404 Not Found", "no"), kChunked, kGzip})
    for (const Then then : {Then::kClose, Then::kReset})
      for (qsizetype cut = 0; cut < page.size(); cut += 3) {
        Stage stage({{.bytes = page.left(cut), .then = then}});
        EXPECT_NE(stage.Failure(), 0) << page.left(cut).toStdString();
        ASSERT_FALSE(stage.states.empty());
        EXPECT_EQ(stage.states.back(), 11);
      }
}

TEST(HttpFetcher, AnAnswerThatIsNoPageIsAFailure) {
  const ScriptedServer::Answer answers[] = {
      {.bytes = kOk + "Content-Length: 10\r\n\r\nshort"},
      {.bytes = kOk + "Content-Encoding: gzip\r\nContent-Length: 9\r\n\r\nnot gzip!"},
      {.bytes = kOk + "Content-Encoding: br\r\nContent-Length: 3\r\n\r\nabc"},
      {.bytes = kOk + "\r\n", .for_ever = QByteArray(5000, 'x')},
      {.bytes = kOk + "X: ", .for_ever = QByteArray(5000, 'x')},
      {.bytes = kOk + "Transfer-Encoding: chunked\r\n\r\n", .for_ever = "5\r\nxxxxx\r\n"},
      {.bytes = Page("302 Found\r\nLocation: /again", "")},
  };
  for (const auto& answer : answers) {
    Stage stage({answer});
    EXPECT_NE(stage.Failure(), 0) << answer.bytes.toStdString();
    EXPECT_EQ(stage.states.back(), 11);
    EXPECT_LE(stage.server.requests().size(), 11u);
  }
}

TEST(HttpFetcher, FollowsARedirectionAndTellsEachStateOnce) {
  Stage stage({{.bytes = Page("302 Found\r\nLocation: /there", "gone")}, {.bytes = Page("200 OK", "here")}});
  EXPECT_EQ(stage.Get(), "here");
  EXPECT_EQ(stage.states, kSuccess);
  ASSERT_EQ(stage.server.requests().size(), 2u);
  EXPECT_TRUE(stage.server.requests()[1].starts_with("GET /there HTTP/1.1\r\n"));
}

TEST(HttpFetcher, TellsTheSameStatesOverAConnectionThatIsOpen) {
  Stage stage({{.bytes = Page("200 OK", "1"), .then = Then::kKeepOpen}});
  stage.fetcher->OnStateChanged([&](int state) {
    stage.states.push_back(state);
    QCoreApplication::processEvents();  // as the windows do
  });
  for (int call = 0; call < 3; ++call) {
    EXPECT_EQ(stage.Get(), "1");
    EXPECT_EQ(stage.states, kSuccess);
  }
  EXPECT_EQ(stage.server.connections(), 1);
}

TEST(HttpFetcher, AsksAgainWhenTheServerHasClosedAnIdleConnection) {
  Stage stage({{.bytes = Page("200 OK", "1"), .then = Then::kKeepOpen},
               {.bytes = "", .then = Then::kClose},
               {.bytes = Page("200 OK", "2")}});
  EXPECT_EQ(stage.Get(), "1");
  EXPECT_EQ(stage.Get(), "2");
  EXPECT_EQ(stage.server.connections(), 2);
}

TEST(HttpFetcher, BringsCookiesBack) {
  Stage stage({{.bytes = Page("200 OK\r\nSet-Cookie: a=1; path=/\r\nSet-Cookie: b=2", "")}});
  stage.Get();
  stage.Get();
  EXPECT_EQ(stage.server.requests()[0].find("Cookie"), std::string::npos);
  EXPECT_NE(stage.server.requests()[1].find("\r\nCookie: a=1; b=2\r\n"), std::string::npos);
}

TEST(HttpFetcher, AsksAPlainProxyForTheWholeAddress) {
  Stage stage({{.bytes = Page("200 OK", "through the proxy")}});
  qputenv("http_proxy", Cat("http://", stage.server.Url()).c_str());
  EXPECT_EQ(stage.fetcher->OpenUrl("forum.test/a?b", kSeconds), "through the proxy");
  qunsetenv("http_proxy");
  EXPECT_TRUE(stage.server.requests()[0].starts_with("GET http://forum.test/a?b HTTP/1.1\r\nHost: forum.test\r\n"));
}

TEST(HttpFetcher, SendsTheAddressAndItsOwnName) {
  Stage stage({{.bytes = Page("200 OK", "1")}});
  stage.Get("/Ваня?a=%F7 b"_ru);
  const std::string& request = stage.server.requests().front();
  EXPECT_TRUE(request.starts_with("GET /%C2%E0%ED%FF?a=%F7%20b HTTP/1.1\r\n")) << request;
  for (const char* line : {"\r\nUser-Agent: Quorvex/1.0\r\n", "\r\nAccept-Language: ru\r\n",
                           "\r\nAccept: text/html, */*\r\n", "\r\nAccept-Encoding: gzip"})
    EXPECT_NE(request.find(line), std::string::npos) << line << request;
}

TEST(HttpFetcher, SaysWhatKeptThePageAway) {
  Stage refused;
  refused.server.Close();
  EXPECT_EQ(refused.Failure(), 35754);
  EXPECT_EQ(refused.states.back(), 11);
  Stage silent;
  EXPECT_EQ(silent.Failure(kShort), 35761);
  EXPECT_EQ(silent.states.back(), 11);
  Stage half({kHalf});
  EXPECT_EQ(half.Failure(kShort), 35761);
  Stage nowhere;
  EXPECT_THROW(nowhere.fetcher->OpenUrl("", kSeconds), TransferError);
  EXPECT_THROW(nowhere.fetcher->OpenUrl("ftp://x", kSeconds), TransferError);
}

TEST(HttpFetcher, CancelEndsTheCallWithAnEmptyPage) {
  Stage stage({kHalf, {.bytes = Page("200 OK", "whole")}});
  stage.server.on_request = [&] { QTimer::singleShot(0, stage.fetcher.get(), [&] { stage.fetcher->Cancel(); }); };
  EXPECT_EQ(stage.Get(), "");
  EXPECT_LE(stage.states.back(), 7) << "neither whole nor failed";
  stage.server.on_request = nullptr;
  EXPECT_EQ(stage.Get(), "whole");
  stage.fetcher->Cancel();  // nothing to end
}

TEST(HttpFetcher, RefusesASecondCallWhileOneRuns) {
  Stage stage({{.bytes = Page("200 OK", "first")}});
  int second = 0;
  stage.server.on_request = [&] { second = stage.Failure(); };
  EXPECT_EQ(stage.Get(), "first");
  EXPECT_EQ(second, 35764);
}

TEST(HttpFetcher, MayBeCancelledOrGoAtEveryState) {
  for (const bool goes : {false, true})
    for (int at = 1; at <= 7; ++at) {
      Stage stage({{.bytes = Page("200 OK", "page")}});
      stage.fetcher->OnStateChanged([&](int state) {
        if (state != at) return;
        if (goes)
          stage.fetcher.reset();
        else
          stage.fetcher->Cancel();
      });
      EXPECT_EQ(stage.Get(), "") << at;
    }
  Stage silent;
  silent.server.on_request = [&] { QTimer::singleShot(0, &*silent.fetcher, [&] { silent.fetcher.reset(); }); };
  EXPECT_EQ(silent.Get(), "");
}

}  // namespace
