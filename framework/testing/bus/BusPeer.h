// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>
#include <QVariantMap>

#include "base/Export.h"

namespace velmora::testkit {

/// Another program on a bus, which sends and calls whatever the test likes.
class VELMORA_EXPORT BusPeer {
 public:
  explicit BusPeer(const QString& address)
      : name_(QStringLiteral("peer-%1").arg(++last_)), bus(QDBusConnection::connectToBus(address, name_)) {}
  ~BusPeer() { QDBusConnection::disconnectFromBus(name_); }
  BusPeer(const BusPeer&) = delete;
  BusPeer& operator=(const BusPeer&) = delete;

  /// Sends a signal with these arguments, checked by nobody.
  void send(const QString& path, const QString& interface, const QString& member,
            const QVariantList& arguments) {
    QDBusMessage signal = QDBusMessage::createSignal(path, interface, member);
    signal.setArguments(arguments);
    bus.send(signal);
  }
  /// Calls a method and waits for what it answers.
  QDBusMessage call(const QString& service, const QString& path, const QString& interface,
                    const QString& member, const QVariantList& arguments) {
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, member);
    message.setArguments(arguments);
    return bus.call(message, QDBus::Block, 30000);
  }
  bool takesName(const QString& name) { return bus.registerService(name); }
  bool nameIsTaken(const QString& name) {
    const QString daemon = QStringLiteral("org.freedesktop.DBus");
    return call(daemon, QStringLiteral("/org/freedesktop/DBus"), daemon, QStringLiteral("NameHasOwner"),
                {name})
        .arguments()
        .value(0)
        .toBool();
  }

 private:
  static inline int last_ = 0;
  QString name_;

 public:
  QDBusConnection bus;
};

}  // namespace velmora::testkit
