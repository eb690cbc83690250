// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/spool/DurableFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <cstring>

namespace bridge {
namespace {

QString words(int error) { return QString::fromLocal8Bit(std::strerror(error)); }

/// A file descriptor that is closed in every end.
class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  bool valid() const { return number_ >= 0; }
  int number() const { return number_; }

 private:
  int number_;
};

bool writeAll(int file, const QByteArray& contents) {
  qsizetype done = 0;
  while (done < contents.size()) {
    const ssize_t written =
        ::write(file, contents.constData() + done, static_cast<size_t>(contents.size() - done));
    if (written < 0 && errno == EINTR) continue;
    if (written == 0) errno = ENOSPC;
    if (written <= 0) return false;
    done += written;
  }
  return true;
}

bool syncFolder(const QByteArray& folder) {
  const Descriptor descriptor(::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  // Some file systems, of the network for the most part, cannot be asked for this; they are no reason to take
  // no chart at all.
  return descriptor.valid() && (::fsync(descriptor.number()) == 0 || errno == EINVAL || errno == ENOTSUP);
}

const QLatin1String StrayEnding(".part");

}  // namespace

QString makePrivateFolder(const QString& path) {
  const QByteArray name = QFile::encodeName(path);
  if (::mkdir(name.constData(), 0700) == 0) {
    // What the umask took away comes back.
    if (::chmod(name.constData(), 0700) == 0 && syncFolder(QFile::encodeName(QFileInfo(path).path()))) {
      return QString();
    }
    return QStringLiteral("cannot make the folder %1: %2").arg(path, words(errno));
  }
  if (errno == ENOENT) {
    const QString parent = QFileInfo(path).path();
    if (parent != path && !QFileInfo::exists(parent)) {
      const QString error = makePrivateFolder(parent);
      return error.isNull() ? makePrivateFolder(path) : error;
    }
  }
  struct stat status {};
  if (errno != EEXIST || ::stat(name.constData(), &status) != 0) {
    return QStringLiteral("cannot make the folder %1: %2").arg(path, words(errno));
  }
  if (!S_ISDIR(status.st_mode)) return QStringLiteral("%1 is not a folder").arg(path);
  if ((status.st_mode & 07777) != 0700 && ::chmod(name.constData(), 0700) != 0) {
    return QStringLiteral("cannot make %1 private: %2").arg(path, words(errno));
  }
  return QString();
}

QString writeDurably(const QString& path, const QByteArray& contents) {
  const QByteArray target = QFile::encodeName(path);
  const QByteArray part = target + StrayEnding.data();
  const auto failed = [&path](int error) {
    return QStringLiteral("cannot write %1: %2").arg(path, words(error));
  };
  {
    const Descriptor file(
        ::open(part.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!file.valid()) return failed(errno);
    if (::fchmod(file.number(), 0600) != 0 || !writeAll(file.number(), contents) ||
        ::fsync(file.number()) != 0) {
      const int error = errno;
      ::unlink(part.constData());
      return failed(error);
    }
  }
  if (::rename(part.constData(), target.constData()) != 0) {
    const int error = errno;
    ::unlink(part.constData());
    return failed(error);
  }
  if (!syncFolder(QFile::encodeName(QFileInfo(path).path()))) return failed(errno);
  return QString();
}

bool isStray(const QString& name) { return name.endsWith(StrayEnding); }

std::optional<QByteArray> readBeginning(const QString& path, qint64 most, QString& reason) {
  // Whatever else stands here under that name, a pipe or a device, is not waited for.
  const Descriptor descriptor(
      ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  struct stat status {};
  if (!descriptor.valid() || ::fstat(descriptor.number(), &status) != 0) {
    reason = words(errno);
    return std::nullopt;
  }
  if (!S_ISREG(status.st_mode)) {
    reason = QStringLiteral("not a file");
    return std::nullopt;
  }
  QByteArray contents(static_cast<qsizetype>(qMin<qint64>(most, status.st_size)), Qt::Uninitialized);
  qsizetype done = 0;
  while (done < contents.size()) {
    const ssize_t count =
        ::read(descriptor.number(), contents.data() + done, static_cast<size_t>(contents.size() - done));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) {
      reason = words(errno);
      return std::nullopt;
    }
    if (count == 0) break;
    done += count;
  }
  contents.truncate(done);
  return contents;
}

QByteArray sealed(const QByteArray& kind, const QByteArray& contents) {
  return kind + ' ' + QCryptographicHash::hash(contents, QCryptographicHash::Sha256).toHex() + '\n' +
         contents;
}

std::optional<QByteArray> unsealed(const QByteArray& kind, const QByteArray& file) {
  const QByteArray contents = file.mid(kind.size() + 66);
  if (file.size() < kind.size() + 66 || sealed(kind, contents) != file) return std::nullopt;
  return contents;
}

}  // namespace bridge
