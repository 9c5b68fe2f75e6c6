#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// A socket's states, with their published numbers.
namespace socket_state {
inline constexpr int kClosed = 0, kOpen = 1, kListening = 2, kPending = 3, kResolving = 4, kResolved = 5,
                     kConnecting = 6, kConnected = 7, kClosing = 8, kError = 9;
}

/// What happens to a socket: a connection, data any number of times, then either a close or an error.
/// None of these may throw: they are called out of an event loop.
class PageSocketEvents {
 public:
  virtual void Connected() = 0;
  /// @param waiting  bytes that Read will return
  virtual void DataArrival(std::size_t waiting) = 0;
  /// The peer closed; all data has been announced before.
  virtual void ClosedByPeer() = 0;
  /// @param description  Russian, Windows-1251
  virtual void Failed(int number, std::string_view description) = 0;

 protected:
  ~PageSocketEvents() = default;
};

/// A plain connection. Qt implements it in download/ui/.
class PageSocket {
 public:
  virtual ~PageSocket() = default;
  /// @param events  outlives this object, or is replaced; may be null
  virtual void Report(PageSocketEvents* events) = 0;
  /// A socket_state.
  virtual int State() const = 0;
  /// Returns at once; the outcome is reported.
  virtual void Connect(std::string_view host, std::uint16_t port) = 0;
  virtual void Send(std::string_view bytes) = 0;
  /// Everything that has arrived and was not read yet.
  virtual std::string Read() = 0;
  /// Harmless when closed; reports nothing.
  virtual void Close() = 0;
};
