// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/spool/SpoolFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QCryptographicHash>
#include <QFile>
#include <QScopeGuard>
#include <cerrno>

#include "base/SystemError.h"
#include "base/files/FileManager.h"

namespace bridge {

using namespace velmora;

base::Result<> writeSpoolFile(const QString& path, const QByteArray& contents) {
  const base::Result<> written = base::FileManager().writePrivately(path, contents);
  if (written) return written;
  return base::Failure{QStringLiteral("cannot write %1: %2").arg(path, written.error())};
}

base::Result<std::optional<QByteArray>> readBeginning(const QString& path, qint64 most) {
  const auto failed = [] { return base::Failure{base::systemError()}; };
  // Does not block if something else has that name, such as a pipe or a device.
  const int file =
      ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (file < 0 && errno == ENOENT) return std::optional<QByteArray>();
  if (file < 0) return failed();
  const auto close = qScopeGuard([file] { ::close(file); });
  struct stat status {};
  if (::fstat(file, &status) != 0) return failed();
  if (!S_ISREG(status.st_mode)) return base::Failure{QStringLiteral("not a file")};
  QByteArray contents(static_cast<qsizetype>(qMin<qint64>(most, status.st_size)), Qt::Uninitialized);
  qsizetype done = 0;
  while (done < contents.size()) {
    const ssize_t count = ::read(file, contents.data() + done, static_cast<size_t>(contents.size() - done));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return failed();
    if (count == 0) break;
    done += count;
  }
  contents.truncate(done);
  return std::optional(contents);
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
