#pragma once

#include <functional>
#include <string>
#include <vector>

#include <QByteArray>
#include <QTcpServer>
#include <QTcpSocket>

/// What the server does behind the bytes of an answer.
enum class Then { kClose, kKeepOpen, kReset };
enum class Pace { kAtOnce, kByteByByte };

/// A peer on this machine that answers with whatever bytes a test writes down, right or wrong.
class ScriptedServer {
 public:
  struct Answer {
    QByteArray bytes = {};
    Then then = Then::kClose;
    Pace pace = Pace::kAtOnce;
    QByteArray for_ever = {};  // sent again and again behind the bytes, as long as someone reads
  };

  ScriptedServer();

  /// One answer per request; the last one also for all that follow.
  std::vector<Answer> answers;
  /// Takes the place of `answers` when it is set.
  std::function<Answer(const std::string& request)> answer_to;
  std::function<void()> on_request;
  /// As received, whole.
  const std::vector<std::string>& requests() const { return requests_; }
  int connections() const { return connections_; }

  std::uint16_t port() const { return refused_.localPort() != 0 ? refused_.localPort() : server_.serverPort(); }
  /// Host and port behind the scheme.
  std::string Url(std::string_view path = "/") const;
  /// Moves to a port at which no one listens, nor can: one that was given back may be another process's at once.
  void Close();

 private:
  Answer NextAnswer() const;
  void Accept();
  void Receive(QTcpSocket* peer);
  static void Play(QTcpSocket* peer, const Answer& answer);
  static void Drip(QTcpSocket* peer, const Answer& answer, qsizetype at);
  static void End(QTcpSocket* peer, const Answer& answer);

  QTcpServer server_;
  QTcpSocket refused_;
  std::vector<std::string> requests_;
  int connections_ = 0;
};
