// SPDX-License-Identifier: LGPL-3.0-or-later
#include "testing/bus/RawBus.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <stdexcept>
#include <vector>

namespace velmora::testkit {
namespace {

bool writeAll(int socket, const QByteArray& bytes) {
  for (qsizetype done = 0; done < bytes.size();) {
    const ssize_t written =
        ::send(socket, bytes.constData() + done, static_cast<size_t>(bytes.size() - done), MSG_NOSIGNAL);
    if (written <= 0) return false;
    done += written;
  }
  return true;
}

quint32 numberAt(const QByteArray& bytes, qsizetype place) {
  quint32 number = 0;
  std::memcpy(&number, bytes.constData() + place, sizeof number);
  return number;
}

}  // namespace

RawBus::RawBus(Manner manner) : manner_(manner) {
  listener_ = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  wake_ = ::eventfd(0, EFD_CLOEXEC);
  sockaddr_un place{};
  place.sun_family = AF_UNIX;
  std::strncpy(place.sun_path, qPrintable(folder_.filePath(QStringLiteral("bus"))),
               sizeof place.sun_path - 1);
  const int backlog = manner == Manner::NeverAccepts ? 0 : 16;
  if (::bind(listener_, reinterpret_cast<const sockaddr*>(&place), sizeof place) != 0 ||
      ::listen(listener_, backlog) != 0) {
    throw std::runtime_error("the raw bus cannot listen");
  }
  thread_ = std::thread([this] { serve(); });
}

RawBus::~RawBus() {
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
  }
  ::eventfd_write(wake_, 1);
  thread_.join();
  for (const Connection& connection : connections_) ::close(connection.socket);
  ::close(listener_);
  ::close(wake_);
}

QString RawBus::address() const {
  return QStringLiteral("unix:path=") + folder_.filePath(QStringLiteral("bus"));
}

bool RawBus::waitForSubscriptions(int subscriptions, std::chrono::duration<double> limit) {
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, limit, [&] {
    for (const Connection& connection : connections_) {
      if (connection.socket == listening_ && connection.subscriptions >= subscriptions) return true;
    }
    return false;
  });
}

bool RawBus::waitForConnections(int connections, std::chrono::duration<double> limit) {
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, limit, [&] { return accepted_ >= connections; });
}

bool RawBus::send(const QByteArray& bytes) {
  int socket = -1;
  {
    const std::lock_guard lock(mutex_);
    socket = listening_;
  }
  return socket >= 0 && writeAll(socket, bytes);
}

void RawBus::hangUp() {
  const std::lock_guard lock(mutex_);
  for (const Connection& connection : connections_) ::shutdown(connection.socket, SHUT_RDWR);
}

void RawBus::serve() {
  for (;;) {
    std::vector<pollfd> ends{{wake_, POLLIN, 0}};
    if (manner_ != Manner::NeverAccepts) ends.push_back({listener_, POLLIN, 0});
    const size_t first = ends.size();
    for (const Connection& connection : connections_) ends.push_back({connection.socket, POLLIN, 0});
    if (::poll(ends.data(), ends.size(), -1) < 0) return;
    const std::lock_guard lock(mutex_);
    if (ending_) return;
    size_t index = first;
    for (auto each = connections_.begin(); each != connections_.end(); ++index) {
      if (ends[index].revents != 0 && !serve(*each)) {
        if (listening_ == each->socket) listening_ = -1;
        ::close(each->socket);
        each = connections_.erase(each);
      } else {
        ++each;
      }
    }
    if (first == 2 && ends[1].revents != 0) {
      const int accepted = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
      if (accepted >= 0) connections_.push_back({accepted, false, {}, 0});
      ++accepted_;
    }
    changed_.notify_all();
  }
}

bool RawBus::serve(Connection& connection) {
  std::array<char, 65536> buffer;
  const ssize_t size = ::read(connection.socket, buffer.data(), buffer.size());
  if (size <= 0) return false;
  if (manner_ == Manner::NeverAnswers) return true;
  if (manner_ == Manner::SpeaksNonsense) return writeAll(connection.socket, QByteArray(4096, '\xff'));
  connection.received.append(buffer.data(), size);
  while (connection.pastGreeting ? takeMessage(connection) : takeLine(connection)) {
  }
  return true;
}

// A line of the conversation in which a program says who it is.
bool RawBus::takeLine(Connection& connection) {
  const qsizetype end = connection.received.indexOf("\r\n");
  if (end < 0) return false;
  const QByteArray line = connection.received.left(end);
  connection.received.remove(0, end + 2);
  if (line.contains("AUTH")) {
    writeAll(connection.socket, "OK 0123456789abcdef0123456789abcdef\r\n");
  } else if (line == "BEGIN") {
    connection.pastGreeting = true;
  } else {
    writeAll(connection.socket, "ERROR\r\n");
  }
  return true;
}

// Every question has an answer, and it is yes.
bool RawBus::takeMessage(Connection& connection) {
  const QByteArray& received = connection.received;
  if (received.size() < 16) return false;
  const qsizetype header = (16 + qsizetype(numberAt(received, 12)) + 7) / 8 * 8;
  const qsizetype whole = header + qsizetype(numberAt(received, 4));
  if (received.size() < whole) return false;
  const QByteArray fields = received.left(header);
  RawMessage answer;
  answer.type = RawMessage::MethodReturn;
  answer.sender = "org.freedesktop.DBus";
  answer.replyTo = numberAt(received, 8);
  const bool question = received.at(1) == RawMessage::MethodCall;
  connection.received.remove(0, whole);
  if (!question || manner_ == Manner::NeverGreets) return true;
  RawValues body;
  if (fields.contains("Hello") || fields.contains("GetId") || fields.contains("GetNameOwner")) {
    body.text(":1.1");
    answer.signature = "s";
  }
  if (fields.contains("AddMatch")) {
    ++connection.subscriptions;
    listening_ = connection.socket;
  }
  answer.body = body.bytes();
  writeAll(connection.socket, answer.frame(++serial_));
  return true;
}

}  // namespace velmora::testkit
