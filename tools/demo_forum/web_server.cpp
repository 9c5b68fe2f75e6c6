#include "demo_forum/web_server.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

#include "base/cat.h"

namespace {

constexpr std::size_t kMostClients = 200;

int Checked(int result) {
  if (result < 0) throw std::system_error(errno, std::generic_category());
  return result;
}

int Listen(std::uint16_t port) {
  const int listener = Checked(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  const int yes = 1;
  ::setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  Checked(::bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address));
  Checked(::listen(listener, SOMAXCONN));
  return listener;
}

std::uint16_t PortOf(int listener) {
  sockaddr_in address{};
  socklen_t size = sizeof address;
  Checked(::getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size));
  return ntohs(address.sin_port);
}

}  // namespace

WebServer::WebServer(std::uint16_t port, Conversation::Answerer answer, Conversation::Trouble trouble)
    : answer_(std::move(answer)), trouble_(std::move(trouble)) {
  Checked(::pipe2(stop_, O_CLOEXEC));
  listener_ = Listen(port);
  port_ = PortOf(listener_);
  accepting_ = std::thread(&WebServer::Accept, this);
}

WebServer::~WebServer() {
  ::close(stop_[1]);
  accepting_.join();
  for (Client& client : clients_) client.thread.join();
  ::close(listener_);
  ::close(stop_[0]);
}

std::string WebServer::Address() const { return Cat("127.0.0.1:", port_); }

void WebServer::Accept() {
  for (;;) {
    pollfd ends[] = {{listener_, POLLIN, 0}, {stop_[0], POLLIN, 0}};
    if (::poll(ends, 2, -1) < 0) continue;  // interrupted
    if (ends[1].revents != 0) return;
    const int socket = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    if (socket < 0) continue;
    clients_.remove_if([](Client& client) {
      if (!client.gone) return false;
      client.thread.join();
      return true;
    });
    if (clients_.size() == kMostClients) {
      ::close(socket);
      continue;
    }
    Client& client = clients_.emplace_back();
    client.thread = std::thread([this, socket, &client] { Serve(socket, client); });
  }
}

void WebServer::Serve(int socket, Client& client) {
  const int yes = 1;
  ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
  {
    Wire wire(socket, stop_[0]);
    Conversation(wire, answer_, trouble_).Run();
  }
  client.gone = true;
}
