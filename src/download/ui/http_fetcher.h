#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include <QNetworkCookieJar>
#include <QObject>

#include "download/page_fetcher.h"

class HttpConnection;
class HttpTransfer;

/// Fetches pages over http and https: through the system's proxy, following up to ten redirections, with
/// cookies, without a cache, over one connection as long as the server keeps it. Written upon sockets: Qt's own
/// HTTP client takes a page for whole whose last chunks are missing. Gone while a call runs, it ends that call
/// with an empty page.
class HttpFetcher : public QObject, public PageFetcher {
 public:
  explicit HttpFetcher(QObject* parent = nullptr, std::size_t largest_page = kMaxPageBytes);
  ~HttpFetcher() override;

  std::string OpenUrl(std::string_view url, std::int32_t timeout) override;
  void Cancel() override;
  void OnStateChanged(StateChanged told) override { told_ = std::move(told); }

 private:
  const std::size_t largest_page_;
  StateChanged told_;
  QNetworkCookieJar cookies_;
  std::unique_ptr<HttpConnection> kept_;
  HttpTransfer* transfer_ = nullptr;  // the call under way
};
