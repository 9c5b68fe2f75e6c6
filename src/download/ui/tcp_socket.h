#pragma once

#include <QTcpSocket>

#include "download/page_socket.h"

/// A plain connection over TCP.
class TcpSocket : public PageSocket {
 public:
  TcpSocket();
  ~TcpSocket() override;

  void Report(PageSocketEvents* events) override { events_ = events; }
  int State() const override { return state_; }
  void Connect(std::string_view host, std::uint16_t port) override;
  void Send(std::string_view bytes) override;
  std::string Read() override;
  void Close() override;

 private:
  void OnConnected();
  void AnnounceData();
  void OnError(QAbstractSocket::SocketError error);

  QTcpSocket socket_;
  PageSocketEvents* events_ = nullptr;
  int state_ = socket_state::kClosed;
};
