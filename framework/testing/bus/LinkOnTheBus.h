// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include "link/wire/WireForm.h"
#include "testing/bus/BusPeer.h"

/// What the growth application's link looks like to others on the bus.
namespace velmora::testkit::bus {

inline const QString Growth = QStringLiteral("org.velmora.growth");
inline const QString GrowthLink = QStringLiteral("org.velmora.growth.osirixLink");
inline const QString Request = QStringLiteral("OsirixLink");
inline const QString Reply = QStringLiteral("OsirixLinkReturn");

/// Sends a notification's signal with these arguments, checked by nobody.
inline void sendNotification(BusPeer& peer, const QVariantList& arguments) {
  peer.send(velmora::link::Path, velmora::link::Interface, velmora::link::Member, arguments);
}

}  // namespace velmora::testkit::bus
