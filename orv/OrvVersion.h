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
  /// Ends a version check with "VersionCheckSuccessful" or "VersionCheckUnsuccessful" on the local
  /// notification centre, never before this call has returned. There is nowhere to ask for newer versions
  /// yet, so every check is unsuccessful. `userAsked` tells a check that somebody waits for from an automatic
  /// one.
  void checkVersion(bool userAsked);

 private:
  platform::Services& services_;
};
