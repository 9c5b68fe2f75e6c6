#include "download/ui/tcp_socket.h"

#include <QHostAddress>

#include "base/cat.h"
#include "base/cp1251.h"
#include "download/ui/transfer_errors.h"

TcpSocket::TcpSocket() {
  QObject::connect(&socket_, &QAbstractSocket::hostFound, &socket_, [this] {
    state_ = socket_state::kResolved;
    state_ = socket_state::kConnecting;
  });
  QObject::connect(&socket_, &QAbstractSocket::connected, &socket_, [this] { OnConnected(); });
  QObject::connect(&socket_, &QIODevice::readyRead, &socket_, [this] { AnnounceData(); });
  QObject::connect(&socket_, &QAbstractSocket::errorOccurred, &socket_,
                   [this](QAbstractSocket::SocketError error) { OnError(error); });
}

TcpSocket::~TcpSocket() {
  events_ = nullptr;
  Close();
}

void TcpSocket::Connect(std::string_view host, std::uint16_t port) {
  state_ = socket_state::kResolving;
  socket_.connectToHost(QString::fromStdString(cp1251::ToUtf8(host)), port);
}

void TcpSocket::Send(std::string_view bytes) { socket_.write(bytes.data(), static_cast<qint64>(bytes.size())); }

std::string TcpSocket::Read() { return socket_.readAll().toStdString(); }

void TcpSocket::Close() {
  state_ = socket_state::kClosed;
  socket_.abort();
}

void TcpSocket::OnConnected() {
  state_ = socket_state::kConnected;
  if (events_ != nullptr) events_->Connected();
}

// In a loop: what comes while the handler runs events is not signalled again.
void TcpSocket::AnnounceData() {
  while (events_ != nullptr && state_ != socket_state::kClosed && socket_.bytesAvailable() > 0)
    events_->DataArrival(static_cast<std::size_t>(socket_.bytesAvailable()));
}

void TcpSocket::OnError(QAbstractSocket::SocketError error) {
  if (error == QAbstractSocket::RemoteHostClosedError && state_ == socket_state::kConnected) {
    AnnounceData();  // before the close: what the peer sent last
    state_ = socket_state::kClosing;
    if (events_ != nullptr) events_->ClosedByPeer();
    return;
  }
  state_ = socket_state::kError;
  const SocketFailure failure = FailureOf(error);
  if (events_ != nullptr) events_->Failed(failure.number, failure.text);
}
