// SPDX-License-Identifier: LGPL-3.0-or-later
#include "orv/updates/OrvVersion.h"

#include <QUrl>
#include <compare>
#include <utility>

#include "orv/updates/OrvAppcast.h"
#include "orv/updates/OrvVersionNumber.h"
#include "platform/Services.h"
#include "platform/bundles/Bundle.h"
#include "platform/controls/Alert.h"
#include "platform/notifications/NotificationCenter.h"
#include "platform/runloop/RunLoop.h"
#include "platform/text/Localization.h"
#include "platform/workspace/Web.h"
#include "platform/workspace/Workspace.h"

using namespace velmora;

using velmora::platform::formatted;
using velmora::platform::localizedString;

namespace {
constexpr double Timeout = 30.0;             // seconds
constexpr qint64 LargestFeed = 1024 * 1024;  // bytes
}  // namespace

QString OrvVersion::info(const char* key) const {
  return services_.mainBundle.stringForInfoDictionaryKey(QString::fromLatin1(key));
}

QString OrvVersion::applicationName() const { return info("CFBundleName"); }

void OrvVersion::checkVersion(bool userAsked) {
  userAsked_ = userAsked_ || userAsked;
  if (checking_) return;
  checking_ = true;
  const QString address = info("SUFeedURL").trimmed();
  if (address.isEmpty()) {
    services_.runLoop.performAfterDelay(this, 0, [this] {
      fail(localizedString("OrvVersion", "This application does not say where to look for new versions."));
    });
    return;
  }
  services_.web.load(QUrl(address), Timeout, LargestFeed, this,
                     [this](const platform::WebAnswer& answer) { didLoad(answer); });
}

void OrvVersion::didLoad(const base::Result<QByteArray>& page) {
  if (!page.ok()) return fail(page.error());
  const auto newest = orv::readAppcast(*page);
  if (!newest.ok()) return fail(newest.error());
  succeed(*newest && isNewer(**newest) ? &**newest : nullptr);
}

bool OrvVersion::isNewer(const orv::AppcastItem& item) const {
  if (!item.version.isEmpty()) return orv::compareVersions(item.version, info("CFBundleVersion")) > 0;
  return orv::compareVersions(item.shortVersion, info("CFBundleShortVersionString")) > 0;
}

bool OrvVersion::end(const QString& notification) {
  checking_ = false;
  const bool asked = std::exchange(userAsked_, false);
  services_.notificationCenter.postNotificationName(notification);
  return asked;
}

// The notification goes out first: the status line and the date of the check must not wait until somebody has
// answered the alert.

void OrvVersion::succeed(const orv::AppcastItem* newer) {
  const bool asked = end(CheckSuccessful);
  if (newer) return offer(*newer);
  if (!asked) return;
  tell(formatted(localizedString("OrvVersion", "%@ is up to date"), {applicationName()}),
       formatted(localizedString("OrvVersion", "Version %@ is the newest one."),
                 {info("CFBundleShortVersionString")}));
}

void OrvVersion::fail(const QString& reason) {
  if (end(CheckUnsuccessful))
    tell(localizedString("OrvVersion", "The check for a new version failed"), reason);
}

void OrvVersion::offer(const orv::AppcastItem& item) {
  QString offered = item.shownVersion();
  QString installed = info("CFBundleShortVersionString");
  if (offered == installed && !item.version.isEmpty()) {
    // A new build of the same version: without its number the alert would offer what is there already.
    offered = formatted(QStringLiteral("%@ (%@)"), {offered, item.version});
    installed = formatted(QStringLiteral("%@ (%@)"), {installed, info("CFBundleVersion")});
  }
  QString details = formatted(localizedString("OrvVersion", "Version %@ is available. You have version %@."),
                              {offered, installed});
  if (!item.whatIsNew.isEmpty()) details += QStringLiteral("\n\n") + item.whatIsNew;
  const QString message =
      formatted(localizedString("OrvVersion", "A new version of %@ is available"), {applicationName()});
  if (item.page.isEmpty()) return tell(message, details);

  const int answer =
      services_.alerts.runModal({message, localizedString("OrvVersion", "Download"),
                                 localizedString("OrvVersion", "Later"), QStringLiteral(""), details});
  if (answer != platform::AlertDefaultReturn || services_.workspace.openURL(item.page)) return;
  tell(localizedString("OrvVersion", "The page could not be opened"), item.page.toString());
}

void OrvVersion::tell(const QString& message, const QString& details) {
  services_.alerts.runModal(
      {message, localizedString("OrvVersion", "OK"), QStringLiteral(""), QStringLiteral(""), details});
}
