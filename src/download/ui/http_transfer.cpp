#include "download/ui/http_transfer.h"

#include <QNetworkCookie>

#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "download/gunzip.h"
#include "download/ui/transfer_errors.h"

namespace {

constexpr int kTransfer = 35754, kTransferTimeout = 35761;

// States of a transfer, by the numbers that every window knows them by.
constexpr int kResolving = 1, kResolved = 2, kConnecting = 3, kConnected = 4, kRequestSent = 6, kReceiving = 7,
              kReceived = 8, kDisconnecting = 9, kDisconnected = 10, kFailed = 11, kCompleted = 12;

QByteArray ToQt(std::string_view text) { return {text.data(), static_cast<qsizetype>(text.size())}; }

}  // namespace

HttpTransfer::HttpTransfer(std::unique_ptr<HttpConnection> kept, QNetworkCookieJar* cookies, TellState tell,
                           int silence, std::size_t largest_page)
    : connection_(std::move(kept)), cookies_(cookies), tell_(std::move(tell)), largest_page_(largest_page) {
  silence_.setSingleShot(true);
  silence_.setInterval(silence);
}

std::string HttpTransfer::Run(QUrl url) {
  try {
    Reach(kResolving);
    std::string page = Fetch(std::move(url));
    if (cancelled_) return {};
    Reach(kReceiving);
    for (const int state : {kReceived, kDisconnecting, kDisconnected, kCompleted}) tell_(state);
    return page;
  } catch (const TransferError&) {
    connection_.reset();
    tell_(kFailed);
    throw;
  }
}

void HttpTransfer::Cancel() {
  cancelled_ = true;
  Finish();
}

std::string HttpTransfer::Fetch(QUrl url) {
  constexpr int kMostRedirections = 10;
  for (int redirections = 0; !cancelled_; ++redirections) {
    Exchange(url);
    if (cancelled_) break;
    StoreCookies(url);
    const std::optional<QUrl> next = Redirection(url);
    if (!next) return TakePage();
    if (redirections == kMostRedirections)
      throw TransferError(kTransfer, "Узел отсылает к другим адресам без конца"_ru);
    url = *next;
  }
  connection_.reset();
  return {};
}

void HttpTransfer::Exchange(const QUrl& url) {
  if (!url.isValid() || url.host().isEmpty()) throw TransferError(kTransfer, "Неверный адрес страницы"_ru);
  if (connection_ != nullptr && !connection_->Serves(url)) connection_.reset();
  // A server may close an idle connection at the moment when a request comes: then once more, over a fresh one.
  const bool reused = connection_ != nullptr;
  Attempt(url);
  if (reused && connection_lost_ && !response_->Started() && !cancelled_) {
    connection_.reset();
    Attempt(url);
  }
  if (failure_ != nullptr) std::rethrow_exception(failure_);
  if (!response_->KeepsConnection()) connection_.reset();
}

void HttpTransfer::Attempt(const QUrl& url) {
  failure_ = nullptr;
  finished_ = connection_lost_ = false;
  response_.emplace(largest_page_);
  const bool open = connection_ != nullptr;
  if (!open) connection_ = std::make_unique<HttpConnection>(url);
  QEventLoop loop;  // goes with the attempt, and takes the connections of its signals along
  loop_ = &loop;
  const QByteArray request = connection_->Request(url, Cookies(url));
  Watch(loop, request);
  if (open)
    Send(request);
  else
    connection_->Open();
  if (silence_.interval() > 0) silence_.start();
  if (!finished_ && !cancelled_) loop.exec();
  loop_ = nullptr;
  silence_.stop();
  if (!finished_) cancelled_ = true;  // the program ends
}

void HttpTransfer::Watch(QEventLoop& loop, const QByteArray& request) {
  QSslSocket& socket = connection_->socket();
  QObject::connect(&socket, &QAbstractSocket::hostFound, &loop, [this] {
    Reach(kResolved);
    Reach(kConnecting);
  });
  QObject::connect(&socket, &QAbstractSocket::connected, &loop, [this, request] {
    Reach(kConnected);
    if (!cancelled_ && !connection_->IsEncrypted()) Send(request);
  });
  QObject::connect(&socket, &QSslSocket::encrypted, &loop, [this, request] { Send(request); });
  QObject::connect(&socket, &QIODevice::readyRead, &loop, [this] { Receive(); });
  QObject::connect(&socket, &QAbstractSocket::errorOccurred, &loop,
                   [this](QAbstractSocket::SocketError error) { OnError(error); });
  QObject::connect(&silence_, &QTimer::timeout, &loop,
                   [this] { Guarded([] { throw TransferError(kTransferTimeout, "Время ожидания истекло"_ru); }); });
}

void HttpTransfer::Send(const QByteArray& request) {
  connection_->socket().write(request);
  Reach(kRequestSent);
}

void HttpTransfer::Receive() {
  Guarded([this] {
    if (silence_.isActive()) silence_.start();
    response_->Feed(connection_->socket().readAll().toStdString());
  });
  if (response_->Complete()) Finish();
  Reach(kReceiving);
}

void HttpTransfer::OnError(QAbstractSocket::SocketError error) {
  connection_lost_ = true;
  Guarded([this, error] {
    response_->Feed(connection_->socket().readAll().toStdString());
    if (response_->Complete()) return;
    const bool ended = error == QAbstractSocket::RemoteHostClosedError;
    if (ended) return response_->End();
    throw TransferError(kTransfer, FailureOf(error).text);
  });
  Finish();
}

// Nothing may be thrown through the event loop: a failure waits until the loop has ended.
template <typename Action>
void HttpTransfer::Guarded(Action action) {
  if (failure_ != nullptr || cancelled_) return;
  try {
    action();
  } catch (const TransferError&) {
    failure_ = std::current_exception();
    Finish();
  }
}

void HttpTransfer::Finish() {
  finished_ = true;
  if (loop_ != nullptr) loop_->quit();
}

// Tells every state up to this one, each once: a connection that is still open starts at a later one, and a
// redirection starts over.
void HttpTransfer::Reach(int state) {
  while (state_ < state && !cancelled_) tell_(++state_);
}

// None for whatever is the page itself: also a redirection that names no address.
std::optional<QUrl> HttpTransfer::Redirection(const QUrl& url) const {
  switch (response_->status()) {
    case 301:
    case 302:
    case 303:
    case 307:
    case 308: break;
    default: return std::nullopt;
  }
  const std::string_view location = response_->Value("Location");
  if (location.empty()) return std::nullopt;
  const QUrl next = url.resolved(QUrl::fromEncoded(ToQt(location), QUrl::TolerantMode));
  const bool leaves_encryption = url.scheme() == "https" && next.scheme() == "http";
  if ((next.scheme() != "http" && next.scheme() != "https") || leaves_encryption)
    throw TransferError(kTransfer, "Узел отсылает к недопустимому адресу"_ru);
  return next;
}

QByteArray HttpTransfer::Cookies(const QUrl& url) const {
  QByteArray value;
  if (cookies_ == nullptr) return value;
  for (const QNetworkCookie& cookie : cookies_->cookiesForUrl(url))
    value += (value.isEmpty() ? "" : "; ") + cookie.toRawForm(QNetworkCookie::NameAndValueOnly);
  return value;
}

void HttpTransfer::StoreCookies(const QUrl& url) const {
  if (cookies_ == nullptr) return;
  for (const std::string_view value : response_->Values("Set-Cookie"))
    cookies_->setCookiesFromUrl(QNetworkCookie::parseCookies(ToQt(value)), url);
}

std::string HttpTransfer::TakePage() {
  const std::string coding = cp1251::Folded(response_->Value("Content-Encoding"));
  if (coding.empty() || coding == "identity") return response_->TakeBody();
  if (coding != "gzip" && coding != "x-gzip") throw TransferError(kTransfer, "Ответ узла не читается"_ru);
  const std::string squeezed = response_->TakeBody();
  return squeezed.empty() ? squeezed : Gunzip(squeezed, largest_page_);
}
