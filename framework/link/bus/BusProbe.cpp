// SPDX-License-Identifier: LGPL-3.0-or-later
#include "link/bus/BusProbe.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <array>
#include <cstddef>
#include <cstring>
#include <optional>

#include "base/SystemError.h"

namespace velmora::link {
namespace {

using Clock = std::chrono::steady_clock;

/// A socket that closes itself.
class Socket {
 public:
  Socket() : descriptor_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {}
  ~Socket() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }
  Socket(const Socket&) = delete;
  Socket& operator=(const Socket&) = delete;
  int descriptor() const { return descriptor_; }

 private:
  int descriptor_;
};

/// The value of a key in one address ("unix:path=/run/x,guid=1"), percent signs decoded.
QByteArray valueOf(const QByteArray& address, const QByteArray& key) {
  const QByteArray entries = address.mid(address.indexOf(':') + 1);
  for (const QByteArray& entry : entries.split(',')) {
    if (entry.startsWith(key + '=')) return QByteArray::fromPercentEncoding(entry.mid(key.size() + 1));
  }
  return {};
}

QByteArray runtimeBus() { return qgetenv("XDG_RUNTIME_DIR") + "/bus"; }

/// The first message to a bus after authentication, as bytes (D-Bus protocol 0.41, "Message Format"): the
/// method call org.freedesktop.DBus.Hello, serial 1, no body.
QByteArray hello() {
  QByteArray fields;
  const auto field = [&fields](char code, char type, const QByteArray& value) {
    while (fields.size() % 8 != 0) fields.append('\0');
    fields.append(code).append('\1').append(type).append('\0');
    const auto size = static_cast<quint32>(value.size());
    fields.append(reinterpret_cast<const char*>(&size), sizeof size).append(value).append('\0');
  };
  field(1, 'o', "/org/freedesktop/DBus");
  field(2, 's', "org.freedesktop.DBus");
  field(3, 's', "Hello");
  field(6, 's', "org.freedesktop.DBus");

  constexpr char Order = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? 'l' : 'B';
  QByteArray message;
  message.append(Order).append('\1').append('\0').append('\1');
  for (const quint32 number : {quint32(0), quint32(1), static_cast<quint32>(fields.size())}) {
    message.append(reinterpret_cast<const char*>(&number), sizeof number);
  }
  message += fields;
  while (message.size() % 8 != 0) message.append('\0');
  return message;
}

}  // namespace

QString sessionBusAddress() {
  const QString stated = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
  if (!stated.isEmpty()) return stated;
  return QFileInfo::exists(QFile::decodeName(runtimeBus()))
             ? QStringLiteral("unix:path=") + QFile::decodeName(runtimeBus())
             : QString();
}

QString lastingAddress(const QString& address) {
  QStringList lasting;
  for (const QString& each : address.split(QLatin1Char(';'))) {
    const qsizetype colon = each.indexOf(QLatin1Char(':'));
    QStringList entries = each.mid(colon + 1).split(QLatin1Char(','));
    entries.removeIf([](const QString& entry) { return entry.startsWith(QLatin1String("guid=")); });
    lasting.append(each.left(colon + 1) + entries.join(QLatin1Char(',')));
  }
  return lasting.join(QLatin1Char(';'));
}

BusProbe::BusProbe() : cancelEvent_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}
BusProbe::~BusProbe() { ::close(cancelEvent_); }

void BusProbe::cancel() noexcept { ::eventfd_write(cancelEvent_, 1); }

bool BusProbe::isCancelled() const noexcept {
  pollfd event{cancelEvent_, POLLIN, 0};
  return ::poll(&event, 1, 0) == 1;
}

base::Result<QString> BusProbe::find(const QString& address, std::chrono::milliseconds limit) {
  const auto deadline = Clock::now() + limit;
  base::Failure failure{QStringLiteral("nobody says where it is")};
  QList<QByteArray> addresses = address.toLocal8Bit().split(';');
  addresses.removeAll(QByteArray());
  for (auto left = addresses.size(); left > 0; --left) {
    const QByteArray& each = addresses.at(addresses.size() - left);
    const QByteArray path = valueOf(each, "path");
    const QByteArray abstract = valueOf(each, "abstract");
    if (!each.startsWith("unix:") || (path.isEmpty() && abstract.isEmpty())) {
      // Whether it answers is for the bus library to find out, which goes on with those behind it.
      return QString::fromLocal8Bit(addresses.mid(addresses.size() - left).join(';'));
    }
    const base::Result<> asked = askSocket(path.isEmpty() ? abstract : path, path.isEmpty(),
                                           Clock::now() + (deadline - Clock::now()) / left);
    if (asked) return QString::fromLocal8Bit(each);
    failure = asked.failure();
  }
  return failure;
}

base::Result<> BusProbe::askSocket(const QByteArray& path, bool abstract, Clock::time_point deadline) const {
  sockaddr_un place{};
  place.sun_family = AF_UNIX;
  const size_t first = abstract ? 1 : 0;  // an abstract name begins with a NUL
  if (static_cast<size_t>(path.size()) + first >= sizeof place.sun_path)
    return base::Failure{QStringLiteral("its path is too long")};
  std::memcpy(place.sun_path + first, path.constData(), static_cast<size_t>(path.size()));
  const auto length =
      static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + static_cast<size_t>(path.size()) + 1);

  const Socket socket;
  // Does not block, even on the full queue of a socket whose bus has stopped.
  if (::connect(socket.descriptor(), reinterpret_cast<const sockaddr*>(&place), length) != 0)
    return base::Failure{base::systemError()};

  const auto say = [&socket](const QByteArray& words) {
    return ::send(socket.descriptor(), words.constData(), static_cast<size_t>(words.size()), MSG_NOSIGNAL) ==
           words.size();
  };
  const auto hear = [&]() -> std::optional<QByteArray> {
    std::array<pollfd, 2> ends{pollfd{socket.descriptor(), POLLIN, 0}, pollfd{cancelEvent_, POLLIN, 0}};
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
    if (left <= 0 || ::poll(ends.data(), ends.size(), static_cast<int>(left)) <= 0 || ends[1].revents != 0)
      return {};
    std::array<char, 512> buffer;
    const ssize_t size = ::read(socket.descriptor(), buffer.data(), buffer.size());
    if (size <= 0) return {};
    return QByteArray(buffer.data(), size);
  };

  const base::Failure silent{QStringLiteral("it does not answer")};
  if (!say(QByteArray(1, '\0') + "AUTH EXTERNAL " + QByteArray::number(::geteuid()).toHex() + "\r\n"))
    return silent;
  QByteArray answer;
  while (!answer.contains("\r\n") && answer.size() < 1024) {
    const auto more = hear();
    if (!more) return silent;
    answer += *more;
  }
  if (!answer.startsWith("OK ")) return base::Failure{QStringLiteral("it does not let this user in")};
  if (!say("BEGIN\r\n" + hello())) return silent;
  return hear() ? base::Result<>() : silent;
}

}  // namespace velmora::link
