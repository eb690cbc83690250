// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDir>
#include <QFile>
#include <QString>

#include "platform/controls/Alert.h"
#include "testing/files/Files.h"
#include "testing/main/Shown.h"

/// Plugins on the disk, and what the user is told of them.
namespace plugin_testing {

inline const velmora::platform::Alert Succeeded{
    QStringLiteral("Installation Succeeded"),
    QStringLiteral("OK"),
    {},
    {},
    QStringLiteral("The plugin will be available the next time OsiriX is "
                   "launched.")};
inline const velmora::platform::Alert Failed{
    QStringLiteral("Installation Failed"), QStringLiteral("OK"), {}, {}, {}};
/// Where the viewer looks for plugins, below the home folder.
inline const QString ViewersFolder = QStringLiteral("Library/Application Support/OsiriX/Plugins");

/// The dictionary of a plugin of that version.
inline QByteArray dictionary(const QByteArray& version) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
         "<key>CFBundleIdentifier</key><string>org.velmora.link</string>"
         "<key>CFBundleVersion</key><string>" +
         version + "</string></dict></plist>\n";
}

/// Makes a plugin at `path`.
inline void makePlugin(const QString& path, const QByteArray& version) {
  velmora::testkit::writeFile(path + QStringLiteral("/Contents/Info.plist"), dictionary(version));
  velmora::testkit::writeFile(path + QStringLiteral("/Contents/MacOS/Link"),
                              "the program of version " + version);
}

}  // namespace plugin_testing
