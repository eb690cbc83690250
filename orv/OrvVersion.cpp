// SPDX-License-Identifier: LGPL-3.0-or-later
#include "orv/OrvVersion.h"

#include "platform/Bundle.h"
#include "platform/NotificationCenter.h"
#include "platform/RunLoop.h"
#include "platform/Services.h"

QString OrvVersion::applicationName() const {
  return services_.mainBundle.stringForInfoDictionaryKey(QStringLiteral("CFBundleName"));
}

void OrvVersion::checkVersion(bool) {
  services_.runLoop.performAfterDelay(this, 0, [this] {
    services_.notificationCenter.postNotificationName(QStringLiteral("VersionCheckUnsuccessful"));
  });
}
