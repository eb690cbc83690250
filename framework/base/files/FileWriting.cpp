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
#include <functional>
#include <optional>

#include "base/SystemError.h"
#include "base/files/FileManager.h"
#include "base/files/TemporaryFile.h"

namespace velmora::base {

namespace {

constexpr mode_t UserOnly = S_IRWXU;

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
/// link. Nothing when the links go in a circle.
std::optional<QString> followed(QString path) {
  constexpr int MostLinks = 40;
  for (int i = 0; i < MostLinks; ++i) {
    const QFileInfo item(path);
    if (!item.isSymLink()) return path;
    path = item.symLinkTarget();
  }
  return std::nullopt;
}

/// Gives the file its name, with a last check of what stands there. What appears meanwhile where nothing
/// stood is checked too.
Result<> putInPlace(TemporaryFile& file, const QByteArray& name, const FileManager::FinalCheck& check) {
  if (!check) return file.replace();
  struct stat standing {};
  const bool stands = ::lstat(name.constData(), &standing) == 0;
  const Result<> checked = check();
  if (!checked) return checked;
  if (!stands) {
    const Result<bool> placed = file.placeWhereNothingStands();
    if (!placed) return placed.failure();
    if (*placed) return {};
    const Result<> checkedAgain = check();
    if (!checkedAgain) return checkedAgain;
  }
  return file.replace();
}

/// A name that the system would shorten or spell otherwise would be another file's.
bool canBeName(const QString& path) {
  return !path.isEmpty() && !path.contains(QChar(QChar::Null)) &&
         QFile::decodeName(QFile::encodeName(path)) == path;
}

/// Writes a new file, lets `place` give it its name, and makes sure that it is there.
Result<> writeAndPlace(const FileManager& files, const QString& path, const QByteArray& contents,
                       const std::function<Result<>(TemporaryFile&)>& place) {
  {
    TemporaryFile file(path);
    const Result<> written = file.write(contents);
    if (!written) return written;
    const Result<> placed = place(file);
    if (!placed) return placed;
  }
  const Result<> folder = synchronizeFolder(QFileInfo(path).absolutePath());
  if (!folder) return folder;
  const Result<QByteArray> read = files.readFile(path, contents.size() + 1);
  if (!read) return read.failure();
  if (*read != contents) return Failure{QStringLiteral("What was written does not read back the same.")};
  return {};
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

Result<> FileManager::createPrivateDirectory(const QString& path) {
  const QByteArray name = QFile::encodeName(path);
  const auto failed = [&path](const QString& reason) {
    return Failure{QStringLiteral("cannot make the folder %1: %2").arg(path, reason)};
  };
  if (::mkdir(name.constData(), UserOnly) == 0) {
    // What the process's mask took away comes back.
    if (::chmod(name.constData(), UserOnly) != 0) return failed(systemError());
    const Result<> synchronized = synchronizeFolder(QFileInfo(path).path());
    return synchronized ? Result<>() : failed(synchronized.error());
  }
  if (errno == ENOENT) {
    const QString parent = QFileInfo(path).path();
    if (parent != path && !QFileInfo::exists(parent)) {
      const Result<> made = createPrivateDirectory(parent);
      return made ? createPrivateDirectory(path) : made;
    }
  }
  struct stat status {};
  if (errno != EEXIST || ::stat(name.constData(), &status) != 0) return failed(systemError());
  if (!S_ISDIR(status.st_mode)) return Failure{QStringLiteral("%1 is not a folder").arg(path)};
  if ((status.st_mode & 07777) != UserOnly && ::chmod(name.constData(), UserOnly) != 0) {
    return Failure{QStringLiteral("cannot make %1 private: %2").arg(path, systemError())};
  }
  return {};
}

Result<> FileManager::writeDurably(const QString& path, const QByteArray& contents, const FinalCheck& check) {
  if (!canBeName(path)) return Failure{QStringLiteral("No file can have this name.")};
  const std::optional<QString> target = followed(path);
  if (!target) return Failure{systemError(ELOOP)};
  const QByteArray name = QFile::encodeName(*target);
  struct stat standing {};
  const bool replaces = ::stat(name.constData(), &standing) == 0;
  if (replaces && !S_ISREG(standing.st_mode)) return Failure{QStringLiteral("It is not a file.")};
  // The folder's rights alone would allow the replacement of a file that is protected from writing.
  if (replaces && ::faccessat(AT_FDCWD, name.constData(), W_OK, AT_EACCESS) != 0) {
    return Failure{systemError()};
  }
  return writeAndPlace(*this, *target, contents,
                       [&](TemporaryFile& file) { return putInPlace(file, name, check); });
}

Result<> FileManager::writePrivately(const QString& path, const QByteArray& contents) {
  if (!canBeName(path)) return Failure{QStringLiteral("No file can have this name.")};
  return writeAndPlace(*this, path, contents, [](TemporaryFile& file) { return file.rename(); });
}

void FileManager::removeAbandonedFiles(const QString& folder, const QStringList& extensions, Depth depth,
                                       std::chrono::minutes age) {
  // Files carry the system's time, whatever a run loop has for it.
  const qint64 youngest = QDateTime::currentSecsSinceEpoch() - std::chrono::seconds(age).count();
  const auto consider = [&](const QString& relativePath) {
    const auto extension = TemporaryFile::finalExtension(relativePath.section(QLatin1Char('/'), -1));
    if (!extension) return;
    if (!extension->isEmpty() && extensions != AnyExtension && !extensions.contains(*extension)) return;
    const QByteArray path = QFile::encodeName(folder + QLatin1Char('/') + relativePath);
    const int descriptor = ::open(path.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) return;
    struct stat status {};
    const bool abandoned = ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) &&
                           (age.count() == 0 || status.st_mtime <= youngest) &&
                           ::flock(descriptor, LOCK_EX | LOCK_NB) == 0;
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
