// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QVariantMap>

namespace testing_support {

/// Another program on the session bus: says whatever it likes to the application's object.
class BusStranger {
 public:
  explicit BusStranger(const QString& address)
      : name_(QStringLiteral("stranger-%1").arg(++last_)),
        bus(QDBusConnection::connectToBus(address, name_)) {
    EXPECT_TRUE(bus.isConnected());
  }
  ~BusStranger() { QDBusConnection::disconnectFromBus(name_); }
  BusStranger(const BusStranger&) = delete;
  BusStranger& operator=(const BusStranger&) = delete;

  QDBusMessage call(const QString& member, const QVariantList& arguments,
                    const QString& interface = QStringLiteral("org.freedesktop.Application")) {
    QDBusMessage message = QDBusMessage::createMethodCall(
        QStringLiteral("org.velmora.desk-test"), QStringLiteral("/org/velmora/desk_test"), interface, member);
    message.setArguments(arguments);
    return bus.call(message, QDBus::Block, 30000);
  }
  QDBusMessage open(const QStringList& locations, const QVariantMap& platformData = {}) {
    return call(QStringLiteral("Open"), {locations, platformData});
  }
  bool takesName(const QString& name) { return bus.registerService(name); }
  bool nameIsTaken(const QString& name) {
    QDBusMessage question = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameHasOwner"));
    question << name;
    return bus.call(question, QDBus::Block, 30000).arguments().value(0).toBool();
  }

 private:
  static inline int last_ = 0;
  QString name_;

 public:
  QDBusConnection bus;
};

}  // namespace testing_support
