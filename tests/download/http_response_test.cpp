#include "download/http_response.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "base/error.h"

namespace {

constexpr std::size_t kLargest = 100;

/// The body; "error 6" and the like when it is none. @param piece  bytes at a time
std::string Read(std::string_view bytes, std::size_t piece) {
  HttpResponse response(kLargest);
  try {
    for (; !bytes.empty(); bytes.remove_prefix(std::min(piece, bytes.size()))) response.Feed(bytes.substr(0, piece));
    response.End();
    return response.Complete() ? response.TakeBody() : "incomplete";
  } catch (const TransferError& error) {
    return "error " + std::to_string(error.number());
  }
}

TEST(HttpResponse, EndsWhereTheServerSays) {
  const std::string ok = "HTTP/1.1 200 OK\r\n";
  const struct {
    std::string bytes, want;
  } cases[] = {
      {ok + "Content-Length: 3\r\n\r\nabc", "abc"},
      {ok + "content-length:3\r\n\r\nabcdef", "abc"},
      {ok + "Content-Length: 3\r\nContent-Length: 3\r\n\r\nabc", "abc"},
      {ok + "Content-Length: 3\r\nContent-Length: 4\r\n\r\nabcd", "error 35754"},
      {ok + "Content-Length: -3\r\n\r\nabc", "error 35754"},
      {ok + "Content-Length: \r\n\r\nabc", "error 35754"},
      {ok + "Content-Length: 4\r\n\r\nabc", "error 35754"},
      {ok + "Content-Length: 101\r\n\r\n", "error 6"},
      {ok + "Content-Length: 0\r\n\r\n", ""},
      {ok + "\r\nto the end", "to the end"},
      {ok + "\r\n" + std::string(101, 'x'), "error 6"},
      {"HTTP/1.1 200 OK\n\nbare line ends", "bare line ends"},
      {ok + "Transfer-Encoding: chunked\r\n\r\n3\r\nabc\r\nA;x=y\r\n0123456789\r\n0\r\n\r\n", "abc0123456789"},
      {ok + "Transfer-Encoding: chunked\r\nContent-Length: 1\r\n\r\n2\r\nab\r\n0\r\nTrailer: x\r\n\r\n", "ab"},
      {ok + "Transfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n0\r\n", "error 35754"},
      {ok + "Transfer-Encoding: chunked\r\n\r\n3\r\nabcd\r\n0\r\n\r\n", "error 35754"},
      {ok + "Transfer-Encoding: chunked\r\n\r\n\r\n", "error 35754"},
      {ok + "Transfer-Encoding: chunked\r\n\r\n-1\r\n", "error 35754"},
      {ok + "Transfer-Encoding: chunked\r\n\r\nFFFFFFFFFFFFFFFFF\r\n", "error 35754"},
      {ok + "Transfer-Encoding: chunked\r\n\r\nFFFFFFFFFFFFFFFF\r\n", "error 6"},
      {ok + "Transfer-Encoding: gzip\r\n\r\n", "error 35754"},
      {"HTTP/1.1 100 Continue\r\n\r\n" + ok + "Content-Length: 1\r\n\r\nx", "x"},
      {"HTTP/1.1 204 No Content\r\n\r\n", ""},
      {"HTTP/1.1 304 Not Modified\r\nContent-Length: 9\r\n\r\n", ""},
      {"<html>an old server</html>\n", "error 35754"},
      {"HTTP/1.1 20\r\n\r\n", "error 35754"},
      {"HTTP/1.1 abc\r\n\r\n", "error 35754"},
      {ok + "no colon\r\n\r\n", "error 35754"},
      {ok, "error 35754"},
      {"", "error 35754"},
  };
  for (const auto& c : cases)
    for (const std::size_t piece : {std::size_t{1}, std::size_t{7}, c.bytes.size() + 1})
      EXPECT_EQ(Read(c.bytes, piece), c.want) << c.bytes;
}

TEST(HttpResponse, AHeadHasItsLimit) {
  std::string lines = "HTTP/1.1 200 OK\r\n";
  while (lines.size() <= 2 * HttpResponse::kLargestHead) lines += "X: y\r\n";
  for (const std::string& head : {lines, std::string(HttpResponse::kLargestHead + 1, 'x')})
    EXPECT_EQ(Read(head, 1000), "error 6");
}

TEST(HttpResponse, KeepsTheConnectionOnlyForAnotherRequest) {
  const struct {
    std::string bytes;
    bool keeps;
  } cases[] = {
      {"HTTP/1.1 200 OK\r\nContent-Length: 1\r\n\r\nx", true},
      {"HTTP/1.1 200 OK\r\nContent-Length: 1\r\n\r\nxy", false},  // what came behind would be taken for the next page
      {"HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nx", false},
      {"HTTP/1.1 200 OK\r\nConnection: Close\r\nContent-Length: 1\r\n\r\nx", false},
      {"HTTP/1.0 200 OK\r\nContent-Length: 1\r\n\r\nx", false},
      {"HTTP/1.0 200 OK\r\nConnection: keep-alive\r\nContent-Length: 1\r\n\r\nx", true},
  };
  for (const auto& c : cases) {
    HttpResponse response(kLargest);
    response.Feed(c.bytes);
    EXPECT_EQ(response.KeepsConnection(), c.keeps) << c.bytes;
  }
}

}  // namespace
