#include "cli/network.h"

#include <QCoreApplication>
#include <string>
#include <string_view>
#include <utility>

#include "download/ui/http_fetcher.h"

namespace cli {
namespace {

/// Brings along the event loop that the transfer needs: a tool has no other use for one.
class NetworkFetcher : public PageFetcher {
 public:
  std::string OpenUrl(std::string_view url, std::int32_t timeout) override { return fetcher_.OpenUrl(url, timeout); }
  void Cancel() override { fetcher_.Cancel(); }
  void OnStateChanged(StateChanged told) override { fetcher_.OnStateChanged(std::move(told)); }

 private:
  int count_ = 1;
  char name_[8] = "kdvbase";
  char* words_[2] = {name_, nullptr};
  QCoreApplication application_{count_, words_};
  HttpFetcher fetcher_;
};

}  // namespace

std::unique_ptr<PageFetcher> MakePageFetcher() { return std::make_unique<NetworkFetcher>(); }

}  // namespace cli
