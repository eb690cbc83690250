// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>
#include <functional>

namespace platform {

/// Success, or the reason for a failure in words that can be shown.
struct FileResult {
  QString error;
  bool ok() const { return error.isNull(); }
  static FileResult success() { return {}; }
  static FileResult failure(const QString& reason) {
    return {reason.isNull() ? QStringLiteral("unknown error") : reason};
  }
};

/// The files of this machine. Virtual so that a test can make one operation fail.
class FileManager {
 public:
  virtual ~FileManager() = default;

  /// True for files and folders alike; a dangling link does not exist.
  virtual bool fileExistsAtPath(const QString& path) const;
  virtual bool isDirectory(const QString& path) const;

  /// Every entry below the folder at any depth, hidden ones and folders included, as paths relative to it,
  /// until `visit` answers false. Symbolic links are listed, not followed. A folder that does not exist
  /// yields nothing.
  virtual void enumeratorAtPath(const QString& path, const std::function<bool(const QString&)>& visit) const;
  /// The names directly inside the folder, hidden ones included.
  virtual QStringList contentsOfDirectoryAtPath(const QString& path) const;
  /// When the item was last modified; invalid when that cannot be told.
  virtual QDateTime modificationDate(const QString& path) const;

  virtual FileResult createDirectory(const QString& path);
  virtual FileResult removeItem(const QString& path);
  /// Copies a file, or a folder with all that is in it. Fails when something stands at `destination`.
  virtual FileResult copyItem(const QString& source, const QString& destination);

  /// Reads a regular file whole, refusing anything above `limit` bytes.
  virtual FileResult readFile(const QString& path, QByteArray& contents,
                              qint64 limit = 256LL * 1024 * 1024) const;
  /// Puts `contents` at `path` so that the file there is at any moment the old or the new one, whole, and is
  /// the new one, on the disk itself, when this returns success. After a failure it is the old one, unless
  /// the failure came when the new one was in place and could only not be vouched for. A link is followed;
  /// the rights of a file that is replaced stay; a protected file, and what is no file, are not replaced.
  virtual FileResult writeDurably(const QString& path, const QByteArray& contents);
  /// Removes what writes that were cut off by a power cut or a kill have left in the folder: temporary files
  /// of writeDurably, ".<16 hexadecimal digits>.<extension>.unfinished", for names with one of these
  /// extensions. One that a living process is writing just now stays.
  virtual void removeAbandonedFiles(const QString& folder, const QStringList& extensions);
};

/// "~" and "~/…" with the home folder in place of the tilde; a slash at the end is dropped.
QString expandingTildeInPath(const QString& path);
/// The home folder at the beginning replaced by "~".
QString abbreviatingWithTildeInPath(const QString& path);
/// What follows the last dot of the last component; empty for ".name" and for a name without a dot.
QString pathExtension(const QString& path);
/// The path without that extension and its dot.
QString deletingPathExtension(const QString& path);
/// The path, a dot and the extension; the path alone when there is no extension.
QString appendingPathExtension(const QString& path, const QString& extension);

}  // namespace platform
