// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

#include "base/Result.h"

namespace bridge {

/// Puts a whole file of the spool in its place, replacing what is there, or changes nothing. It is for its
/// owner only. After a failure the file counts as not written, although it may be there in whole.
velmora::base::Result<> writeSpoolFile(const QString& path, const QByteArray& contents);

/// Reads the beginning of a file, at most so many bytes; returns nothing when there is no such file. Links
/// are not followed.
velmora::base::Result<std::optional<QByteArray>> readBeginning(const QString& path, qint64 most);

/// A file's contents under a line with their kind and SHA-256.
QByteArray sealed(const QByteArray& kind, const QByteArray& contents);
/// The contents again; nothing when they are not those that were sealed, or are of another kind.
std::optional<QByteArray> unsealed(const QByteArray& kind, const QByteArray& file);

}  // namespace bridge
