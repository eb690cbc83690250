// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>
#include <QThread>
#include <chrono>
#include <functional>
#include <memory>

#include "platform/qt/wire/WireForm.h"

class QDBusConnection;

namespace platform::wire {

class BusReceiver;

/// A connection to the session bus of its own, on a thread of its own, that sends and receives notifications.
///
/// No operation but flush() waits for the bus; what is asked is done in the order in which it was asked. The
/// thread has nothing else to do than to receive, because a receiver that is busy for long loses its messages
/// for good. Without a session bus there is one log line, and every operation does nothing.
class BusLink {
 public:
  /// Both are called on the link's thread, must be quick and must not throw.
  using Received = std::function<void(const Message&)>;
  using Log = std::function<void(const QString& line)>;

  /// Begins to connect, to the session bus or to the bus at `address` where one is given.
  BusLink(const QString& address, Received received, Log log);
  /// Sends what was posted, waiting a few seconds at most for the bus to take it, and disconnects. Only a bus
  /// that takes a connection and never greets it holds this up for longer: the bus library waits for the
  /// greeting.
  ~BusLink();
  BusLink(const BusLink&) = delete;
  BusLink& operator=(const BusLink&) = delete;

  /// Asks the bus for the notifications of exactly this name and object. Each pair once.
  void subscribe(const QString& name, const QString& object);
  void unsubscribe(const QString& name, const QString& object);
  /// Sends a notification to whoever asked for it.
  void post(const Message& message);

  /// Waits until the bus has taken everything asked so far: subscriptions are in place, posts are delivered.
  /// False when there is no bus or it did not answer in time.
  bool flush(std::chrono::milliseconds limit);

 private:
  /// Runs `task` on the link's thread, after all earlier ones.
  void enqueue(std::function<void()> task);
  bool roundTrip(std::chrono::milliseconds limit);

  // The link's thread only.
  void open(const QString& address);
  void close();
  void letGo();
  bool usable();
  void send(const Message& message);
  void arrived(const QDBusMessage& signal);

  Received received_;
  Log log_;
  QString connectionName_;
  // Made and destroyed on the link's thread; none without a bus.
  std::unique_ptr<QDBusConnection> bus_;
  std::unique_ptr<BusReceiver> receiver_;
  QObject worker_;  // whose events are the tasks
  QThread thread_;
};

}  // namespace platform::wire
