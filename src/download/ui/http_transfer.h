#pragma once

#include <cstddef>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <QEventLoop>
#include <QNetworkCookieJar>
#include <QPointer>
#include <QTimer>
#include <QUrl>

#include "download/http_response.h"
#include "download/ui/http_connection.h"

/// One call for a page, from its first state to its last, redirections included. Lives on the stack of the call.
class HttpTransfer {
 public:
  using TellState = std::function<void(int state)>;

  /// @param kept          a connection of an earlier call, or null
  /// @param silence       milliseconds without a byte that end the call; 0 = no limit
  /// @param largest_page  bytes
  HttpTransfer(std::unique_ptr<HttpConnection> kept, QNetworkCookieJar* cookies, TellState tell, int silence,
               std::size_t largest_page);
  HttpTransfer(const HttpTransfer&) = delete;
  HttpTransfer& operator=(const HttpTransfer&) = delete;

  /// Runs the event loop until the page is there. @return empty after Cancel. @throws TransferError
  std::string Run(QUrl url);
  void Cancel();
  /// The connection, when it may carry another request; else null.
  std::unique_ptr<HttpConnection> TakeConnection() { return std::move(connection_); }

 private:
  std::string Fetch(QUrl url);
  void Exchange(const QUrl& url);
  void Attempt(const QUrl& url);
  void Watch(QEventLoop& loop, const QByteArray& request);
  void Send(const QByteArray& request);
  void Receive();
  void OnError(QAbstractSocket::SocketError error);
  template <typename Action>
  void Guarded(Action action);
  void Finish();
  void Reach(int state);
  std::optional<QUrl> Redirection(const QUrl& url) const;
  QByteArray Cookies(const QUrl& url) const;
  void StoreCookies(const QUrl& url) const;
  std::string TakePage();

  std::unique_ptr<HttpConnection> connection_;
  const QPointer<QNetworkCookieJar> cookies_;
  const TellState tell_;
  const std::size_t largest_page_;
  QTimer silence_;
  int state_ = 0;  // the last one told
  bool cancelled_ = false;
  // Of the attempt under way:
  std::optional<HttpResponse> response_;
  QEventLoop* loop_ = nullptr;
  std::exception_ptr failure_;
  bool finished_ = false, connection_lost_ = false;
};
