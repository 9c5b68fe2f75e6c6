#pragma once

#include <chrono>
#include <string>
#include <string_view>

/// One end of a connection. Every wait ends when the peer goes, or when the server is to stop.
class Wire {
 public:
  /// @param socket  connected; closed with this object
  /// @param stop    becomes readable when the server is to stop
  Wire(int socket, int stop) : socket_(socket), stop_(stop) {}
  ~Wire();
  Wire(const Wire&) = delete;
  Wire& operator=(const Wire&) = delete;

  // All return false when the connection is over.
  /// Waits for bytes and puts them behind `to`.
  bool Receive(std::string& to);
  bool Send(std::string_view bytes);
  /// The peer may still go meanwhile unnoticed.
  bool Pause(std::chrono::milliseconds time);

  /// Waits until the peer goes; what it sends is dropped.
  void WaitForEnd();
  /// The connection will end with a reset instead of a proper close.
  void EndByReset();

 private:
  enum class Direction { kIn, kOut };
  bool WaitFor(Direction direction);

  const int socket_, stop_;
};
