// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

#include "base/Result.h"

namespace bridge {

/// Writes a whole file of the spool, readable by its owner only, in place of an earlier one, or changes
/// nothing. After a failure the file counts as not written, although all of it may be there.
velmora::base::Result<> writeSpoolFile(const QString& path, const QByteArray& contents);

/// Reads at most `most` bytes from the beginning of a file. Returns nothing when there is no such file. Does
/// not follow links.
velmora::base::Result<std::optional<QByteArray>> readBeginning(const QString& path, qint64 most);

/// The contents below a line with their kind and SHA-256.
QByteArray sealed(const QByteArray& kind, const QByteArray& contents);
/// The contents without that line. Returns nothing when they were changed or are of another kind.
std::optional<QByteArray> unsealed(const QByteArray& kind, const QByteArray& file);

}  // namespace bridge
