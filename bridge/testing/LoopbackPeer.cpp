// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/testing/LoopbackPeer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <stdexcept>

namespace bridge_testing {

namespace {

sockaddr_in loopback(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  return address;
}

/// Ends a connection so that the other side sees a reset, as when a cable is pulled or a process dies.
void breakOff(int socket) {
  const linger atOnce{1, 0};
  ::setsockopt(socket, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
  ::close(socket);
}

}  // namespace

Listener::Listener() : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in address = loopback(0);
  socklen_t size = sizeof address;
  if (::bind(socket_, reinterpret_cast<sockaddr*>(&address), size) != 0 || ::listen(socket_, 8) != 0 ||
      ::getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
    throw std::runtime_error("cannot listen on loopback");
  }
  port_ = ntohs(address.sin_port);
}

Listener::~Listener() { ::close(socket_); }

int Listener::accept() const { return ::accept4(socket_, nullptr, nullptr, SOCK_CLOEXEC); }

void Listener::close() { ::shutdown(socket_, SHUT_RDWR); }

PouringPeer::PouringPeer(const std::string& beginning, const std::string& repeated,
                         std::chrono::milliseconds pause)
    : thread_([this, beginning, repeated, pause] { run(beginning, repeated, pause); }) {}

PouringPeer::~PouringPeer() {
  listener_.close();
  thread_.join();
}

void PouringPeer::run(const std::string& beginning, const std::string& repeated,
                      std::chrono::milliseconds pause) {
  const int socket = listener_.accept();
  if (socket < 0) return;
  const auto say = [&](const std::string& text) {
    const ssize_t sent = ::send(socket, text.data(), text.size(), MSG_NOSIGNAL);
    poured_ += static_cast<std::size_t>(std::max<ssize_t>(sent, 0));
    return sent >= 0;
  };
  for (bool open = say(beginning); open; open = say(repeated)) std::this_thread::sleep_for(pause);
  ::close(socket);
}

CuttingProxy::CuttingProxy(int target, int bytes) : thread_([this, target, bytes] { run(target, bytes); }) {}

CuttingProxy::~CuttingProxy() {
  listener_.close();
  thread_.join();
}

void CuttingProxy::run(int target, int bytes) {
  const int near = listener_.accept();
  if (near < 0) return;
  const int far = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const sockaddr_in address = loopback(target);
  bool open = ::connect(far, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  int left = bytes;
  std::array<char, 4096> buffer{};
  while (open && left > 0) {
    std::array<pollfd, 2> ends{pollfd{near, POLLIN, 0}, pollfd{far, POLLIN, 0}};
    if (::poll(ends.data(), ends.size(), -1) < 0) break;
    if (ends[0].revents != 0) {
      const ssize_t read =
          ::read(near, buffer.data(), std::min(buffer.size(), static_cast<std::size_t>(left)));
      open = read > 0 && ::send(far, buffer.data(), static_cast<std::size_t>(read), MSG_NOSIGNAL) == read;
      left -= static_cast<int>(std::max<ssize_t>(read, 0));
    }
    if (open && ends[1].revents != 0) {
      const ssize_t read = ::read(far, buffer.data(), buffer.size());
      open = read > 0 && ::send(near, buffer.data(), static_cast<std::size_t>(read), MSG_NOSIGNAL) == read;
    }
  }
  breakOff(near);
  breakOff(far);
}

}  // namespace bridge_testing
