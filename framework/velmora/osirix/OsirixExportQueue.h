// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QList>
#include <QObject>
#include <QVariantMap>
#include <functional>

#include "base/Export.h"
#include "platform/notifications/NotificationCenter.h"

namespace velmora::platform {
class Bundle;
class RunLoop;
}  // namespace velmora::platform

namespace velmora {

/// Charts to be sent to OsiriX as link replies, one at a time, so that OsiriX never gets a burst of images.
///
/// The first leaves a second after it arrived at an empty queue, each further one four seconds after the one
/// before. That the queue is empty is the only test: an arrival during the last four seconds of an earlier
/// chain starts a second chain beside it.
class VELMORA_EXPORT OsirixExportQueue : public QObject {
 public:
  OsirixExportQueue(platform::DistributedNotificationCenter& center, platform::RunLoop& runLoop,
                    const platform::Bundle& bundle)
      : center_(center), runLoop_(runLoop), bundle_(bundle) {}

  /// Takes a payload (the notification's object).
  void batchExportToOsirix(const platform::Notification& notification);
  /// Sends the first payload.
  void delayBatchExportToOsirix();
  /// Forgets what waits; a log line says how much that was.
  void clear();
  const QList<QVariantMap>& exportToOsirixArray() const { return exportToOsirixArray_; }
  /// Called after every change of the number of payloads that wait.
  void setLengthDidChange(std::function<void()> lengthDidChange) {
    lengthDidChange_ = std::move(lengthDidChange);
  }

 private:
  platform::DistributedNotificationCenter& center_;
  platform::RunLoop& runLoop_;
  const platform::Bundle& bundle_;
  QList<QVariantMap> exportToOsirixArray_;
  std::function<void()> lengthDidChange_;
};

}  // namespace velmora
