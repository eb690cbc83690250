// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Copying files and folders so that a copy is there whole or not at all.
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <cstdio>
#include <filesystem>

#include "base/SystemError.h"
#include "base/files/FileManager.h"
#include "base/files/TemporaryFile.h"

namespace velmora::base {

namespace {

/// Gives a copy the rights of its original. Asked of the system itself: QFile::permissions() adds what the
/// user of this moment may do, which for a superuser is everything. File systems without rights refuse this,
/// and lose nothing by it.
void copyRights(const QString& source, const QString& destination) {
  struct stat status {};
  if (::stat(QFile::encodeName(source).constData(), &status) == 0)
    ::chmod(QFile::encodeName(destination).constData(), status.st_mode & 0777);
}

/// The bytes of `source` on the disk itself, or why they are not there.
Result<> copyBytes(QFile& source, QFile& destination) {
  constexpr qint64 Portion = 1024 * 1024;
  while (!source.atEnd()) {
    const QByteArray bytes = source.read(Portion);
    if (bytes.isEmpty()) return Failure{source.errorString()};
    const Result<> written = writeAll(destination.handle(), bytes);
    if (!written.ok()) return written;
  }
  return ::fsync(destination.handle()) == 0 ? Result<>() : Failure{systemError()};
}

/// Copies a file with its rights.
Result<> copyFile(const QString& source, const QString& destination) {
  QFile from(source);
  if (!from.open(QIODevice::ReadOnly)) return Failure{from.errorString()};
  QFile to(destination);
  if (!to.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered)) {
    return Failure{to.errorString()};
  }
  const Result<> copied = copyBytes(from, to);
  if (copied.ok()) copyRights(source, destination);
  return copied;
}

/// Copies a file or a link.
Result<> copyOne(const QString& source, const QString& destination) {
  const QFileInfo item(source);
  if (item.isSymLink()) {
    // As it stands: a relative link inside a bundle leads inside the copy, not back to the original.
    std::error_code failed;
    std::filesystem::copy_symlink(QFile::encodeName(source).constData(),
                                  QFile::encodeName(destination).constData(), failed);
    return failed ? Failure{QStringLiteral("The link '%1' could not be copied.").arg(source)} : Result<>();
  }
  if (!item.exists()) return Failure{QStringLiteral("'%1' does not exist.").arg(source)};
  // A named pipe or a device would hang the reader.
  if (!item.isFile()) return Failure{QStringLiteral("'%1' is not a file.").arg(source)};
  return copyFile(source, destination);
}

QStringList namesIn(const QString& folder) {
  return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

/// Copies all that is in a folder into one that is there. Folders can be written into until the end, whatever
/// the rights of the original.
Result<> copyContents(const QString& source, const QString& destination) {
  if (!QFileInfo(source).isReadable())
    return Failure{QStringLiteral("The folder '%1' cannot be read.").arg(source)};
  for (const QString& name : namesIn(source)) {
    const QString from = source + QLatin1Char('/') + name;
    const QString to = destination + QLatin1Char('/') + name;
    const QFileInfo item(from);
    Result<> result;
    if (item.isSymLink() || !item.isDir()) {
      result = copyOne(from, to);
    } else if (QDir().mkdir(to)) {
      result = copyContents(from, to);
    } else {
      result = Failure{QStringLiteral("The folder '%1' could not be created.").arg(to)};
    }
    if (!result.ok()) return result;
  }
  return {};
}

/// Gives the folders of a copy the rights of the original, inner ones first.
void copyRightsOfFolders(const QString& source, const QString& destination) {
  for (const QString& name : namesIn(source)) {
    const QFileInfo item(source + QLatin1Char('/') + name);
    if (item.isDir() && !item.isSymLink()) {
      copyRightsOfFolders(item.filePath(), destination + QLatin1Char('/') + name);
    }
  }
  copyRights(source, destination);
}

}  // namespace

Result<> FileManager::copyItem(const QString& source, const QString& destination) {
  if (QFileInfo(destination).isSymLink() || QFileInfo::exists(destination)) {
    return Failure{QStringLiteral("'%1' exists already.").arg(destination)};
  }
  const QFileInfo item(source);
  const bool isFolder = item.isDir() && !item.isSymLink();
  if (isFolder && (destination + QLatin1Char('/')).startsWith(source + QLatin1Char('/'))) {
    return Failure{QStringLiteral("'%1' cannot be copied into itself.").arg(source)};
  }
  // Under another name until all of it is there: a copy that was cut off must not look like a whole one.
  QTemporaryDir unfinished(QFileInfo(destination).path() + QStringLiteral("/.unfinished-XXXXXX"));
  if (!unfinished.isValid()) {
    return Failure{QStringLiteral("The folder '%1' could not be created.").arg(destination)};
  }
  const QString copy = unfinished.filePath(QStringLiteral("copy"));
  Result<> result = !isFolder            ? copyOne(source, copy)
                    : QDir().mkdir(copy) ? copyContents(source, copy)
                                         : Failure{systemError()};
  if (result.ok() &&
      std::rename(QFile::encodeName(copy).constData(), QFile::encodeName(destination).constData()) != 0) {
    result = Failure{systemError()};
  }
  if (result.ok() && isFolder) copyRightsOfFolders(source, destination);
  return result;
}

}  // namespace velmora::base
