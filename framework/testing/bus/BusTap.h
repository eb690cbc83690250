// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QTemporaryDir>
#include <array>
#include <atomic>
#include <cstring>
#include <stdexcept>
#include <thread>

#include "base/Export.h"
#include "testing/bus/PrivateBus.h"

namespace velmora::testkit {

/// Stands between one program and its bus and counts the bytes that the bus sends to the program: what is not
/// counted here has not woken it.
class VELMORA_EXPORT BusTap {
 public:
  explicit BusTap(const PrivateBus& bus) {
    busPath_ = bus.socketPath();
    tapPath_ = folder_.filePath(QStringLiteral("tap"));
    listener_ = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_un tap = socketAddress(tapPath_);
    if (::bind(listener_, reinterpret_cast<const sockaddr*>(&tap), sizeof tap) != 0 ||
        ::listen(listener_, 1) != 0) {
      throw std::runtime_error("the tap cannot listen");
    }
    thread_ = std::thread([this] { forward(); });
  }

  /// After the program has disconnected.
  ~BusTap() {
    ::shutdown(listener_, SHUT_RDWR);  // wakes a tap that nobody ever connected to
    thread_.join();
    ::close(listener_);
  }
  BusTap(const BusTap&) = delete;
  BusTap& operator=(const BusTap&) = delete;

  /// The bus as seen through the tap.
  QString address() const { return QStringLiteral("unix:path=") + tapPath_; }
  qint64 bytesFromProgram() const { return bytesFromProgram_; }
  qint64 bytesToProgram() const { return bytesToProgram_; }

 private:
  static sockaddr_un socketAddress(const QString& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, qPrintable(path), sizeof address.sun_path - 1);
    return address;
  }

  /// Passes on what can be read, counted before it can arrive; false at the end.
  static bool pass(int from, int to, std::atomic<qint64>& count) {
    static thread_local std::array<char, 65536> buffer;
    const ssize_t size = ::read(from, buffer.data(), buffer.size());
    if (size <= 0) return false;
    count += size;
    for (ssize_t done = 0; done < size;) {
      const ssize_t written =
          ::send(to, buffer.data() + done, static_cast<size_t>(size - done), MSG_NOSIGNAL);
      if (written <= 0) return false;
      done += written;
    }
    return true;
  }

  /// One connection after the other: a program first looks whether the bus greets, then comes to stay.
  void forward() {
    for (;;) {
      const int program = ::accept(listener_, nullptr, nullptr);
      if (program < 0) return;
      forward(program);
    }
  }

  void forward(int program) {
    const int bus = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_un address = socketAddress(busPath_);
    bool open = ::connect(bus, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    while (open) {
      std::array<pollfd, 2> ends{pollfd{program, POLLIN, 0}, pollfd{bus, POLLIN, 0}};
      if (::poll(ends.data(), ends.size(), -1) < 0) break;
      if (ends[0].revents != 0) open = pass(program, bus, bytesFromProgram_);
      if (ends[1].revents != 0) open = pass(bus, program, bytesToProgram_) && open;
    }
    ::close(bus);
    ::close(program);
  }

  QTemporaryDir folder_;
  QString busPath_;
  QString tapPath_;
  int listener_ = -1;
  std::atomic<qint64> bytesFromProgram_{0};
  std::atomic<qint64> bytesToProgram_{0};
  std::thread thread_;
};

}  // namespace velmora::testkit
