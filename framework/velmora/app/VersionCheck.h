// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QObject>
#include <QString>
#include <functional>

#include "base/Export.h"

class OrvVersion;

namespace velmora::platform {
class NotificationCenter;
class RunLoop;
class UserDefaults;
}  // namespace velmora::platform

namespace velmora {

/// Whether the last check lies further from now than that many days, to either side: a date in the future,
/// from a clock that was set back, counts by its distance too. Exactly that many days are not further.
VELMORA_EXPORT bool versionCheckIsDue(qint64 intervalInDays, const QDateTime& lastCheck,
                                      const QDateTime& now);

/// Decides when to look for a newer version, reports in the status line how it goes, and keeps the date of
/// the last success. Nothing is asked of the web before the user has agreed to automatic checks or calls for
/// one.
class VELMORA_EXPORT VersionCheck : public QObject {
 public:
  using ShowStatus = std::function<void(const QString&)>;

  /// `updateVersionLastChecked` brings the preferences window up to date, where there is one.
  VersionCheck(platform::UserDefaults& defaults, platform::NotificationCenter& notificationCenter,
               const platform::RunLoop& clock, OrvVersion& orvVersion, ShowStatus showStatus,
               std::function<void()> updateVersionLastChecked);

  /// Checks when "Automatic Version Check" is on and "Version Check Interval" has passed since the last
  /// success. Run once at every start: a check that failed leaves the date alone, so the next start tries
  /// again.
  void autoCheckForNewVersion();
  /// Starts a check, an automatic one or one that the user asked for. Each call registers once more for the
  /// result, so after k calls each result is handled k times.
  void doCheckForNewVersion(bool automatic);
  void versionCheckSuccessful();
  void versionCheckUnsuccessful();
  /// Hears of no more results. For the end of the application.
  void stop();

 private:
  platform::UserDefaults& defaults_;
  platform::NotificationCenter& notificationCenter_;
  const platform::RunLoop& clock_;
  OrvVersion& orvVersion_;
  ShowStatus showStatus_;
  std::function<void()> updateVersionLastChecked_;
};

}  // namespace velmora
