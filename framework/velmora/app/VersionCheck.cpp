// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/app/VersionCheck.h"

#include <cmath>
#include <utility>

#include "orv/updates/OrvVersion.h"
#include "platform/Services.h"
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

VersionCheck::VersionCheck(platform::Services& services, OrvVersion& orvVersion, ShowStatus showStatus,
                           std::function<void()> updateVersionLastChecked)
    : services_(services),
      orvVersion_(orvVersion),
      showStatus_(std::move(showStatus)),
      updateVersionLastChecked_(std::move(updateVersionLastChecked)) {}

void VersionCheck::autoCheckForNewVersion() {
  const platform::UserDefaults& defaults = services_.defaults;
  const qint64 interval = defaults.integerForKey(settings::VersionCheckInterval);
  if (!defaults.boolForKey(settings::AutomaticVersionCheck)) return;
  if (versionCheckIsDue(interval, defaults.dateForKey(settings::LastVersionCheckDate),
                        services_.runLoop.now())) {
    doCheckForNewVersion(true);
  }
}

void VersionCheck::doCheckForNewVersion(bool automatic) {
  platform::NotificationCenter& center = services_.notificationCenter;
  center.addObserver(this, OrvVersion::CheckSuccessful,
                     [this](const platform::Notification&) { versionCheckSuccessful(); });
  center.addObserver(this, OrvVersion::CheckUnsuccessful,
                     [this](const platform::Notification&) { versionCheckUnsuccessful(); });
  if (automatic) showStatus_(localizedString("VelmoraAppController", "Checking for new version..."));
  orvVersion_.checkVersion(!automatic);
}

void VersionCheck::versionCheckSuccessful() {
  showStatus_(localizedString("VelmoraAppController", "Version check successful..."));
  services_.defaults.setObject(services_.runLoop.now(), settings::LastVersionCheckDate);
  updateVersionLastChecked_();
}

void VersionCheck::versionCheckUnsuccessful() {
  showStatus_(localizedString("VelmoraAppController", "Version check unsuccessful..."));
}

void VersionCheck::stop() { services_.notificationCenter.removeObserver(this); }

}  // namespace velmora
