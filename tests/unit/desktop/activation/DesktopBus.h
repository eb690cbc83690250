// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include "testing/bus/BusPeer.h"

namespace testing_support {

/// Another program on the session bus: says whatever it likes to the application's object.
class DesktopPeer : public velmora::testkit::BusPeer {
 public:
  using BusPeer::BusPeer;

  QDBusMessage call(const QString& member, const QVariantList& arguments,
                    const QString& interface = QStringLiteral("org.freedesktop.Application")) {
    return BusPeer::call(QStringLiteral("org.velmora.desk-test"), QStringLiteral("/org/velmora/desk_test"),
                         interface, member, arguments);
  }
  QDBusMessage open(const QStringList& locations, const QVariantMap& platformData = {}) {
    return call(QStringLiteral("Open"), {locations, platformData});
  }
};

}  // namespace testing_support
