#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "demo_forum/http_request.h"
#include "demo_forum/mischief.h"
#include "demo_forum/web_answer.h"
#include "demo_forum/wire.h"

/// What a server does with one client: one request after another over one connection, as the client wishes.
class Conversation {
 public:
  using Answerer = std::function<WebAnswer(std::string_view target)>;
  /// @return what this answer is to suffer when its path does not say
  using Trouble = std::function<Mischief(std::string_view target)>;

  /// All outlive this object.
  Conversation(Wire& wire, const Answerer& answer, const Trouble& trouble)
      : wire_(wire), answer_(answer), trouble_(trouble) {}

  /// Returns when the connection is over.
  void Run();

 private:
  bool Reply(const HttpRequest& request);
  bool Play(const Mischief& mischief, const HttpRequest& request, WebAnswer answer);

  Wire& wire_;
  const Answerer& answer_;
  const Trouble& trouble_;
};
