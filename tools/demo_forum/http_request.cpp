#include "demo_forum/http_request.h"

#include "base/cp1251.h"
#include "text/strings.h"

namespace {

constexpr std::string_view kScheme = "http://";

/// A proxy is asked for whole addresses, and any server must take them.
std::string_view WithoutHost(std::string_view target) {
  if (!cp1251::StartsWithIgnoringCase(target, kScheme)) return target;
  const std::size_t path = target.find('/', kScheme.size());
  return path == std::string_view::npos ? "/" : target.substr(path);
}

HttpRequest Read(std::string_view head) {
  const auto lines = text::Split(head, "\r\n");
  if (lines.empty()) return {};
  const auto words = text::Split(lines.front(), " ");
  HttpRequest request;
  if (words.size() < 2 || words.size() > 3) return request;
  request.method = words[0];
  request.target = WithoutHost(words[1]);
  if (words.size() == 2) return request;
  if (words[2] != "HTTP/1.0" && words[2] != "HTTP/1.1") return {};
  request.minor_version = words[2].back() - '0';
  request.keeps_connection = request.minor_version > 0;
  for (const std::string_view line : lines) {
    const std::string field = cp1251::Folded(line);
    if (field.starts_with("connection:"))
      request.keeps_connection = field.find("close") == std::string::npos &&
                                 (request.minor_version > 0 || field.find("keep-alive") != std::string::npos);
  }
  return request;
}

}  // namespace

std::optional<HttpRequest> HttpRequest::Take(std::string& received) {
  constexpr std::string_view kEnd = "\r\n\r\n";
  const std::size_t end = received.find(kEnd);
  if (end == std::string::npos) {
    if (received.size() < kLargest) return std::nullopt;
    received.clear();
    return HttpRequest{};
  }
  const HttpRequest request = Read(std::string_view(received).substr(0, end));
  received.erase(0, end + kEnd.size());
  return request;
}
