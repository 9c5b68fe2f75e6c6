#pragma once

#include <atomic>
#include <cstdint>
#include <list>
#include <string>
#include <thread>

#include "demo_forum/conversation.h"

/// A web server for this machine alone: it listens on 127.0.0.1, a thread per connection.
class WebServer {
 public:
  /// Listens from now on. @param port  0 = any that is free
  /// @param answer, trouble  are called by several threads at once
  /// @throws std::system_error when it cannot listen
  WebServer(std::uint16_t port, Conversation::Answerer answer, Conversation::Trouble trouble);
  /// Ends all connections.
  ~WebServer();
  WebServer(const WebServer&) = delete;
  WebServer& operator=(const WebServer&) = delete;

  std::uint16_t port() const { return port_; }
  /// "127.0.0.1:8080"
  std::string Address() const;

 private:
  struct Client {
    std::atomic<bool> gone = false;
    std::thread thread;
  };

  void Accept();
  void Serve(int socket, Client& client);

  const Conversation::Answerer answer_;
  const Conversation::Trouble trouble_;
  int listener_ = -1;
  int stop_[2] = {-1, -1};  // a pipe; closing its end for writing stops all
  std::uint16_t port_ = 0;
  std::list<Client> clients_;  // of the accepting thread
  std::thread accepting_;
};
