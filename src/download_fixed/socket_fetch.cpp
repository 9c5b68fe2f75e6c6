#include "download_fixed/socket_fetch.h"

#include <utility>

#include "base/cat.h"
#include "base/checked.h"
#include "base/ru_literal.h"

namespace {

std::string StateText(int state, std::int32_t bytes_received) {
  const std::string loaded = Cat(" Загружено "_ru, bytes_received, " байт"_ru);
  switch (state) {
    case socket_state::kOpen: return std::string("Открываю соединение"_ru);
    case socket_state::kPending: return Cat("Жду..."_ru, loaded);
    case socket_state::kResolving: return "Resolving Host ...";
    case socket_state::kResolved: return "HostResolved ...";
    case socket_state::kConnecting: return std::string("Соединяюсь с сайтом..."_ru);
    case socket_state::kConnected: return loaded;
    case socket_state::kClosing: return std::string("Закрываю соединение..."_ru);
    case socket_state::kError: return std::string("Ошибка..."_ru);
    default: return {};
  }
}

}  // namespace

SocketFetch::SocketFetch(PageSocket& Winsock, const FixedDownload& with) : Winsock_(Winsock), with_(with) {
  Winsock_.Report(this);
}

SocketFetch::~SocketFetch() { Winsock_.Report(nullptr); }

std::string SocketFetch::FetchPageBySocket(std::string_view host, std::string_view path) {
  constexpr std::uint16_t kPort = 80;
  RequestPath_ = path;
  ReceiveBuffer_.clear();
  BytesReceived_ = 0;
  Winsock_.Close();
  Winsock_.Connect(host, kPort);
  while (Winsock_.State() > socket_state::kClosed) with_.view.WaitForEvents();
  return std::exchange(ReceiveBuffer_, {});
}

void SocketFetch::Clck_Timer() const {
  if (const std::string text = StateText(Winsock_.State(), BytesReceived_); !text.empty()) with_.Bar(text);
}

// The one-line request form: no version, no Host. The server's closing is then the end of the page.
void SocketFetch::Connected() { Winsock_.Send(Cat("GET ", RequestPath_, "\r\nAccept: text/html\r\n\r\n")); }

void SocketFetch::DataArrival(std::size_t waiting) {
  try {
    ReceiveBuffer_ += Winsock_.Read();  // before the yield, which may bring more
    BytesReceived_ = CheckedAdd(BytesReceived_, CheckedCast<std::int32_t>(waiting));
    if (ReceiveBuffer_.size() > PageFetcher::kMaxPageBytes)
      throw TransferError(error_number::kOverflow, "Страница слишком велика"_ru);
  } catch (const Error& error) {
    return Failed(error.number(), error.what());
  }
  with_.view.ProcessEvents();
}

void SocketFetch::ClosedByPeer() { Winsock_.Close(); }

void SocketFetch::Failed(int, std::string_view description) {
  with_.Log(description);
  Winsock_.Close();
}
