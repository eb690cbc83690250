// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>

#include "base/Export.h"

/// Files of a test, by short names. What cannot be done throws std::runtime_error with the system's reason.
namespace velmora::testkit {

/// Puts bytes into a file, in place of what it held, and makes the folders that it stands in.
VELMORA_EXPORT void writeFile(const QString& path, const QByteArray& contents);
/// The bytes of a file; a null array when it cannot be read.
VELMORA_EXPORT QByteArray readFile(const QString& path);

/// The names of the files in a folder, sorted; of hidden ones, too.
VELMORA_EXPORT QStringList fileNames(const QString& folder);
/// Everything below a folder that is no folder, as sorted paths relative to it.
VELMORA_EXPORT QStringList filesBelow(const QString& folder);

/// The permission bits of a file, as in 0644; 0 when there is none.
VELMORA_EXPORT unsigned permissionsOf(const QString& path);
/// Sets when a file was last modified.
VELMORA_EXPORT void setModified(const QString& path, const QDateTime& time);

}  // namespace velmora::testkit
