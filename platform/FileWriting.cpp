// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Putting a file in place of another so that neither a full disk nor a power cut leaves anything in between.
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "platform/FileManager.h"

namespace platform {

namespace {

QString systemError() { return QString::fromLocal8Bit(std::strerror(errno)); }

/// fsync of the names in a folder. Network file systems that cannot do that for a folder say so with these
/// codes, and have no weaker promise to give: the file's own data are on the disk by then.
FileResult synchronizeFolder(const QString& path) {
  const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return errno == EACCES ? FileResult::success() : FileResult::failure(systemError());
  FileResult result;
  if (::fsync(descriptor) != 0 && errno != EINVAL && errno != ENOTSUP && errno != EROFS) {
    result = FileResult::failure(systemError());
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

/// Temporary files are named apart from the final name: no name that a person would give looks like this one,
/// and the longest name that a folder takes can still be written. The extension says whose it is.
QString temporaryName(const QString& extension) {
  const QString hidden =
      QStringLiteral(".%1").arg(QRandomGenerator::system()->generate64(), 16, 16, QLatin1Char('0'));
  return appendingPathExtension(hidden, extension) + QStringLiteral(".unfinished");
}

QRegularExpression temporaryNamePattern() {
  return QRegularExpression(QStringLiteral("\\A\\.[0-9a-f]{16}\\.(.+)\\.unfinished\\z"));
}

/// A file under a temporary name in the folder of its final one: removed again unless put in place.
class UnfinishedFile {
 public:
  explicit UnfinishedFile(const QString& target) : target_(QFile::encodeName(target)) {
    const QFileInfo place(target);
    path_ = QFile::encodeName(place.absolutePath() + QLatin1Char('/') + temporaryName(pathExtension(target)));
    descriptor_ = ::open(path_.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    error_ = descriptor_ < 0 ? errno : 0;
    // Says to removeAbandonedFiles() of other processes that somebody will see to this file. It holds until
    // the file is in place. Where the file system knows no locks the write goes on without.
    if (isOpen()) ::flock(descriptor_, LOCK_EX | LOCK_NB);
  }
  ~UnfinishedFile() {
    if (!isOpen()) return;
    if (!inPlace_) ::unlink(path_.constData());
    ::close(descriptor_);
  }
  UnfinishedFile(const UnfinishedFile&) = delete;
  UnfinishedFile& operator=(const UnfinishedFile&) = delete;

  bool isOpen() const { return descriptor_ >= 0; }
  /// What stopped the last step, in the system's words.
  QString error() const { return QString::fromLocal8Bit(std::strerror(error_)); }

  /// File systems without rights refuse this, and lose nothing by it.
  void setRights(mode_t rights) { ::fchmod(descriptor_, rights); }
  bool write(const QByteArray& contents) {
    for (qsizetype written = 0; written < contents.size();) {
      const auto rest = static_cast<std::size_t>(contents.size() - written);
      const ssize_t count = ::write(descriptor_, contents.constData() + written, rest);
      if (count < 0 && errno == EINTR) continue;
      if (count == 0) errno = ENOSPC;
      if (count <= 0) return failed();
      written += count;
    }
    return ::fsync(descriptor_) == 0 || failed();
  }
  bool putInPlace() {
    inPlace_ = std::rename(path_.constData(), target_.constData()) == 0;
    return inPlace_ || failed();
  }

 private:
  bool failed() {
    error_ = errno;
    return false;
  }

  QByteArray target_;
  QByteArray path_;
  int descriptor_ = -1;
  int error_ = 0;
  bool inPlace_ = false;
};

}  // namespace

FileResult FileManager::writeDurably(const QString& path, const QByteArray& contents) {
  // A name that the system would shorten or spell otherwise would be another file's.
  if (path.isEmpty() || path.contains(QChar(QChar::Null)) ||
      QFile::decodeName(QFile::encodeName(path)) != path) {
    return FileResult::failure(QStringLiteral("No file can have this name."));
  }
  const QString target = followed(path);
  if (target.isNull()) return FileResult::failure(QString::fromLocal8Bit(std::strerror(ELOOP)));
  const QByteArray name = QFile::encodeName(target);
  struct stat standing {};
  const bool replaces = ::stat(name.constData(), &standing) == 0;
  if (replaces && !S_ISREG(standing.st_mode)) return FileResult::failure(QStringLiteral("It is not a file."));
  // The folder's rights alone would allow the replacement of a file that is protected from writing.
  if (replaces && ::faccessat(AT_FDCWD, name.constData(), W_OK, AT_EACCESS) != 0) {
    return FileResult::failure(systemError());
  }
  {
    UnfinishedFile file(target);
    if (!file.isOpen()) return FileResult::failure(file.error());
    if (replaces) file.setRights(standing.st_mode & 07777);
    if (!file.write(contents) || !file.putInPlace()) return FileResult::failure(file.error());
  }
  const FileResult folder = synchronizeFolder(QFileInfo(target).absolutePath());
  if (!folder.ok()) return folder;
  QByteArray readBack;
  const FileResult read = readFile(target, readBack, contents.size() + 1);
  if (!read.ok()) return read;
  if (readBack != contents)
    return FileResult::failure(QStringLiteral("What was written does not read back the same."));
  return FileResult::success();
}

void FileManager::removeAbandonedFiles(const QString& folder, const QStringList& extensions) {
  static const QRegularExpression pattern = temporaryNamePattern();
  for (const QString& name : contentsOfDirectoryAtPath(folder)) {
    const auto match = pattern.match(name);
    if (!match.hasMatch() || !extensions.contains(match.captured(1))) continue;
    const QByteArray path = QFile::encodeName(folder + QLatin1Char('/') + name);
    const int descriptor = ::open(path.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) continue;
    struct stat status {};
    const bool abandoned = ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) &&
                           ::flock(descriptor, LOCK_EX | LOCK_NB) == 0;
    if (abandoned) ::unlink(path.constData());
    ::close(descriptor);
  }
}

}  // namespace platform
