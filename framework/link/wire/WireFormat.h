// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDBusMessage>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include "base/Export.h"
#include "base/Result.h"

/// A distributed notification as a signal on the session bus.
///
/// The signal carries name, object and details ("ssa{sv}"). The details hold, as D-Bus types:
///
///   string s · boolean b · whole number x · number d · bytes ay · list av · dictionary a{sv} · date (x)
///
/// A date is a structure of one number, the milliseconds since 1970-01-01T00:00:00Z, in the years 1 to 9999.
/// Other senders may also write narrower and unsigned whole numbers, arrays of one type, and variants within
/// variants; they are read as the types above. A value of any other type is left out, by itself, and named.
namespace velmora::link {

inline const QString Path = QStringLiteral("/org/velmora/DistributedNotificationCenter");
inline const QString Interface = QStringLiteral("org.velmora.DistributedNotificationCenter");
inline const QString Member = QStringLiteral("Notification");
inline const QString Signature = QStringLiteral("ssa{sv}");

/// The largest message, in bytes; both sides refuse larger ones. Far above any chart, and well below the
/// limits of the bus library, where arrays above 64 MiB stall the sender and 63 MiB of unread data silence a
/// receiver.
inline constexpr qint64 MaximumSize = 32LL * 1024 * 1024;

/// How deep lists and dictionaries may nest, the details themselves included. The bus disconnects a sender
/// whose types nest 64 deep, and each nested dictionary takes three of those.
inline constexpr int MaximumDepth = 16;

/// One notification.
struct Message {
  QString name;
  QString object;
  /// QString, bool, qint64, double, QByteArray, QDateTime, QVariantList and QVariantMap of these. When sent,
  /// every integer type and QStringList will do too; what has arrived holds exactly these types, dates in
  /// UTC.
  QVariantMap userInfo;
};

/// A notification made ready for the bus.
struct Outgoing {
  QDBusMessage message;
  QStringList dropped;  ///< what was left out of the details, and why; some of it when it was very much
};
/// Fails when it must not be sent at all.
VELMORA_EXPORT base::Result<Outgoing> toBus(const Message& message);

/// A notification taken from the bus.
struct Incoming {
  Message message;
  QStringList dropped;  ///< as above
};
VELMORA_EXPORT base::Result<Incoming> fromBus(const QDBusMessage& signal);

/// Whether the bus can select signals by this name or object: its match rules hold no apostrophe, and no
/// string on the bus holds a NUL.
VELMORA_EXPORT bool canBeMatched(const QString& text);

}  // namespace velmora::link
