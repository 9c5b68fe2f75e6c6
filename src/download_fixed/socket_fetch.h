#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "download/page_socket.h"
#include "download_fixed/fixed_download.h"

/// The other way to a page: a plain connection and a hand-written request, its state told in the status bar.
/// One fetch at a time.
class SocketFetch : private PageSocketEvents {
 public:
  /// Both outlive this object.
  SocketFetch(PageSocket& Winsock, const FixedDownload& with);
  ~SocketFetch();
  SocketFetch(const SocketFetch&) = delete;
  SocketFetch& operator=(const SocketFetch&) = delete;

  /// Waits, the window's events running, until the server closes the connection; there is no time limit.
  /// @param path  path and query
  /// @return all that arrived, the server's headers included; what came before an error, possibly nothing
  std::string FetchPageBySocket(std::string_view host, std::string_view path);

  /// Called every 100 ms: tells the socket's state.
  void Clck_Timer() const;

 private:
  void Connected() override;
  void DataArrival(std::size_t waiting) override;
  void ClosedByPeer() override;
  void Failed(int number, std::string_view description) override;

  PageSocket& Winsock_;
  const FixedDownload& with_;
  std::string RequestPath_, ReceiveBuffer_;
  std::int32_t BytesReceived_ = 0;
};
