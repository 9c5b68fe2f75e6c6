#include "download/ui/http_connection.h"

#include <QNetworkProxyFactory>

namespace {

bool IsHttps(const QUrl& url) { return url.scheme() == "https"; }

quint16 Port(const QUrl& url) { return static_cast<quint16>(url.port(IsHttps(url) ? 443 : 80)); }

QNetworkProxy SystemProxy(const QUrl& url) {
  const auto proxies = QNetworkProxyFactory::systemProxyForQuery(QNetworkProxyQuery(url));
  return proxies.isEmpty() ? QNetworkProxy(QNetworkProxy::NoProxy) : proxies.front();
}

}  // namespace

HttpConnection::HttpConnection(const QUrl& url)
    : server_(Server(url)), host_(url.host()), port_(Port(url)), encrypted_(IsHttps(url)), proxy_(SystemProxy(url)) {}

void HttpConnection::Open() {
  const bool plain_proxy = UsesPlainProxy();
  socket_.setProxy(plain_proxy ? QNetworkProxy(QNetworkProxy::NoProxy) : proxy_);
  if (encrypted_)
    socket_.connectToHostEncrypted(host_, port_);
  else if (plain_proxy)
    socket_.connectToHost(proxy_.hostName(), proxy_.port());
  else
    socket_.connectToHost(host_, port_);
}

bool HttpConnection::Serves(const QUrl& url) const {
  return socket_.state() == QAbstractSocket::ConnectedState && socket_.bytesAvailable() == 0 && server_ == Server(url);
}

QByteArray HttpConnection::Request(const QUrl& url, const QByteArray& cookies) const {
  const QUrl::FormattingOptions whole = QUrl::FullyEncoded | QUrl::RemoveFragment | QUrl::RemoveUserInfo;
  QByteArray target = url.toEncoded(whole);
  const bool plain_proxy = UsesPlainProxy();
  if (!plain_proxy) target = url.toEncoded(whole | QUrl::RemoveScheme | QUrl::RemoveAuthority);
  if (target.isEmpty() || target.startsWith('?')) target.prepend('/');
  QByteArray request = "GET " + target + " HTTP/1.1\r\nHost: " + url.host(QUrl::FullyEncoded).toLatin1();
  if (url.port() != -1) request += ':' + QByteArray::number(url.port());
  request +=
      "\r\nUser-Agent: Quorvex/1.0\r\nAccept-Language: ru\r\nAccept: text/html, */*\r\nAccept-Encoding: gzip\r\n"
      "Connection: Keep-Alive\r\n";
  if (plain_proxy && !proxy_.user().isEmpty())
    request += "Proxy-Authorization: Basic " + (proxy_.user() + ':' + proxy_.password()).toUtf8().toBase64() + "\r\n";
  if (!cookies.isEmpty()) request += "Cookie: " + cookies + "\r\n";
  return request + "\r\n";
}

// Many a proxy lets nothing but encrypted connections through, and wants to be asked for the other pages itself.
bool HttpConnection::UsesPlainProxy() const {
  return !encrypted_ && (proxy_.type() == QNetworkProxy::HttpProxy || proxy_.type() == QNetworkProxy::HttpCachingProxy);
}

QByteArray HttpConnection::Server(const QUrl& url) {
  return url.scheme().toLatin1() + "://" + url.host(QUrl::FullyEncoded).toLatin1() + ':' +
         QByteArray::number(Port(url));
}
