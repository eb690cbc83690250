// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>
#include <chrono>
#include <functional>

#include "base/Result.h"

namespace velmora::base {

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

  /// Makes a folder and those above it that are missing, on the disk itself. One that is there is no failure.
  virtual Result<> createDirectory(const QString& path);
  /// Makes a folder for the user alone, and those above it that are missing likewise, on the disk itself; one
  /// that is there is made so. The process's mask does not matter.
  virtual Result<> createPrivateDirectory(const QString& path);
  /// Removes a file, a link (not what it leads to), or a folder with all that is in it. A folder that cannot
  /// be taken out of its place stays whole.
  virtual Result<> removeItem(const QString& path);
  /// Copies a file, or a folder with all that is in it: links as links, everything with its rights. Fails
  /// when something stands at `destination`; after a failure nothing does.
  virtual Result<> copyItem(const QString& source, const QString& destination);

  /// Reads a regular file whole, refusing anything above `limit` bytes.
  virtual Result<QByteArray> readFile(const QString& path, qint64 limit = 256LL * 1024 * 1024) const;
  /// Called when a new file is on the disk under another name, right before it takes the place of what stands
  /// at its own: the moment to see whether that is still what it was. A failure gives the write up.
  using FinalCheck = std::function<Result<>()>;
  /// Puts `contents` at `path` so that the file there is at any moment the old or the new one, whole, and is
  /// the new one, on the disk itself, when this returns success. After a failure it is the old one, unless
  /// the failure came when the new one was in place and could only not be vouched for. A link is followed; a
  /// protected file, and what is no file, are not replaced. Of a file that is replaced the rights, the group
  /// and the access list stay; in a group that the user may not give it to, the group may do no more than
  /// everybody. With a final check, what appears meanwhile where nothing stood is not replaced unseen: there
  /// is another check then.
  virtual Result<> writeDurably(const QString& path, const QByteArray& contents,
                                const FinalCheck& check = {});
  /// Does the same for a file that is the program's own: whatever stands there, a link as well, is replaced,
  /// and the file is for the user alone, whatever the process's mask.
  virtual Result<> writePrivately(const QString& path, const QByteArray& contents);

  enum class Depth { Folder, Everything };
  /// The age from which on a temporary file is taken for abandoned.
  static constexpr int AbandonedAfterMinutes = 10;
  /// In place of extensions: whatever the name of the file was to be.
  inline static const QStringList AnyExtension{QStringLiteral("*")};
  /// Removes what writes that were cut off by a power cut or a kill have left in the folder, or anywhere
  /// below it: temporary files of writeDurably and writePrivately, ".<16 hexadecimal
  /// digits>.<extension>.unfinished", for names with one of these extensions or with none. One that a living
  /// process of this machine is writing just now stays, and so do those younger than `age`: where locks hold
  /// on one machine only, another may be writing them. An age of 0 is for folders that no other machine
  /// writes into.
  virtual void removeAbandonedFiles(const QString& folder, const QStringList& extensions,
                                    Depth depth = Depth::Folder,
                                    std::chrono::minutes age = std::chrono::minutes(AbandonedAfterMinutes));
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

}  // namespace velmora::base
