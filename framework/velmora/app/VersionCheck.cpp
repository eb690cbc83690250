// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/app/VersionCheck.h"

#include <cmath>
#include <utility>

#include "orv/updates/OrvVersion.h"
#include "platform/notifications/NotificationCenter.h"
#include "platform/runloop/RunLoop.h"
#include "platform/settings/UserDefaults.h"
#include "platform/text/Localization.h"
#include "velmora/resources/SettingsKeys.h"

using velmora::platform::localizedString;

namespace velmora {

namespace {
constexpr quint64 SecondsInADay = 86400;
}

bool versionCheckIsDue(qint64 intervalInDays, const QDateTime& lastCheck, const QDateTime& now) {
  const double distance = std::abs(static_cast<double>(lastCheck.msecsTo(now)) / 1000.0);
  // Multiplied without a sign, where an absurd interval from a settings file wraps around instead of being
  // undefined.
  const auto limit = static_cast<qint64>(static_cast<quint64>(intervalInDays) * SecondsInADay);
  return distance > static_cast<double>(limit);
}

VersionCheck::VersionCheck(platform::UserDefaults& defaults, platform::NotificationCenter& notificationCenter,
                           const platform::RunLoop& clock, OrvVersion& orvVersion, ShowStatus showStatus,
                           std::function<void()> updateVersionLastChecked)
    : defaults_(defaults),
      notificationCenter_(notificationCenter),
      clock_(clock),
      orvVersion_(orvVersion),
      showStatus_(std::move(showStatus)),
      updateVersionLastChecked_(std::move(updateVersionLastChecked)) {}

void VersionCheck::autoCheckForNewVersion() {
  const qint64 interval = defaults_.integerForKey(settings::VersionCheckInterval);
  if (!defaults_.boolForKey(settings::AutomaticVersionCheck)) return;
  if (versionCheckIsDue(interval, defaults_.dateForKey(settings::LastVersionCheckDate), clock_.now())) {
    doCheckForNewVersion(true);
  }
}

void VersionCheck::doCheckForNewVersion(bool automatic) {
  notificationCenter_.addObserver(this, OrvVersion::CheckSuccessful,
                                  [this](const platform::Notification&) { versionCheckSuccessful(); });
  notificationCenter_.addObserver(this, OrvVersion::CheckUnsuccessful,
                                  [this](const platform::Notification&) { versionCheckUnsuccessful(); });
  if (automatic) showStatus_(localizedString("VelmoraAppController", "Checking for new version..."));
  orvVersion_.checkVersion(!automatic);
}

void VersionCheck::versionCheckSuccessful() {
  showStatus_(localizedString("VelmoraAppController", "Version check successful..."));
  defaults_.setObject(clock_.now(), settings::LastVersionCheckDate);
  updateVersionLastChecked_();
}

void VersionCheck::versionCheckUnsuccessful() {
  showStatus_(localizedString("VelmoraAppController", "Version check unsuccessful..."));
}

void VersionCheck::stop() { notificationCenter_.removeObserver(this); }

}  // namespace velmora
