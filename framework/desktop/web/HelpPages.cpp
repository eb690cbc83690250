// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/web/HelpPages.h"

#include <QFileInfo>
#include <QLocale>
#include <QUrl>

#include "platform/controls/Alert.h"
#include "platform/text/Localization.h"
#include "platform/workspace/Workspace.h"

namespace velmora::desktop {

namespace {

void tell(platform::Alerts& alerts, const QString& message, const QString& details) {
  alerts.runModal({message, platform::localizedString("OrvVersion", "OK"), QString(), QString(), details});
}

}  // namespace

std::optional<QString> helpPage(const QString& folder, const QStringList& languages) {
  QStringList candidates;
  for (QString language : languages) {
    language.replace(QLatin1Char('_'), QLatin1Char('-'));
    // "de-Latn-AT" is served by "de-Latn" and by "de", in this order.
    for (; !language.isEmpty(); language = language.section(QLatin1Char('-'), 0, -2)) {
      candidates.append(language);
      if (!language.contains(QLatin1Char('-'))) break;
    }
  }
  candidates.append(QStringLiteral("en"));
  for (const QString& language : candidates) {
    const QString page = folder + QLatin1Char('/') + language + QStringLiteral("/index.html");
    if (QFileInfo(page).isFile()) return page;
  }
  return std::nullopt;
}

void showHelp(const QString& folder, platform::Workspace& workspace, platform::Alerts& alerts) {
  const std::optional<QString> page = helpPage(folder, QLocale().uiLanguages());
  if (!page) {
    tell(alerts, platform::localizedString("Document", "The help is not installed."),
         platform::formatted(platform::localizedString("Document", "It was looked for in the folder %@."),
                             {folder}));
  } else if (!workspace.openURL(QUrl::fromLocalFile(*page))) {
    tell(
        alerts, platform::localizedString("Document", "The help could not be shown."),
        platform::formatted(platform::localizedString("Document", "No program opens the page %@."), {*page}));
  }
}

}  // namespace velmora::desktop
