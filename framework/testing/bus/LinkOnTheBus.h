// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QVariantMap>

#include "link/wire/WireFormat.h"
#include "testing/bus/BusPeer.h"
#include "testing/files/Noise.h"

/// What the growth application's link looks like to others on the bus.
namespace velmora::testkit::bus {

inline const QString Growth = QStringLiteral("org.velmora.growth");
inline const QString GrowthLink = QStringLiteral("org.velmora.growth.osirixLink");
inline const QString Request = QStringLiteral("OsirixLink");
inline const QString Reply = QStringLiteral("OsirixLinkReturn");

/// A reply with every key that one has, of 100 bytes of chart.
inline QVariantMap replyWithEveryKey() {
  return {{QStringLiteral("Identifier"), QStringLiteral("12-345-6")},
          {QStringLiteral("Name"), QStringLiteral("Jörg")},
          {QStringLiteral("DateOfBirth"), QDateTime(QDate(2019, 3, 14), QTime(12, 0)).toUTC()},
          {QStringLiteral("DateOfStudy"), QDateTime(QDate(2024, 5, 2), QTime(12, 0)).toUTC()},
          {QStringLiteral("OsiriXStudyID"), QStringLiteral("1.2.3")},
          {QStringLiteral("StudyDescription"), QStringLiteral("Growth Chart")},
          {QStringLiteral("JPEG"), noise(100)}};
}

/// User information with a number in it, and the number of such.
inline QVariantMap numbered(int number) { return {{QStringLiteral("Number"), number}}; }
inline QVariant numberOf(const QVariantMap& details) { return details.value(QStringLiteral("Number")); }

/// Sends a notification's signal with these arguments, checked by nobody.
inline void sendNotification(BusPeer& peer, const QVariantList& arguments) {
  peer.send(velmora::link::Path, velmora::link::Interface, velmora::link::Member, arguments);
}

}  // namespace velmora::testkit::bus
