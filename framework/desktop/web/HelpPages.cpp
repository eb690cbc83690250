// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/web/HelpPages.h"

#include <QFileInfo>
#include <QLocale>
#include <QUrl>

#include "platform/controls/Alert.h"
#include "platform/text/Localization.h"
#include "platform/workspace/Workspace.h"

namespace platform::qt {

namespace {

void tell(Alerts& alerts, const QString& message, const QString& details) {
  alerts.runModal({message, localizedString("OrvVersion", "OK"), QString(), QString(), details});
}

}  // namespace

QString helpPage(const QString& folder, const QStringList& languages) {
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
  return {};
}

void showHelp(const QString& folder, Workspace& workspace, Alerts& alerts) {
  const QString page = helpPage(folder, QLocale().uiLanguages());
  if (page.isNull()) {
    tell(alerts, localizedString("Document", "The help is not installed."),
         formatted(localizedString("Document", "It was looked for in the folder %@."), {folder}));
  } else if (!workspace.openURL(QUrl::fromLocalFile(page))) {
    tell(alerts, localizedString("Document", "The help could not be shown."),
         formatted(localizedString("Document", "No program opens the page %@."), {page}));
  }
}

}  // namespace platform::qt
