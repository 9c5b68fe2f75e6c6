#include "demo_forum/wire.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>

namespace {

bool ShouldRepeat() { return errno == EINTR || errno == EAGAIN; }

}  // namespace

Wire::~Wire() { ::close(socket_); }

bool Wire::Receive(std::string& to) {
  char piece[4096];
  for (;;) {
    if (!WaitFor(Direction::kIn)) return false;
    const ssize_t count = ::recv(socket_, piece, sizeof piece, MSG_DONTWAIT);
    if (count < 0 && ShouldRepeat()) continue;
    if (count <= 0) return false;
    to.append(piece, static_cast<std::size_t>(count));
    return true;
  }
}

bool Wire::Send(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::send(socket_, bytes.data(), bytes.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    if (count < 0 && !ShouldRepeat()) return false;
    if (count > 0) bytes.remove_prefix(static_cast<std::size_t>(count));
    if (!bytes.empty() && !WaitFor(Direction::kOut)) return false;
  }
  return true;
}

bool Wire::Pause(std::chrono::milliseconds time) {
  pollfd stop{stop_, POLLIN, 0};
  return ::poll(&stop, 1, static_cast<int>(time.count())) == 0;
}

void Wire::WaitForEnd() {
  std::string dropped;
  while (Receive(dropped)) dropped.clear();
}

void Wire::EndByReset() {
  const linger at_once{1, 0};
  ::setsockopt(socket_, SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
}

bool Wire::WaitFor(Direction direction) {
  pollfd ends[] = {{socket_, static_cast<short>(direction == Direction::kIn ? POLLIN : POLLOUT), 0},
                   {stop_, POLLIN, 0}};
  int ready = 0;
  do ready = ::poll(ends, 2, -1);
  while (ready < 0 && errno == EINTR);
  return ready > 0 && ends[1].revents == 0;
}
