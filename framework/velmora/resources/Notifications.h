// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>

/// The local notifications with which the parts of an application ask each other for something.
namespace velmora::notifications {

/// A document hands a chart over for sending. Its object is the payload of the link reply.
inline const QString BatchExport = QStringLiteral("BatchExportToOsirix");
/// A data file is to be opened, exported and closed. Its object is the path.
inline const QString BatchOpen = QStringLiteral("BatchOpen");
/// The preferences window asks for the plugin to be installed. No object.
inline const QString InstallPlugin = QStringLiteral("Install Plugin");

}  // namespace velmora::notifications
