#include "demo_forum/conversation.h"

#include <algorithm>
#include <chrono>
#include <cstdint>

#include "base/cat.h"

namespace {

std::string_view Reason(int status) {
  switch (status) {
    case 200: return "OK";
    case 302: return "Found";
    case 400: return "Bad Request";
    case 404: return "Not Found";
    case 405: return "Method Not Allowed";
    case 500: return "Internal Server Error";
    case 503: return "Service Unavailable";
    default: return "Status";
  }
}

WebAnswer ErrorAnswer(int status) {
  return {.status = status,
          .body = Cat("<HTML><HEAD><TITLE>", status, " ", Reason(status), "</TITLE></HEAD></HTML>\r\n")};
}

std::string Head(const WebAnswer& answer, const HttpRequest& request, std::string_view more_fields) {
  return Cat("HTTP/1.1 ", answer.status, " ", Reason(answer.status), "\r\nContent-Type: ", answer.type, "\r\n",
             more_fields, "Connection: ", request.keeps_connection ? "keep-alive" : "close", "\r\n\r\n");
}

std::string LengthField(std::size_t length) { return Cat("Content-Length: ", length, "\r\n"); }

std::string Bytes(const WebAnswer& answer, const HttpRequest& request) {
  if (request.minor_version < 0) return answer.body;  // the request form without a version has answers without a head
  const std::string head = Head(answer, request, LengthField(answer.body.size()));
  return request.method == "HEAD" ? head : head + answer.body;
}

}  // namespace

void Conversation::Run() {
  std::string received;
  do {
    while (const std::optional<HttpRequest> request = HttpRequest::Take(received))
      if (!Reply(*request)) return;
  } while (wire_.Receive(received));
}

// False when the connection is over.
bool Conversation::Reply(const HttpRequest& request) {
  if (request.method != "GET" && request.method != "HEAD") {  // whatever body follows is not read
    HttpRequest last;
    last.minor_version = 1;
    wire_.Send(Bytes(ErrorAnswer(request.method.empty() ? 400 : 405), last));
    return false;
  }
  std::string_view path = request.target;
  const std::optional<Mischief> asked = mischief::TakeFromPath(path);
  return Play(asked ? *asked : trouble_(path), request, answer_(path));
}

bool Conversation::Play(const Mischief& mischief, const HttpRequest& request, WebAnswer answer) {
  const std::chrono::milliseconds pause(mischief.amount);
  const bool goes_on = request.keeps_connection;
  switch (mischief.kind) {
    case Mischief::Kind::kNone: return wire_.Send(Bytes(answer, request)) && goes_on;
    case Mischief::Kind::kWait: return wire_.Pause(pause) && wire_.Send(Bytes(answer, request)) && goes_on;
    case Mischief::Kind::kDrip:
      for (const char byte : Bytes(answer, request))
        if (!wire_.Pause(pause) || !wire_.Send({&byte, 1})) return false;
      return goes_on;
    case Mischief::Kind::kSilent: wire_.WaitForEnd(); return false;
    case Mischief::Kind::kDrop: return false;
    case Mischief::Kind::kReset: wire_.EndByReset(); return false;
    case Mischief::Kind::kCut:
      wire_.Send(Bytes(answer, request).substr(0, static_cast<std::size_t>(std::max(0, mischief.amount))));
      return false;
    case Mischief::Kind::kStatus: return wire_.Send(Bytes(ErrorAnswer(mischief.amount), request)) && goes_on;
    case Mischief::Kind::kLoop:
      answer.status = 302;
      answer.body.clear();
      return wire_.Send(Head(answer, request, Cat(LengthField(0), "Location: ", request.target, "\r\n"))) && goes_on;
    case Mischief::Kind::kEndless:
      if (!wire_.Send(Head(answer, {}, ""))) return false;
      while (wire_.Send(answer.body.empty() ? " " : answer.body)) continue;
      return false;
    case Mischief::Kind::kLength: {
      const std::size_t told = static_cast<std::size_t>(
          std::max(std::int64_t{0}, static_cast<std::int64_t>(answer.body.size()) + mischief.amount));
      wire_.Send(Head(answer, {}, LengthField(told)) + answer.body);
      return false;
    }
  }
  return false;
}
