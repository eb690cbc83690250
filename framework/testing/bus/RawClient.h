// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QString>
#include <array>
#include <cstring>
#include <stdexcept>

#include "base/Export.h"
#include "testing/bus/RawMessage.h"

namespace velmora::testkit {

/// A program on a real bus that may send any bytes at all.
class VELMORA_EXPORT RawClient {
 public:
  explicit RawClient(const QString& address) : socket_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    const qsizetype start = address.indexOf(QStringLiteral("path=")) + 5;
    const QString path = address.mid(start, address.indexOf(QLatin1Char(','), start) - start);
    sockaddr_un place{};
    place.sun_family = AF_UNIX;
    std::strncpy(place.sun_path, qPrintable(path), sizeof place.sun_path - 1);
    if (::connect(socket_, reinterpret_cast<const sockaddr*>(&place), sizeof place) != 0) {
      throw std::runtime_error("no bus");
    }
  }
  ~RawClient() { ::close(socket_); }
  RawClient(const RawClient&) = delete;
  RawClient& operator=(const RawClient&) = delete;

  /// Says who it is and hello; true when the bus has answered.
  bool letIn() {
    write(QByteArray(1, '\0') + "AUTH EXTERNAL " + QByteArray::number(::geteuid()).toHex() + "\r\n");
    if (!read().startsWith("OK ")) return false;
    RawMessage hello;
    hello.type = RawMessage::MethodCall;
    hello.path = "/org/freedesktop/DBus";
    hello.interface = "org.freedesktop.DBus";
    hello.member = "Hello";
    hello.destination = "org.freedesktop.DBus";
    hello.flags = 0;
    write("BEGIN\r\n" + hello.frame(++serial_));
    return !read().isEmpty();
  }

  void send(RawMessage message) {
    message.sender.clear();  // the bus says who sent it
    write(message.frame(++serial_));
  }

  /// Reads until the bus hangs up; false when it does not.
  bool waitForHangUp() {
    for (;;) {
      pollfd end{socket_, POLLIN, 0};
      if (::poll(&end, 1, 30000) <= 0) return false;
      if (read().isEmpty()) return true;
    }
  }

 private:
  void write(const QByteArray& bytes) {
    if (::send(socket_, bytes.constData(), static_cast<size_t>(bytes.size()), MSG_NOSIGNAL) != bytes.size()) {
      throw std::runtime_error("the bus takes nothing");
    }
  }
  QByteArray read() {
    std::array<char, 4096> buffer;
    const ssize_t size = ::read(socket_, buffer.data(), buffer.size());
    return size > 0 ? QByteArray(buffer.data(), size) : QByteArray();
  }

  int socket_;
  quint32 serial_ = 0;
};

}  // namespace velmora::testkit
