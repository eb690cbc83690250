// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/cli/DesktopNotice.h"

#include <QStringList>
#include <QVariantMap>

#include "bridge/cli/BusCall.h"

namespace bridge {

bool showOnDesktop(const QString& title, const QString& text) {
  constexpr qsizetype LongestMessage = 1000;
  QDBusMessage call = QDBusMessage::createMethodCall(
      QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("/org/freedesktop/Notifications"),
      QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("Notify"));
  // Notifications may interpret markup.
  call.setArguments({QStringLiteral("velmora-link"), 0U, QString(), title,
                     text.left(LongestMessage).toHtmlEscaped(), QStringList(), QVariantMap(), -1});
  return callOnSessionBus(call).has_value();
}

}  // namespace bridge
