// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/osirix/OsirixExportQueue.h"

#include "base/log/Log.h"
#include "link/protocol/LinkProtocol.h"
#include "platform/bundles/Bundle.h"
#include "platform/runloop/RunLoop.h"

namespace velmora {

namespace {
constexpr double FirstDelay = 1.0;
constexpr double NextDelay = 4.0;
}  // namespace

void OsirixExportQueue::batchExportToOsirix(const platform::Notification& notification) {
  base::logLine(QStringLiteral("Batch export to osirix"));
  if (exportToOsirixArray_.isEmpty()) {
    base::logLine(QStringLiteral("Initialise delayed batch export"));
    runLoop_.performAfterDelay(this, FirstDelay, [this] { delayBatchExportToOsirix(); });
  }
  exportToOsirixArray_.append(notification.object.toMap());
  if (lengthDidChange_) lengthDidChange_();
}

void OsirixExportQueue::delayBatchExportToOsirix() {
  base::logLine(QStringLiteral("Delayed batch export"));
  if (exportToOsirixArray_.isEmpty()) {
    base::logLine(QStringLiteral("Zero items in array, exiting"));
    return;
  }
  base::logLine(QStringLiteral("Sending notification to OsiriX plugin"));
  center_.postNotificationName(link::notificationName(bundle_.bundleIdentifier()), link::ReplyObject,
                               exportToOsirixArray_.first());
  exportToOsirixArray_.removeFirst();
  runLoop_.performAfterDelay(this, NextDelay, [this] { delayBatchExportToOsirix(); });
  base::logLine(QStringLiteral("Queue next delayed batch export"));
  if (lengthDidChange_) lengthDidChange_();
}

void OsirixExportQueue::clear() {
  if (!exportToOsirixArray_.isEmpty()) {
    base::logLine(QStringLiteral("Charts that waited for OsiriX and are not sent: %1")
                      .arg(exportToOsirixArray_.size()));
  }
  exportToOsirixArray_.clear();
  if (lengthDidChange_) lengthDidChange_();
}

}  // namespace velmora
