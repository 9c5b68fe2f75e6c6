#include "download/ui/scripted_server.h"

#include <algorithm>

#include <QTimer>

#include "base/cat.h"

ScriptedServer::ScriptedServer() {
  server_.listen(QHostAddress::LocalHost);
  QObject::connect(&server_, &QTcpServer::newConnection, &server_, [this] { Accept(); });
}

std::string ScriptedServer::Url(std::string_view path) const { return Cat("127.0.0.1:", port(), path); }

void ScriptedServer::Close() {
  server_.close();
  refused_.bind(QHostAddress::LocalHost, 0, QAbstractSocket::DontShareAddress);
}

void ScriptedServer::Accept() {
  while (QTcpSocket* const peer = server_.nextPendingConnection()) {
    ++connections_;
    QObject::connect(peer, &QTcpSocket::readyRead, peer, [this, peer] { Receive(peer); });
    QObject::connect(peer, &QTcpSocket::disconnected, peer, &QObject::deleteLater);
  }
}

ScriptedServer::Answer ScriptedServer::NextAnswer() const {
  if (answer_to) return answer_to(requests_.back());
  const std::size_t nth = std::min(requests_.size(), answers.size());
  return nth == 0 ? Answer{.then = Then::kKeepOpen} : answers[nth - 1];
}

void ScriptedServer::Receive(QTcpSocket* peer) {
  if (!peer->peek(1 << 16).contains("\r\n\r\n")) return;
  requests_.push_back(peer->readAll().toStdString());
  const Answer answer = NextAnswer();
  if (answer.pace == Pace::kByteByByte)
    Drip(peer, answer, 0);
  else
    Play(peer, answer);
  if (on_request) on_request();
}

void ScriptedServer::Play(QTcpSocket* peer, const Answer& answer) {
  peer->write(answer.bytes);
  if (answer.for_ever.isEmpty()) return End(peer, answer);
  peer->write(answer.for_ever);
  QObject::connect(peer, &QTcpSocket::bytesWritten, peer, [peer, more = answer.for_ever] {
    if (peer->bytesToWrite() == 0) peer->write(more);
  });
}

void ScriptedServer::Drip(QTcpSocket* peer, const Answer& answer, qsizetype at) {
  if (at == answer.bytes.size()) return End(peer, answer);
  peer->write(answer.bytes.mid(at, 1));
  peer->flush();
  QTimer::singleShot(0, peer, [peer, answer, at] { Drip(peer, answer, at + 1); });
}

void ScriptedServer::End(QTcpSocket* peer, const Answer& answer) {
  if (answer.then == Then::kClose) peer->disconnectFromHost();
  if (answer.then == Then::kReset) {
    peer->flush();
    peer->abort();
  }
}
