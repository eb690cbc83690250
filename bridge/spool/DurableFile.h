// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

namespace bridge {

/// Makes a folder that is for its owner only, or makes an existing one so. A null string, or why that failed.
QString makePrivateFolder(const QString& path);

/// Puts a whole file in its place, replacing what is there, or changes nothing: a temporary file beside it,
/// fsync, one rename, fsync of the folder. It is for its owner only, whatever the umask. A null string, or
/// why that failed; then the file counts as not written, although it may be there in whole.
QString writeDurably(const QString& path, const QByteArray& contents);

/// Whether a file of this name is what a killed writeDurably() leaves.
bool isStray(const QString& name);

/// The beginning of a file, at most so many bytes; nothing when it cannot be read, with the reason in words.
std::optional<QByteArray> readBeginning(const QString& path, qint64 most, QString& reason);

/// A file's contents under a line with their kind and SHA-256.
QByteArray sealed(const QByteArray& kind, const QByteArray& contents);
/// The contents again; nothing when they are not those that were sealed, or are of another kind.
std::optional<QByteArray> unsealed(const QByteArray& kind, const QByteArray& file);

}  // namespace bridge
