// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointer>
#include <QStringList>

#include "base/Export.h"
#include "platform/notifications/NotificationCenter.h"

namespace velmora::platform {
class Alerts;
class Document;
class DocumentController;
class RunLoop;
}  // namespace velmora::platform

namespace velmora {

/// Data files that are to be opened, exported and closed again without the user, one in a step.
class VELMORA_EXPORT BatchOpenQueue : public QObject {
 public:
  BatchOpenQueue(platform::DocumentController& controller, platform::RunLoop& runLoop,
                 platform::Alerts& alerts)
      : controller_(controller), runLoop_(runLoop), alerts_(alerts) {}

  /// Takes a path (the notification's object) and works at once.
  void batchOpen(const platform::Notification& notification);
  /// Opens and exports the first file, has it closed a second later, and goes on in the next turn of the run
  /// loop. When the last one is closed, the user is told of the unsaved changes that were kept.
  void delayBatchOpen();
  void clear() { batchArray_.clear(); }
  const QStringList& batchArray() const { return batchArray_; }

 private:
  void close(const QPointer<platform::Document>& document);
  void tellAboutKeptCopies();

  platform::DocumentController& controller_;
  platform::RunLoop& runLoop_;
  platform::Alerts& alerts_;
  QStringList batchArray_;
  int closing_ = 0;  // documents that wait to be closed
  QStringList keptCopies_;
};

}  // namespace velmora
