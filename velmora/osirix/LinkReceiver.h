// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QObject>

#include "platform/NotificationCenter.h"

class VelmoraDocument;

namespace platform {
class DocumentController;
struct Services;
}  // namespace platform

namespace velmora {

/// What happens when the viewer tells of a study that the user has chosen: the front document is filled with the
/// patient's data or, for a patient with a data file, that file is opened in its place and gets a new examination.
class LinkReceiver : public QObject {
 public:
  LinkReceiver(platform::Services& services, platform::DocumentController& controller);

  /// The observer of link requests. May be called on any thread: it only hands over to the main thread.
  void notifiedOfLinkFromOsirix(const platform::Notification& notification);
  /// Handles one request. Throws "Value==nil" for one without identifier, and std::out_of_range when no document is
  /// open; then nothing is changed.
  void doLinkFromOsirix(const platform::Notification& notification);
  /// Adds the examination to the file that the look-up has opened meanwhile. When the front document is not that
  /// patient's, because the file did not open or another window came forward, nothing is touched.
  void deferredNewRecord(const platform::Notification& notification);

 private:
  VelmoraDocument* frontDocument() const;

  platform::Services& services_;
  platform::DocumentController& controller_;
};

}  // namespace velmora
