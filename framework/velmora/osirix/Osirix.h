// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>

#include "platform/workspace/Workspace.h"

/// OsiriX, the viewer at the other end of the link.
namespace velmora::osirix {

/// The bundle identifier under which the desktop knows the viewer.
inline const QString BundleIdentifier = QStringLiteral("com.rossetantoine.osirix");
/// Where the viewer can be had.
inline const QString DownloadPage = QStringLiteral("https://www.osirix-viewer.com");

/// Whether the viewer is on this machine.
inline bool isInstalled(const platform::Workspace& workspace) {
  return workspace.absolutePathForAppBundleWithIdentifier(BundleIdentifier).has_value();
}

}  // namespace velmora::osirix
