// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QList>
#include <QObject>
#include <QString>
#include <QThread>
#include <atomic>
#include <chrono>
#include <functional>
#include <memory>

#include "base/Export.h"
#include "link/bus/BusProbe.h"
#include "link/wire/WireFormat.h"

class QDBusConnection;

namespace velmora::link {

class BusReceiver;

/// Sends and receives notifications over its own connection to the session bus, on its own thread.
///
/// Only flush() waits for the bus; operations are carried out in the order of the calls. The thread does
/// nothing but send and receive, because a receiver that is busy for long loses its messages for good.
///
/// While there is no session bus, at the start or later, connecting is retried at growing intervals
/// (retryAfter). Subscriptions are renewed when the bus is back; what is posted meanwhile is lost. One log
/// line says that the bus is not there, one that it is back.
class VELMORA_EXPORT BusLink {
 public:
  /// Both are called on the link's thread and must be quick. What they throw is logged.
  using Received = std::function<void(const Message&)>;
  using Log = std::function<void(const QString& line)>;

  /// Begins to connect, to the session bus or to the bus at `address` where one is given.
  BusLink(const QString& address, Received received, Log log);
  /// Sends what was posted, waiting a few seconds at most for the bus to take it, and disconnects.
  ~BusLink();
  BusLink(const BusLink&) = delete;
  BusLink& operator=(const BusLink&) = delete;

  /// Subscribes to the notifications of exactly this name and object. Once for each pair.
  void subscribe(const QString& name, const QString& object);
  void unsubscribe(const QString& name, const QString& object);
  /// Sends a notification to its subscribers.
  void post(const Message& message);

  /// Waits until the bus has taken everything so far: subscriptions are in place, posts are delivered.
  /// Returns false when there is no bus or it did not answer in time.
  bool flush(std::chrono::milliseconds limit);

  /// How long to wait after a failed attempt that came `previous` after the one before it (0 for the first):
  /// a second, then twice as long each time, half a minute at most.
  static std::chrono::milliseconds retryAfter(std::chrono::milliseconds previous);

 private:
  /// Runs `task` on the link's thread, after all earlier ones.
  void enqueue(std::function<void()> task);
  bool roundTrip(std::chrono::milliseconds limit);

  // The link's thread only.
  void open();
  base::Result<> connectToBus();
  void close();
  void disconnect();
  void addMatch(const QString& name, const QString& object);
  void connectionLost();
  void tryLater();
  bool usable();
  void send(const Message& message);
  void arrived(const QDBusMessage& signal);

  struct Subscription {
    QString name;
    QString object;
    bool operator==(const Subscription&) const = default;
  };

  Received received_;
  Log log_;
  QString address_;  // empty: the session bus
  BusProbe probe_;
  std::atomic<int> unsent_{0};

  // The link's thread only.
  QString connectionName_;
  QList<Subscription> subscriptions_;
  bool off_ = false;  // as the log has it
  std::chrono::milliseconds delay_{0};
  QElapsedTimer connectedSince_;
  // Made and destroyed on the link's thread; none without a bus.
  std::unique_ptr<QDBusConnection> bus_;
  std::unique_ptr<BusReceiver> receiver_;
  QObject worker_;  // whose events are the tasks
  QThread thread_;
};

}  // namespace velmora::link
