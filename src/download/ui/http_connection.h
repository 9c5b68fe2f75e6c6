#pragma once

#include <QNetworkProxy>
#include <QSslSocket>
#include <QUrl>

/// A connection to the server of a URL, directly or through the system's proxy. It may carry one request after
/// another.
class HttpConnection {
 public:
  explicit HttpConnection(const QUrl& url);

  /// Starts to connect; the socket tells how it goes.
  void Open();
  QSslSocket& socket() { return socket_; }
  bool IsEncrypted() const { return encrypted_; }
  /// Is it open, idle, and leads where `url` lies?
  bool Serves(const QUrl& url) const;
  /// The request for a page, to be sent when the connection stands. @param cookies  a header's value, may be empty
  QByteArray Request(const QUrl& url, const QByteArray& cookies) const;

 private:
  bool UsesPlainProxy() const;
  static QByteArray Server(const QUrl& url);

  const QByteArray server_;
  const QString host_;
  const quint16 port_;
  const bool encrypted_;
  QNetworkProxy proxy_;
  QSslSocket socket_;
};
