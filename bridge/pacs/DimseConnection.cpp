// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/pacs/DimseConnection.h"

#include <dcmtk/dcmnet/dcmtrans.h>
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <new>

namespace bridge {

namespace {

// The toolkit calls these in the midst of its own work and could not pass an exception on: they throw none.
class LimitedConnection : public DcmTCPConnection {
 public:
  LimitedConnection(DcmNativeSocketType socket, DimseLimits& limits)
      : DcmTCPConnection(socket), limits_(limits) {}

  ssize_t read(void* buffer, size_t size) noexcept override {
    if (limits_.bytesToRead <= 0) return failed(EMSGSIZE);
    if (!wait(POLLIN, limits_.deadline)) return failed(ETIMEDOUT);
    const size_t most = std::min(size, static_cast<size_t>(limits_.bytesToRead));
    const ssize_t count = ::recv(getSocket(), buffer, most, 0);
    if (count > 0) limits_.bytesToRead -= count;
    return count;
  }

  /// All of it, or it has failed.
  ssize_t write(void* buffer, size_t size) noexcept override {
    size_t done = 0;
    while (done < size) {
      if (!wait(POLLOUT, limits_.deadline)) return failed(ETIMEDOUT);
      const ssize_t count =
          ::send(getSocket(), static_cast<char*>(buffer) + done, size - done, MSG_DONTWAIT | MSG_NOSIGNAL);
      if (count > 0) {
        done += static_cast<size_t>(count);
      } else if (errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR) {
        return -1;
      }
    }
    return static_cast<ssize_t>(done);
  }

  // The toolkit may ask for less than nothing, when its own count of the time has run out.
  OFBool networkDataAvailable(int seconds) noexcept override {
    const QDeadlineTimer asked(std::max(0, seconds) * qint64(1000));
    return wait(POLLIN, std::min(asked, limits_.deadline)) ? OFTrue : OFFalse;
  }

 private:
  bool wait(short event, const QDeadlineTimer& deadline) noexcept {
    pollfd state{getSocket(), event, 0};
    for (;;) {
      const int count = ::poll(&state, 1, static_cast<int>(deadline.remainingTime()));
      if (count > 0) return true;
      if (count == 0 || errno != EINTR) return false;
    }
  }
  static ssize_t failed(int why) noexcept {
    errno = why;
    return -1;
  }

  DimseLimits& limits_;
};

}  // namespace

DcmTransportConnection* DimseConnections::createConnection(DcmNativeSocketType socket,
                                                           OFBool secure) noexcept {
  return secure ? nullptr : new (std::nothrow) LimitedConnection(socket, limits_);
}

}  // namespace bridge
