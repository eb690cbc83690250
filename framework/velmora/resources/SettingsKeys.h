// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>

/// The keys of the settings store. Every reader asks the store at the moment of use.
namespace velmora::settings {

/// Folder path, tilde form: where data files are kept (the "database"). Registered: "~/Desktop/".
inline const QString SaveDirectory = QStringLiteral("Save Directory");
/// Folder path, tilde form: where chart images go when they do not go to OsiriX. Registered: "~/Desktop/".
inline const QString ExportDirectory = QStringLiteral("Export Directory");
/// Boolean: data files are kept automatically in the save folder; cache and look-up run only then.
/// Registered: false.
inline const QString AutoSave = QStringLiteral("Auto Save");
/// Boolean: charts go to OsiriX instead of the export folder. Registered: false.
inline const QString ExportToOsiriX = QStringLiteral("Export to OsiriX");
/// Script source: run once at every start when not empty. Registered: "".
inline const QString LaunchScript = QStringLiteral("Launch Script");
/// Boolean: look for a new version at start. Registered: false.
inline const QString AutomaticVersionCheck = QStringLiteral("Automatic Version Check");
/// Integer, days between automatic checks; 0 until the first-run questions have been asked. Registered: 0.
inline const QString VersionCheckInterval = QStringLiteral("Version Check Interval");
/// Date: when the last successful check ended; the distant past means never, and is registered.
inline const QString LastVersionCheckDate = QStringLiteral("Last Version Check Date");
/// String: the extension of the application's data files, without the dot. Registered by each application.
inline const QString DataFileExtension = QStringLiteral("DataFile Extension");
/// Boolean: the menu of recent documents is kept. Not registered: false, because their names are patients'
/// identifiers, and whoever looks at the menu reads them.
inline const QString RememberRecentDocuments = QStringLiteral("Remember Recent Documents");
/// String: the paths of the recent documents as a JSON array, newest first. Not registered: none.
inline const QString RecentDocuments = QStringLiteral("Recent Documents");
/// Integer: how many days back the batch export reaches. Registered with the batch-export window: the text
/// "7".
inline const QString BatchExportDays = QStringLiteral("Batch Export Days");
/// Boolean: erase the chart images in the export folder before a batch export. Registered with the
/// batch-export window: false.
inline const QString AutoDelete = QStringLiteral("Auto Delete");

}  // namespace velmora::settings
