// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/cli/DesktopNotice.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QStringList>
#include <QVariantMap>
#include <chrono>

#include "link/bus/BusProbe.h"

using namespace velmora;

namespace bridge {

bool showOnDesktop(const QString& title, const QString& text) {
  constexpr int Limit = 5000;  // milliseconds
  constexpr qsizetype LongestText = 1000;
  // The bus library waits half a minute for a bus that hangs.
  link::BusProbe probe;
  const QString address = link::sessionBusAddress();
  if (address.isEmpty() || !probe.ask(address, std::chrono::milliseconds(Limit))) return false;
  const QString name = QStringLiteral("velmora-link-notice");
  bool shown = false;
  {
    QDBusConnection bus = QDBusConnection::connectToBus(address, name);
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("/org/freedesktop/Notifications"),
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("Notify"));
    // The text may be markup, so what looks like it is escaped.
    call.setArguments({QStringLiteral("velmora-link"), 0U, QString(), title,
                       text.left(LongestText).toHtmlEscaped(), QStringList(), QVariantMap(), -1});
    shown = bus.isConnected() && bus.call(call, QDBus::Block, Limit).type() == QDBusMessage::ReplyMessage;
  }
  QDBusConnection::disconnectFromBus(name);
  return shown;
}

}  // namespace bridge
