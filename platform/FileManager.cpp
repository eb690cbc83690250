// SPDX-License-Identifier: LGPL-3.0-or-later
#include "platform/FileManager.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <cerrno>
#include <cstring>
#include <filesystem>

namespace platform {

namespace {

QString systemError() { return QString::fromLocal8Bit(std::strerror(errno)); }

/// fsync of a path's own data; for a folder, of the names in it.
FileResult synchronize(const QString& path, int flags) {
  const int descriptor = ::open(QFile::encodeName(path).constData(), flags | O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) return FileResult::failure(systemError());
  FileResult result;
  if (::fsync(descriptor) != 0) result = FileResult::failure(systemError());
  ::close(descriptor);
  return result;
}

}  // namespace

bool FileManager::fileExistsAtPath(const QString& path) const { return QFileInfo::exists(path); }

bool FileManager::isDirectory(const QString& path) const { return QFileInfo(path).isDir(); }

void FileManager::enumeratorAtPath(const QString& path, const std::function<bool(const QString&)>& visit) const {
  // Links are listed but not followed: a link to a folder above would otherwise never end.
  QDirIterator entries(path, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
  const qsizetype prefix = path.endsWith(QLatin1Char('/')) ? path.size() : path.size() + 1;
  while (entries.hasNext()) {
    if (!visit(entries.next().mid(prefix))) return;
  }
}

QStringList FileManager::contentsOfDirectoryAtPath(const QString& path) const {
  return QDir(path).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

QDateTime FileManager::modificationDate(const QString& path) const { return QFileInfo(path).lastModified(); }

FileResult FileManager::createDirectory(const QString& path) {
  if (QDir().mkpath(path)) return FileResult::success();
  return FileResult::failure(QStringLiteral("The folder '%1' could not be created.").arg(path));
}

FileResult FileManager::removeItem(const QString& path) {
  const QFileInfo item(path);
  if (item.isDir() && !item.isSymLink()) {
    if (QDir(path).removeRecursively()) return FileResult::success();
    return FileResult::failure(QStringLiteral("The folder '%1' could not be removed.").arg(path));
  }
  QFile file(path);
  return file.remove() ? FileResult::success() : FileResult::failure(file.errorString());
}

FileResult FileManager::copyItem(const QString& source, const QString& destination) {
  const QFileInfo item(source);
  if (QFileInfo(destination).isSymLink() || QFileInfo::exists(destination)) {
    return FileResult::failure(QStringLiteral("'%1' exists already.").arg(destination));
  }
  if (item.isSymLink()) {
    // As it stands: a relative link inside a bundle leads inside the copy, not back to the original.
    std::error_code failed;
    std::filesystem::copy_symlink(QFile::encodeName(source).constData(),
                                  QFile::encodeName(destination).constData(), failed);
    return failed ? FileResult::failure(QStringLiteral("The link '%1' could not be copied.").arg(source))
                  : FileResult::success();
  }
  if (!item.isDir()) {
    QFile file(source);
    return file.copy(destination) ? FileResult::success() : FileResult::failure(file.errorString());
  }
  if (!QDir().mkdir(destination)) {
    return FileResult::failure(QStringLiteral("The folder '%1' could not be created.").arg(destination));
  }
  for (const QString& name : contentsOfDirectoryAtPath(source)) {
    const FileResult copied = copyItem(source + QLatin1Char('/') + name, destination + QLatin1Char('/') + name);
    if (!copied.ok()) return copied;
  }
  return FileResult::success();
}

FileResult FileManager::readFile(const QString& path, QByteArray& contents, qint64 limit) const {
  // A named pipe or a device would hang the reader, so what it is gets asked first.
  struct stat status {};
  if (::stat(QFile::encodeName(path).constData(), &status) != 0) return FileResult::failure(systemError());
  if (!S_ISREG(status.st_mode)) return FileResult::failure(QStringLiteral("It is not a file."));
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return FileResult::failure(file.errorString());
  if (file.size() > limit) {
    return FileResult::failure(QStringLiteral("It is too large (%1 MB).").arg(file.size() / (1024 * 1024)));
  }
  contents = file.read(limit + 1);
  if (file.error() != QFileDevice::NoError) return FileResult::failure(file.errorString());
  if (contents.size() > limit) return FileResult::failure(QStringLiteral("It is too large."));
  return FileResult::success();
}

FileResult FileManager::writeDurably(const QString& path, const QByteArray& contents) {
  QSaveFile file(path);
  // Without this a read-only folder makes QSaveFile write over the old file in place.
  file.setDirectWriteFallback(false);
  if (!file.open(QIODevice::WriteOnly)) return FileResult::failure(file.errorString());
  const auto giveUp = [&file](const QString& reason) {
    file.cancelWriting();
    file.commit();  // after cancelWriting() this only removes the temporary file
    return FileResult::failure(reason);
  };
  // commit() alone reports success on a full disk: each of these is checked here.
  if (file.write(contents) != contents.size()) return giveUp(file.errorString());
  if (!file.flush()) return giveUp(file.errorString());
  if (::fsync(file.handle()) != 0) return giveUp(systemError());
  if (!file.commit()) return FileResult::failure(file.errorString());

  const FileResult folder = synchronize(QFileInfo(path).absolutePath(), O_DIRECTORY);
  if (!folder.ok()) return folder;
  QByteArray readBack;
  const FileResult read = readFile(path, readBack, contents.size() + 1);
  if (!read.ok()) return read;
  if (readBack != contents) return FileResult::failure(QStringLiteral("What was written does not read back the same."));
  return FileResult::success();
}

}  // namespace platform
