#include "support/scripted_fetcher.h"

#include <stdexcept>

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"

void ScriptedFetcher::Fail(const std::string& url) {
  Serve(url, Answer([]() -> std::string { throw TransferError(35754, "Нет связи"_ru); }));
}

std::string ScriptedFetcher::OpenUrl(std::string_view url, std::int32_t timeout) {
  script_.Add(Cat("fetch ", url, ", ", timeout, " s"));
  const auto found = answers_.find(url);
  if (found == answers_.end()) throw std::logic_error(Cat("no page for ", url));
  return found->second();
}
