// SPDX-License-Identifier: LGPL-3.0-or-later
#include "base/files/TemporaryFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <cerrno>
#include <cstdio>

#include "base/SystemError.h"
#include "base/files/FileManager.h"

namespace velmora::base {

namespace {

constexpr mode_t UserOnly = S_IRUSR | S_IWUSR;
constexpr mode_t AllRights = 07777;
/// Where Linux keeps a file's access list (acl(5)), and the largest that an extended attribute can be.
constexpr const char* AccessList = "system.posix_acl_access";
constexpr std::size_t LargestAttribute = 65536;

/// Temporary files are named apart from the final name: no name that a person would give looks like this one,
/// and the longest name that a folder takes can still be written. The extension says whose it is.
QString temporaryName(const QString& extension) {
  const QString hidden =
      QStringLiteral(".%1").arg(QRandomGenerator::system()->generate64(), 16, 16, QLatin1Char('0'));
  return appendingPathExtension(hidden, extension) + QStringLiteral(".unfinished");
}

/// For a group that is not the one they were meant for: it may do no more than everybody.
mode_t withoutRightsOfGroup(mode_t rights) {
  const mode_t asEverybody = (rights & S_IRWXO) << 3;
  return (rights & ~static_cast<mode_t>(S_IRWXG)) | (rights & S_IRWXG & asEverybody);
}

}  // namespace

Result<> writeAll(int descriptor, const QByteArray& contents) {
  for (qsizetype written = 0; written < contents.size();) {
    const auto rest = static_cast<std::size_t>(contents.size() - written);
    const ssize_t count = ::write(descriptor, contents.constData() + written, rest);
    if (count < 0 && errno == EINTR) continue;
    if (count == 0) errno = ENOSPC;
    if (count <= 0) return Failure{systemError()};
    written += count;
  }
  return {};
}

std::optional<QString> TemporaryFile::finalExtension(const QString& name) {
  static const QRegularExpression pattern(QStringLiteral("\\A\\.[0-9a-f]{16}(?:\\.(.+))?\\.unfinished\\z"));
  const auto match = pattern.match(name);
  return match.hasMatch() ? std::optional(match.captured(1)) : std::nullopt;
}

TemporaryFile::TemporaryFile(const QString& target) : target_(QFile::encodeName(target)) {
  const QFileInfo place(target);
  path_ = QFile::encodeName(place.absolutePath() + QLatin1Char('/') + temporaryName(pathExtension(target)));
  descriptor_ = ::open(path_.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (descriptor_ < 0) {
    openError_ = errno;
    return;
  }
  // Says to removeAbandonedFiles() of other processes of this machine that somebody will see to this file. It
  // holds until the file is in place. Where the file system knows no locks the write goes on without.
  ::flock(descriptor_, LOCK_EX | LOCK_NB);
  // The system has just decided, by the process's mask or the folder's default access list, what a new file
  // may be here. Until it is in place nobody else needs to read it, nor what a power cut leaves of it.
  struct stat made {};
  newRights_ = ::fstat(descriptor_, &made) == 0 ? made.st_mode & AllRights : UserOnly;
  if (newRights_ != UserOnly) ::fchmod(descriptor_, UserOnly);
}

TemporaryFile::~TemporaryFile() {
  if (descriptor_ < 0) return;
  if (!inPlace_) ::unlink(path_.constData());
  ::close(descriptor_);
}

Result<> TemporaryFile::write(const QByteArray& contents) {
  if (descriptor_ < 0) return Failure{systemError(openError_)};
  const Result<> written = writeAll(descriptor_, contents);
  if (!written.ok()) return written;
  return ::fsync(descriptor_) == 0 ? Result<>() : Failure{systemError()};
}

Result<> TemporaryFile::setRights(mode_t rights) {
  // File systems without rights refuse this, and lose nothing by it.
  if (::fchmod(descriptor_, rights) == 0 || errno == EPERM || errno == ENOTSUP || errno == ENOSYS) return {};
  return Failure{systemError()};
}

bool TemporaryFile::takeAccessListOfTarget() {
  QByteArray list(LargestAttribute, '\0');
  const ssize_t size = ::getxattr(target_.constData(), AccessList, list.data(), LargestAttribute);
  if (size > 0)
    return ::fsetxattr(descriptor_, AccessList, list.constData(), static_cast<size_t>(size), 0) == 0;
  if (size < 0 && errno != ENODATA && errno != ENOTSUP && errno != ENOSYS) return false;
  // It has none, and what the folder gives to new files was not meant for this one.
  ::fremovexattr(descriptor_, AccessList);
  return true;
}

Result<> TemporaryFile::takeRightsOfTarget() {
  struct stat standing {};
  struct stat own {};
  if (::stat(target_.constData(), &standing) != 0) return setRights(newRights_);
  if (::fstat(descriptor_, &own) != 0) return Failure{systemError()};
  // Colleagues reach a shared record through its group or its access list, and must go on doing so. A user
  // can give a file to those groups only that he is in.
  bool sameGroup = own.st_gid == standing.st_gid;
  if (!sameGroup) sameGroup = ::fchown(descriptor_, static_cast<uid_t>(-1), standing.st_gid) == 0;
  const bool sameList = takeAccessListOfTarget();
  const mode_t rights = standing.st_mode & AllRights;
  return setRights(sameGroup && sameList ? rights : withoutRightsOfGroup(rights));
}

Result<> TemporaryFile::rename() {
  inPlace_ = std::rename(path_.constData(), target_.constData()) == 0;
  return inPlace_ ? Result<>() : Failure{systemError()};
}

Result<> TemporaryFile::replace() {
  const Result<> rights = takeRightsOfTarget();
  return rights ? rename() : rights;
}

Result<bool> TemporaryFile::placeWhereNothingStands() {
  const auto refused = []() -> Result<bool> {
    if (errno == EEXIST) return false;
    return Failure{systemError()};
  };
  const Result<> rights = setRights(newRights_);
  if (!rights) return rights.failure();
  const char* from = path_.constData();
  const char* to = target_.constData();
  inPlace_ = ::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0;
  if (inPlace_) return true;
  if (errno != EINVAL && errno != ENOSYS && errno != ENOTSUP && errno != EOPNOTSUPP) return refused();
  // Network file systems do not know that. Most know a second name for a file, which takes nobody's place
  // either.
  if (::link(from, to) == 0) {
    inPlace_ = true;
    ::unlink(from);
    return true;
  }
  if (errno != EPERM && errno != ENOTSUP && errno != ENOSYS) return refused();
  const Result<> renamed = rename();
  if (!renamed) return renamed.failure();
  return true;
}

}  // namespace velmora::base
