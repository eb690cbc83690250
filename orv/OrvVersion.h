// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>

namespace platform {
struct Services;
}

/// What is known of the application's version. One object serves the application; its owner hands it out.
class OrvVersion : public QObject {
 public:
  explicit OrvVersion(platform::Services& services) : services_(services) {}

  /// The application's name as people know it.
  QString applicationName() const;
  /// Looks for a newer version and, when that has ended, posts "VersionCheckSuccessful" or
  /// "VersionCheckUnsuccessful" on the local notification centre, never before this call has returned.
  /// `userAsked` tells a check that somebody waits for from an automatic one. Where the information
  /// dictionary names no address to ask, the check is unsuccessful.
  void checkVersion(bool userAsked);

 private:
  platform::Services& services_;
};
