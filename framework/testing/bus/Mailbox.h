// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QVariantMap>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>

#include "base/Export.h"
#include "platform/notifications/NotificationCenter.h"
#include "testing/waiting/Waiting.h"

namespace velmora::testkit {

/// Collects notifications on any thread, for a test to take one after the other.
class VELMORA_EXPORT Mailbox {
 public:
  platform::DistributedNotificationCenter::Handler handler() {
    return [this](const platform::Notification& notification) { put(notification); };
  }

  void put(const platform::Notification& notification) {
    const std::lock_guard lock(mutex_);
    notifications_.push_back(notification);
    arrived_.notify_all();
  }

  /// The next one, waiting for it; nothing when none comes.
  std::optional<platform::Notification> take() {
    std::unique_lock lock(mutex_);
    if (!arrived_.wait_for(lock, Patience, [this] { return !notifications_.empty(); })) return std::nullopt;
    platform::Notification first = notifications_.front();
    notifications_.pop_front();
    return first;
  }

  /// The details of the next one; empty when none comes.
  QVariantMap takeDetails() {
    const auto notification = take();
    return notification ? notification->userInfo : QVariantMap();
  }

  bool empty() const {
    const std::lock_guard lock(mutex_);
    return notifications_.empty();
  }

 private:
  mutable std::mutex mutex_;
  std::condition_variable arrived_;
  std::deque<platform::Notification> notifications_;
};

}  // namespace velmora::testkit
