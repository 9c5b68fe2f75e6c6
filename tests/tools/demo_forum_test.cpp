// The demonstration server without its sockets.

#include <gtest/gtest.h>

#include "base/cat.h"
#include "base/ru_literal.h"
#include "demo_forum/demo_pages.h"
#include "demo_forum/demo_site.h"
#include "demo_forum/http_request.h"
#include "demo_forum/mischief.h"
#include "text/mdl_STR.h"

namespace {

class SteppedClock : public Clock {
 public:
  OleDate Now() const override { return now; }
  OleDate now{46'347};
};

TEST(DemoSite, GrowsAsTimeGoesOn) {
  SteppedClock clock;
  DemoSite site(50, 10, clock);
  const auto last = [&] { return site.Get("/kdv/data.txt").body; };
  const std::string at_start = last();
  clock.now.days += 9 / 86400.0;
  EXPECT_EQ(last(), at_start);
  clock.now.days += 1 / 86400.0;
  EXPECT_NE(last(), at_start);
  EXPECT_EQ(site.Messages("kdv").All().size(), 51u);
  clock.now.days -= 1;  // the machine's clock was put back
  EXPECT_EQ(site.Messages("kdv").All().size(), 51u);
}

TEST(DemoSite, EveryForumHasItsPagesAndMissingNumbers) {
  SteppedClock clock;
  DemoSite site(200, 0, clock);
  for (const ForumAddress& forum : DemoSite::Forums()) {
    int missing = 0;
    const ForumMessages messages = site.Messages(forum.kind);
    for (std::int32_t number = 1; number <= messages.Last() + 1; ++number) {
      const MessageRecord* const message = messages.Find(number);
      const std::string folder(forum.kind == "rts-an" ? "rts-an.some.host" : forum.kind);
      const WebAnswer answer = site.Get(Cat("/", folder, forum.before_number, number, forum.behind_number));
      missing += message == nullptr ? 1 : 0;
      EXPECT_EQ(answer.body, message == nullptr ? demo_pages::NotFoundPage(forum.kind)
                                                : demo_pages::MessagePage(forum.kind, *message));
    }
    EXPECT_GT(missing, 1) << forum.kind;
  }
  for (const char* path : {"/kdv", "/kdv/messages/1.html2", "/kdv/messages/.html", "/nobody/1", "x"})
    EXPECT_NE(site.Get(path).body.find("ot "), std::string::npos) << path;
}

TEST(DemoSite, AnAuthorsPageIsFoundByTheNickAsItIsSent) {
  SteppedClock clock;
  DemoSite site(200, 0, clock);
  for (const MessageRecord& message : site.Messages("ows_ptrv").All())
    EXPECT_EQ(site.Get(Cat("/ows_ptrv/author.cgi?name=", mdl_STR::UrlEncodeKoi8(message.Автор), "&full=1")).body,
              demo_pages::OwsAuthorPage(message));
  EXPECT_EQ(site.Get("/ows_ptrv/author.cgi?name=%").status, 404);
}

TEST(HttpRequest, IsTakenOffWhatTheClientSent) {
  const struct {
    std::string_view sent, method, target;
    int version;
    bool keeps;
  } cases[] = {
      {"GET /a?b HTTP/1.1\r\nHost: x\r\n\r\nrest", "GET", "/a?b", 1, true},
      {"GET / HTTP/1.1\r\nconnection: Close\r\n\r\nrest", "GET", "/", 1, false},
      {"HEAD / HTTP/1.0\r\n\r\nrest", "HEAD", "/", 0, false},
      {"GET / HTTP/1.0\r\nConnection: Keep-Alive\r\n\r\nrest", "GET", "/", 0, true},
      {"GET http://host:1/a HTTP/1.1\r\n\r\nrest", "GET", "/a", 1, true},
      {"GET HTTP://host HTTP/1.1\r\n\r\nrest", "GET", "/", 1, true},
      {"GET /a\r\nAccept: text/html\r\n\r\nrest", "GET", "/a", -1, false},
      {"GET\r\n\r\nrest", "", "", -1, false},
      {"GET / HTTP/2.0\r\n\r\nrest", "", "", -1, false},
      {"\r\n\r\nrest", "", "", -1, false},
  };
  for (const auto& c : cases) {
    std::string received(c.sent);
    const auto request = HttpRequest::Take(received);
    ASSERT_TRUE(request) << c.sent;
    EXPECT_EQ(request->method, c.method) << c.sent;
    EXPECT_EQ(request->target, c.target) << c.sent;
    EXPECT_EQ(request->minor_version, c.version) << c.sent;
    EXPECT_EQ(request->keeps_connection, c.keeps) << c.sent;
    EXPECT_EQ(received, "rest") << c.sent;
  }
  std::string half = "GET / HTTP/1.1\r\n", endless(HttpRequest::kLargest, 'x');
  EXPECT_FALSE(HttpRequest::Take(half));
  EXPECT_TRUE(HttpRequest::Take(endless)->method.empty());
}

TEST(Mischief, StandsInFrontOfThePath) {
  const struct {
    std::string_view path, rest;
    std::optional<Mischief> want;
  } cases[] = {
      {"/@cut:100/kdv/1", "/kdv/1", Mischief{Mischief::Kind::kCut, 100}},
      {"/@length:-3/a", "/a", Mischief{Mischief::Kind::kLength, -3}},
      {"/@drop", "/", Mischief{Mischief::Kind::kDrop}},
      {"/@cut/a", "/@cut/a", std::nullopt},
      {"/@drop:1/a", "/@drop:1/a", std::nullopt},
      {"/@cut:1x/a", "/@cut:1x/a", std::nullopt},
      {"/@/a", "/@/a", std::nullopt},
      {"/kdv/@drop", "/kdv/@drop", std::nullopt},
  };
  for (const auto& c : cases) {
    std::string_view path = c.path;
    EXPECT_EQ(mischief::TakeFromPath(path), c.want) << c.path;
    EXPECT_EQ(path, c.rest) << c.path;
  }
}

}  // namespace
