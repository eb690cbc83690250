// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/activation/SessionBus.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QDBusConnection>
#include <chrono>

#include "link/bus/BusProbe.h"

namespace velmora::desktop {

namespace {

constexpr const char* Variable = "DBUS_SESSION_BUS_ADDRESS";
/// There is always a file here, and nobody listens: a connection is refused at once.
constexpr const char* NobodysAddress = "unix:path=/dev/null";
/// A bus that is well answers within milliseconds, and a user waits no longer for a window than this.
constexpr std::chrono::milliseconds Patience{2000};

/// What the environment said before; null when it said nothing.
QByteArray& statedAddress() {
  static QByteArray address;
  return address;
}

/// Run when the application has just been made. Qt looks for the session bus only once, so it looks now; what
/// is made later, the link and the programs that are started from here, sees the true address again.
void lookForNobody() {
  QDBusConnection::sessionBus();
  if (statedAddress().isNull()) {
    qunsetenv(Variable);
  } else {
    qputenv(Variable, statedAddress());
  }
}

}  // namespace

void prepareSessionBus() {
  const QString address = link::sessionBusAddress();
  if (address.isEmpty()) return;
  const base::Result<QString> found = link::BusProbe().find(address, Patience);
  if (found.ok() && *found == address) return;
  statedAddress() = qEnvironmentVariableIsSet(Variable) ? qgetenv(Variable) : QByteArray();
  qputenv(Variable, found.ok() ? found->toLocal8Bit() : QByteArray(NobodysAddress));
  qAddPreRoutine(lookForNobody);
}

}  // namespace velmora::desktop
