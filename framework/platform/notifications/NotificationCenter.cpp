// SPDX-License-Identifier: LGPL-3.0-or-later
#include "platform/notifications/NotificationCenter.h"

#include <algorithm>

namespace velmora::platform {

void NotificationCenter::addObserver(const QObject* observer, const QString& name, Handler handler) {
  registrations_.push_back(std::make_shared<Registration>(
      Registration{QPointer<const QObject>(observer), name, std::move(handler)}));
}

void NotificationCenter::removeObserver(const QObject* observer) {
  std::erase_if(registrations_, [observer](const std::shared_ptr<Registration>& registration) {
    const bool gone = registration->observer.isNull() || registration->observer == observer;
    if (gone) registration->removed = true;
    return gone;
  });
}

void NotificationCenter::postNotificationName(const QString& name, const QVariant& object,
                                              const QVariantMap& userInfo) {
  const Notification notification{name, object, userInfo};
  // A copy, because handlers add and remove observers; an observer added meanwhile hears only the next post.
  const auto snapshot = registrations_;
  for (const auto& registration : snapshot) {
    if (registration->removed || registration->observer.isNull() || registration->name != name) continue;
    registration->handler(notification);
  }
}

}  // namespace velmora::platform
