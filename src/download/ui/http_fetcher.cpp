#include "download/ui/http_fetcher.h"

#include <algorithm>
#include <limits>

#include <QPointer>

#include "base/error.h"
#include "base/ru_literal.h"
#include "download/ui/http_transfer.h"
#include "download/ui/page_url.h"

namespace {

int Milliseconds(std::int32_t seconds) {
  constexpr std::int32_t kMost = std::numeric_limits<int>::max() / 1000;
  return std::clamp(seconds, 0, kMost) * 1000;
}

}  // namespace

HttpFetcher::HttpFetcher(QObject* parent, std::size_t largest_page) : QObject(parent), largest_page_(largest_page) {}

HttpFetcher::~HttpFetcher() { Cancel(); }

std::string HttpFetcher::OpenUrl(std::string_view url, std::int32_t timeout) {
  if (transfer_ != nullptr) throw TransferError(35764, "Предыдущий запрос ещё выполняется"_ru);
  const QPointer<HttpFetcher> self(this);  // whoever is told a state may make this object go
  const auto tell = [self](int state) {
    if (self == nullptr) return;
    if (const StateChanged told = self->told_) told(state);  // a copy: it may be taken back meanwhile
  };
  HttpTransfer transfer(std::move(kept_), &cookies_, tell, Milliseconds(timeout), largest_page_);
  struct UnderWay {
    QPointer<HttpFetcher> fetcher;
    HttpTransfer& call;
    ~UnderWay() {
      if (fetcher == nullptr) return;
      fetcher->transfer_ = nullptr;
      fetcher->kept_ = call.TakeConnection();
    }
  } const under_way{self, transfer};
  transfer_ = &transfer;
  return transfer.Run(PageUrl(url));
}

void HttpFetcher::Cancel() {
  if (transfer_ != nullptr) transfer_->Cancel();
}
