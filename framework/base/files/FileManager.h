// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>
#include <chrono>
#include <functional>

#include "base/Export.h"
#include "base/Result.h"

namespace velmora::base {

/// The files of this machine. Virtual so that a test can make one operation fail.
class VELMORA_EXPORT FileManager {
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

  /// Makes a folder and those above it that are missing, on the disk itself. One that is there is no failure.
  virtual Result<> createDirectory(const QString& path);
  /// Makes a folder that only the user may enter, and missing parents likewise, on the disk itself. An
  /// existing folder is closed to others. The process's umask does not matter.
  virtual Result<> createPrivateDirectory(const QString& path);
  /// Removes a file, a link (not what it leads to), or a folder with all that is in it. A folder that cannot
  /// be taken out of its place stays whole.
  virtual Result<> removeItem(const QString& path);
  /// Copies a file, or a folder with all that is in it: links as links, everything with its rights. Fails
  /// when something stands at `destination`; after a failure nothing does.
  virtual Result<> copyItem(const QString& source, const QString& destination);

  /// Reads a regular file whole, refusing anything above `limit` bytes.
  virtual Result<QByteArray> readFile(const QString& path, qint64 limit = 256LL * 1024 * 1024) const;
  /// Called when the new contents are on the disk under a temporary name, right before they replace what
  /// stands at the target: the last chance to see whether that is still what it was. A failure cancels the
  /// write.
  using FinalCheck = std::function<Result<>()>;
  /// Replaces the file at `path` in one step: at any moment it holds either the old or the new contents, and
  /// on success the new ones are on the disk itself. After a failure it holds the old ones, unless only the
  /// last synchronization or the check of what was written failed.
  ///
  /// A link is followed. A file that is protected from writing is not replaced, nor is anything but a file. A
  /// replaced file keeps its rights, group and access list; if the user cannot give the new one to that
  /// group, its group may do no more than everybody. With a final check, a file that appears meanwhile where
  /// there was none is not replaced before another check.
  virtual Result<> writeDurably(const QString& path, const QByteArray& contents,
                                const FinalCheck& check = {});
  /// Does the same for a file of the program's own: replaces whatever stands there, a link included, by a
  /// file that only the user may read and write, whatever the process's umask.
  virtual Result<> writePrivately(const QString& path, const QByteArray& contents);

  enum class Depth { Folder, Everything };
  /// The age at which a temporary file counts as abandoned.
  static constexpr int AbandonedAfterMinutes = 10;
  /// Stands for every extension.
  inline static const QStringList AnyExtension{QStringLiteral("*")};
  /// Removes the temporary files that interrupted writes (a power cut, a kill) left in the folder, or
  /// anywhere below it: ".<16 hexadecimal digits>.<extension>.unfinished" for one of these extensions, or
  /// without an extension. Keeps a file that a process on this machine is still writing, and files younger
  /// than `age`, which a process on another machine may be writing, since locks may not reach that far. Use 0
  /// for a folder that no other machine writes into.
  virtual void removeAbandonedFiles(const QString& folder, const QStringList& extensions,
                                    Depth depth = Depth::Folder,
                                    std::chrono::minutes age = std::chrono::minutes(AbandonedAfterMinutes));
};

/// "~" and "~/…" with the home folder in place of the tilde; a slash at the end is dropped.
VELMORA_EXPORT QString expandingTildeInPath(const QString& path);
/// The home folder at the beginning replaced by "~".
VELMORA_EXPORT QString abbreviatingWithTildeInPath(const QString& path);
/// What follows the last dot of the last component; empty for ".name" and for a name without a dot.
VELMORA_EXPORT QString pathExtension(const QString& path);
/// The path without that extension and its dot.
VELMORA_EXPORT QString deletingPathExtension(const QString& path);
/// The path, a dot and the extension; the path alone when there is no extension.
VELMORA_EXPORT QString appendingPathExtension(const QString& path, const QString& extension);

}  // namespace velmora::base
