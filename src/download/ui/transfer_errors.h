#pragma once

#include <string>

#include <QAbstractSocket>

/// A failure of a socket, by the old platform's number and in Russian.
struct SocketFailure {
  int number;
  std::string text;  // Windows-1251
};

SocketFailure FailureOf(QAbstractSocket::SocketError error);
