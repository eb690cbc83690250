// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QObject>
#include <chrono>
#include <memory>
#include <mutex>
#include <vector>

#include "platform/notifications/NotificationCenter.h"

namespace velmora::link {
class BusLink;
struct Message;
}  // namespace velmora::link

namespace velmora::desktop {

/// Notifications between processes, as signals on the session bus.
///
/// Handlers are called on a thread that does nothing else, one at a time; they hand over to the main thread
/// and return. The bus itself selects by name and object, so a process is not even woken by what it has not
/// asked for. Adding, removing and posting never wait for the bus. Without a session bus there is one log
/// line and nothing is heard or sent.
class QtDistributedNotificationCenter final : public platform::DistributedNotificationCenter {
 public:
  /// Begins to connect, to the session bus or to the bus at `busAddress` where one is given.
  explicit QtDistributedNotificationCenter(const QString& busAddress = QString());
  /// Sends what was posted, waiting a few seconds at most for the bus to take it.
  ~QtDistributedNotificationCenter() override;

  /// An observer that is destroyed is removed then; one whose own members a handler uses removes itself
  /// before.
  void addObserver(const QObject* observer, const QString& name, const QString& object,
                   Handler handler) override;
  /// Waits for a handler that is running, unless it is called by that handler.
  void removeObserver(const QObject* observer, const std::optional<QString>& name = std::nullopt,
                      const std::optional<QString>& object = std::nullopt) override;
  void postNotificationName(const QString& name, const QString& object, const QVariantMap& userInfo) override;

  /// Waits until the bus has taken all that was asked so far: observers hear, posts are delivered. Returns
  /// false when there is no bus or it does not answer in time.
  bool flush(std::chrono::milliseconds limit = std::chrono::milliseconds(5000));

 private:
  struct Registration {
    const QObject* observer;
    QString name;
    QString object;
    Handler handler;
    QMetaObject::Connection death;
    bool removed = false;
  };
  bool anyFor(const QString& name, const QString& object) const;
  void deliver(const link::Message& message);

  // Held while a handler runs. Recursive, because a handler may add and remove observers.
  std::recursive_mutex mutex_;
  std::vector<std::shared_ptr<Registration>> registrations_;
  QObject context_;
  std::unique_ptr<link::BusLink> link_;  // destroyed first: its thread uses all of the above
};

}  // namespace velmora::desktop
