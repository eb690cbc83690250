// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/notifications/QtDistributedNotificationCenter.h"

#include <algorithm>

#include "base/log/Guard.h"
#include "base/log/Log.h"
#include "link/bus/BusLink.h"

namespace velmora::desktop {

QtDistributedNotificationCenter::QtDistributedNotificationCenter(const QString& busAddress)
    : link_(std::make_unique<link::BusLink>(
          busAddress, [this](const link::Message& message) { deliver(message); },
          [](const QString& line) { base::logLine(line); })) {}

QtDistributedNotificationCenter::~QtDistributedNotificationCenter() {
  const std::lock_guard lock(mutex_);
  for (const auto& registration : registrations_) {
    registration->removed = true;
    QObject::disconnect(registration->death);
  }
  registrations_.clear();
}

void QtDistributedNotificationCenter::addObserver(const QObject* observer, const QString& name,
                                                  const QString& object, Handler handler) {
  const std::lock_guard lock(mutex_);
  auto registration =
      std::make_shared<Registration>(Registration{observer, name, object, std::move(handler), {}});
  if (observer) {
    registration->death = QObject::connect(
        observer, &QObject::destroyed, &context_, [this, observer] { removeObserver(observer); },
        Qt::DirectConnection);
  }
  if (!anyFor(name, object)) link_->subscribe(name, object);
  registrations_.push_back(std::move(registration));
}

void QtDistributedNotificationCenter::removeObserver(const QObject* observer,
                                                     const std::optional<QString>& name,
                                                     const std::optional<QString>& object) {
  const std::lock_guard lock(mutex_);
  const auto meant = [&](const std::shared_ptr<Registration>& registration) {
    return registration->observer == observer && (!name || registration->name == *name) &&
           (!object || registration->object == *object);
  };
  for (auto found = std::find_if(registrations_.begin(), registrations_.end(), meant);
       found != registrations_.end();
       found = std::find_if(registrations_.begin(), registrations_.end(), meant)) {
    const std::shared_ptr<Registration> registration = *found;
    registrations_.erase(found);
    registration->removed = true;  // a delivery that is under way may still hold it
    QObject::disconnect(registration->death);
    if (!anyFor(registration->name, registration->object)) {
      link_->unsubscribe(registration->name, registration->object);
    }
  }
}

void QtDistributedNotificationCenter::postNotificationName(const QString& name, const QString& object,
                                                           const QVariantMap& userInfo) {
  link_->post({name, object, userInfo});
}

bool QtDistributedNotificationCenter::flush(std::chrono::milliseconds limit) { return link_->flush(limit); }

bool QtDistributedNotificationCenter::anyFor(const QString& name, const QString& object) const {
  return std::any_of(registrations_.begin(), registrations_.end(), [&](const auto& registration) {
    return registration->name == name && registration->object == object;
  });
}

void QtDistributedNotificationCenter::deliver(const link::Message& message) {
  const std::lock_guard lock(mutex_);
  const platform::Notification notification{message.name, message.object, message.userInfo};
  const auto registrations = registrations_;
  for (const auto& registration : registrations) {
    if (registration->removed || registration->name != message.name ||
        registration->object != message.object) {
      continue;
    }
    base::guarded("distributed notification", [&] { registration->handler(notification); });
  }
}

}  // namespace velmora::desktop
