#include "download/ui/transfer_errors.h"

#include "base/cat.h"
#include "base/ru_literal.h"

SocketFailure FailureOf(QAbstractSocket::SocketError error) {
  const auto failure = [](int number, std::string_view text) { return SocketFailure{number, std::string(text)}; };
  switch (error) {
    case QAbstractSocket::ConnectionRefusedError: return failure(10061, "В соединении отказано"_ru);
    case QAbstractSocket::HostNotFoundError: return failure(11001, "Узел не найден"_ru);
    case QAbstractSocket::SocketTimeoutError: return failure(10060, "Истекло время ожидания соединения"_ru);
    case QAbstractSocket::NetworkError: return failure(10051, "Сеть недоступна"_ru);
    case QAbstractSocket::RemoteHostClosedError: return failure(10054, "Соединение сброшено"_ru);
    case QAbstractSocket::SslHandshakeFailedError: return failure(error, "Защищённое соединение не удалось"_ru);
    default: return failure(error, Cat("Ошибка сокета "_ru, static_cast<int>(error)));
  }
}
