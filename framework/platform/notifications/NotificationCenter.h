// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QVariant>
#include <QVariantMap>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "base/Export.h"

namespace velmora::platform {

/// What an observer is told: the name, the object it is about, and a dictionary of details.
struct Notification {
  QString name;
  QVariant object;
  QVariantMap userInfo;
};

/// Notifications within the process, on the main thread. Delivery is synchronous inside the post, in the
/// order of registration, once for each registration: an observer that registers twice is called twice.
class VELMORA_EXPORT NotificationCenter {
 public:
  using Handler = std::function<void(const Notification&)>;

  /// Calls `handler` for every notification of that name, from any object, until the observer is removed or
  /// dies.
  void addObserver(const QObject* observer, const QString& name, Handler handler);
  /// Removes every registration of the observer; one removed in the middle of a post is not called any more.
  void removeObserver(const QObject* observer);
  void postNotificationName(const QString& name, const QVariant& object = {},
                            const QVariantMap& userInfo = {});

 private:
  struct Registration {
    QPointer<const QObject> observer;
    QString name;
    Handler handler;
    bool removed = false;
  };
  std::vector<std::shared_ptr<Registration>> registrations_;
};

/// Notifications between processes of the same user session. A notification carries a name, an object string
/// and a dictionary of property-list values: QString, bool, integers (as qint64), double, QByteArray,
/// QDateTime, lists and string-keyed dictionaries of these. An observer hears only the exact name and object
/// it asked for.
class VELMORA_EXPORT DistributedNotificationCenter {
 public:
  using Handler = std::function<void(const Notification&)>;

  virtual ~DistributedNotificationCenter() = default;

  /// The handler may be called on any thread. Once removeObserver() has returned it is not called any more.
  virtual void addObserver(const QObject* observer, const QString& name, const QString& object,
                           Handler handler) = 0;
  /// Removes the observer's registrations for that name and object; none given means every name, every
  /// object.
  virtual void removeObserver(const QObject* observer, const std::optional<QString>& name = std::nullopt,
                              const std::optional<QString>& object = std::nullopt) = 0;
  /// Sends without waiting; whether anybody listens is not known, and a message nobody hears is lost.
  virtual void postNotificationName(const QString& name, const QString& object,
                                    const QVariantMap& userInfo) = 0;
};

}  // namespace velmora::platform
