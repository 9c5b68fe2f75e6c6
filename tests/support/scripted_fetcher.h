#pragma once

#include <functional>
#include <map>
#include <stdexcept>
#include <string>

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "download/page_fetcher.h"
#include "support/script.h"

/// A table of pages in place of the network. An address that the table lacks ends the test.
class ScriptedFetcher : public PageFetcher {
 public:
  using Answer = std::function<std::string()>;

  explicit ScriptedFetcher(Script& script) : script_(script) {}

  void Serve(const std::string& url, std::string page) {
    Serve(url, Answer([page = std::move(page)] { return page; }));
  }
  /// Whatever the answer does happens while the page comes.
  void Serve(const std::string& url, Answer answer) { answers_[url] = std::move(answer); }
  void Fail(const std::string& url) {
    Serve(url, Answer([]() -> std::string { throw TransferError(35754, "Нет связи"_ru); }));
  }
  void TellState(int state) const {
    if (told_) told_(state);
  }

  std::string OpenUrl(std::string_view url, std::int32_t timeout) override {
    script_.Add(Cat("fetch ", url, ", ", timeout, " s"));
    const auto found = answers_.find(url);
    if (found == answers_.end()) throw std::logic_error(Cat("no page for ", url));
    return found->second();
  }
  void Cancel() override { script_.Add("cancel the transfer"); }
  void OnStateChanged(StateChanged told) override { told_ = std::move(told); }

 private:
  Script& script_;
  std::map<std::string, Answer, std::less<>> answers_;
  StateChanged told_;
};
