// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Putting a file in place of another so that neither a full disk nor a power cut leaves anything in between.
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <cstring>

#include "base/files/FileManager.h"
#include "base/files/UnfinishedFile.h"

namespace velmora::base {

namespace {

QString systemError() { return QString::fromLocal8Bit(std::strerror(errno)); }

/// fsync of the names in a folder. Network file systems that cannot do that for a folder say so with these
/// codes, and have no weaker promise to give: the file's own data are on the disk by then.
Result<> synchronizeFolder(const QString& path) {
  const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return errno == EACCES ? Result<>() : Failure{systemError()};
  Result<> result;
  if (::fsync(descriptor) != 0 && errno != EINVAL && errno != ENOTSUP && errno != EROFS) {
    result = Failure{systemError()};
  }
  ::close(descriptor);
  return result;
}

/// What a link leads to, link after link, whether or not a file stands there; the path itself when it is no
/// link. A null string when the links go in a circle.
QString followed(QString path) {
  constexpr int MostLinks = 40;
  for (int i = 0; i < MostLinks; ++i) {
    const QFileInfo item(path);
    if (!item.isSymLink()) return path;
    path = item.symLinkTarget();
  }
  return {};
}

/// Gives the file its name, with a last look at what stands there. What appears meanwhile where nothing stood
/// is looked at too.
Result<> putInPlace(UnfinishedFile& file, const QByteArray& name, const FileManager::LastLook& lastLook) {
  using Placing = UnfinishedFile::Placing;
  struct stat standing {};
  Placing placing = Placing::Taken;
  if (lastLook) {
    const bool stands = ::lstat(name.constData(), &standing) == 0;
    const Result<> looked = lastLook();
    if (!looked.ok()) return looked;
    if (!stands) placing = file.placeWhereNothingStands();
    if (!stands && placing == Placing::Taken) {
      const Result<> lookedAgain = lastLook();
      if (!lookedAgain.ok()) return lookedAgain;
    }
  }
  if (placing == Placing::Taken) placing = file.replace();
  return placing == Placing::Done ? Result<>() : Failure{file.error()};
}

}  // namespace

Result<> FileManager::createDirectory(const QString& path) {
  QStringList parents;  // of the folders to be made
  for (QString folder = QDir::cleanPath(QFileInfo(path).absoluteFilePath()); !QFileInfo::exists(folder);) {
    folder = QFileInfo(folder).path();
    parents.append(folder);
  }
  if (!QDir().mkpath(path)) {
    return Failure{QStringLiteral("The folder '%1' could not be created.").arg(path)};
  }
  for (const QString& parent : parents) {
    const Result<> synchronized = synchronizeFolder(parent);
    if (!synchronized.ok()) return synchronized;
  }
  return {};
}

Result<> FileManager::writeDurably(const QString& path, const QByteArray& contents,
                                   const LastLook& lastLook) {
  // A name that the system would shorten or spell otherwise would be another file's.
  if (path.isEmpty() || path.contains(QChar(QChar::Null)) ||
      QFile::decodeName(QFile::encodeName(path)) != path) {
    return Failure{QStringLiteral("No file can have this name.")};
  }
  const QString target = followed(path);
  if (target.isNull()) return Failure{QString::fromLocal8Bit(std::strerror(ELOOP))};
  const QByteArray name = QFile::encodeName(target);
  struct stat standing {};
  const bool replaces = ::stat(name.constData(), &standing) == 0;
  if (replaces && !S_ISREG(standing.st_mode)) return Failure{QStringLiteral("It is not a file.")};
  // The folder's rights alone would allow the replacement of a file that is protected from writing.
  if (replaces && ::faccessat(AT_FDCWD, name.constData(), W_OK, AT_EACCESS) != 0) {
    return Failure{systemError()};
  }
  {
    UnfinishedFile file(target);
    if (!file.isOpen()) return Failure{file.error()};
    if (!file.write(contents)) return Failure{file.error()};
    const Result<> placed = putInPlace(file, name, lastLook);
    if (!placed.ok()) return placed;
  }
  const Result<> folder = synchronizeFolder(QFileInfo(target).absolutePath());
  if (!folder.ok()) return folder;
  QByteArray readBack;
  const Result<> read = readFile(target, readBack, contents.size() + 1);
  if (!read.ok()) return read;
  if (readBack != contents) return Failure{QStringLiteral("What was written does not read back the same.")};
  return {};
}

void FileManager::removeAbandonedFiles(const QString& folder, const QStringList& extensions, Depth depth) {
  const qint64 youngest = QDateTime::currentSecsSinceEpoch() - AbandonedAfterMinutes * 60;
  const auto consider = [&](const QString& relativePath) {
    QString extension;
    const bool temporary =
        UnfinishedFile::isNameOfOne(relativePath.section(QLatin1Char('/'), -1), &extension);
    if (!temporary || (!extension.isEmpty() && !extensions.contains(extension))) return;
    const QByteArray path = QFile::encodeName(folder + QLatin1Char('/') + relativePath);
    const int descriptor = ::open(path.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) return;
    struct stat status {};
    const bool abandoned = ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) &&
                           status.st_mtime <= youngest && ::flock(descriptor, LOCK_EX | LOCK_NB) == 0;
    if (abandoned) ::unlink(path.constData());
    ::close(descriptor);
  };
  if (depth == Depth::Folder) {
    for (const QString& name : contentsOfDirectoryAtPath(folder)) consider(name);
  } else if (!folder.isEmpty()) {
    enumeratorAtPath(folder, [&](const QString& relativePath) {
      consider(relativePath);
      return true;
    });
  }
}

}  // namespace velmora::base
