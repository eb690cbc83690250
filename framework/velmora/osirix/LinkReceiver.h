// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QObject>
#include <mutex>

#include "base/Export.h"
#include "platform/notifications/NotificationCenter.h"

class VelmoraDocument;

namespace velmora::platform {
class Alerts;
class DocumentController;
class RunLoop;
}  // namespace velmora::platform

namespace velmora {

/// What happens when the viewer tells of a study that the user has chosen: the front document is filled with
/// the patient's data or, for a patient with a data file, that file is opened in its place and gets a new
/// examination.
class VELMORA_EXPORT LinkReceiver : public QObject {
 public:
  LinkReceiver(platform::DocumentController& controller, platform::RunLoop& runLoop, platform::Alerts& alerts)
      : controller_(controller), runLoop_(runLoop), alerts_(alerts) {}

  /// The observer of link requests. May be called on any thread: it only hands over to the main thread, and
  /// of the request only what is its own. Requests wait as long as the program asks a question; one of absurd
  /// length, and those beyond MostWaiting or MostBytesWaiting, are refused with a log line.
  void notifiedOfLinkFromOsirix(const platform::Notification& notification);
  /// Handles one request. Throws "Value==nil" for one without identifier, std::length_error for one whose
  /// identifier or name is of absurd length, and std::out_of_range when no document is open; then nothing is
  /// changed.
  void doLinkFromOsirix(const platform::Notification& notification);
  /// Adds the examination to the file that the look-up has opened meanwhile. That is the front document;
  /// should another window have come forward, it is still the record of that file that gets it. When there is
  /// none, or its identifier is not the one asked for, nothing is touched: an examination never goes into
  /// another patient's record.
  void deferredNewRecord(const platform::Notification& notification);

  static constexpr int MostWaiting = 20000;
  static constexpr qsizetype MostBytesWaiting = 16 * 1024 * 1024;
  /// Of one request, in bytes.
  static constexpr qsizetype LongestRequest = 64 * 1024;

 private:
  bool mayWait(qsizetype bytes);
  void hasWaited(qsizetype bytes);
  VelmoraDocument* frontDocument() const;
  VelmoraDocument* recordOf(const QString& identifier) const;

  platform::DocumentController& controller_;
  platform::RunLoop& runLoop_;
  platform::Alerts& alerts_;
  std::mutex mutex_;  // over what follows
  int waiting_ = 0;
  qsizetype bytesWaiting_ = 0;
  bool refusing_ = false;  // and the log says so
};

}  // namespace velmora
