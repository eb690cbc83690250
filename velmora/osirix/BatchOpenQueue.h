// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QObject>
#include <QStringList>

#include "platform/NotificationCenter.h"

namespace platform {
class DocumentController;
struct Services;
}  // namespace platform

namespace velmora {

/// Data files that are to be opened, exported and closed again without the user, one in a step.
class BatchOpenQueue : public QObject {
 public:
  BatchOpenQueue(platform::Services& services, platform::DocumentController& controller)
      : services_(services), controller_(controller) {}

  /// Takes a path (the notification's object) and works at once.
  void batchOpen(const platform::Notification& notification);
  /// Opens and exports the first file, has it closed a second later, and goes on in the next turn of the run
  /// loop.
  void delayBatchOpen();
  void clear() { batchArray_.clear(); }
  const QStringList& batchArray() const { return batchArray_; }

 private:
  platform::Services& services_;
  platform::DocumentController& controller_;
  QStringList batchArray_;
};

}  // namespace velmora
