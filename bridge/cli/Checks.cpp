// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/cli/Checks.h"

#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStorageInfo>
#include <QStringList>
#include <QTemporaryFile>
#include <chrono>
#include <mutex>

#include "bridge/pacs/PacsFactory.h"
#include "link/bus/BusLink.h"

using namespace velmora;

namespace bridge {
namespace {

constexpr qint64 MiB = 1024 * 1024;
/// A chart has about 1 MiB: enough for a day without the archive.
constexpr qint64 LeastRoom = 256 * MiB;

base::Failure wrong(const QString& text) { return {text}; }

/// The folder itself, or the nearest one above it that exists.
QString existing(QString folder) {
  while (!QFileInfo::exists(folder) && folder != QDir::rootPath()) {
    folder = QFileInfo(folder).path();
  }
  return folder;
}

/// Writes a file there and removes it again: permissions alone do not tell of a full or read-only disk or a
/// quota.
base::Result<> tryToWrite(const QString& folder) {
  QTemporaryFile file(QDir(folder).filePath(QStringLiteral(".velmora-link-check-XXXXXX")));
  if (file.open() && file.write(QByteArray(64 * 1024, 'x')) == 64 * 1024 && file.flush() &&
      ::fsync(file.handle()) == 0) {
    return {};
  }
  return base::Failure{file.errorString()};
}

QString placeOf(const PacsSettings& settings) {
  switch (settings.kind) {
    case PacsSettings::Kind::Dimse:
      return QStringLiteral("%1 at %2:%3, as %4")
          .arg(settings.calledAETitle, settings.host)
          .arg(settings.port)
          .arg(settings.callingAETitle);
    case PacsSettings::Kind::Web:
      return settings.url.toDisplayString();
  }
  Q_UNREACHABLE();
}

}  // namespace

CheckAnswer checkSpoolFolder(const QString& folder) {
  const QString place = existing(folder);
  const QFileInfo info(place);
  if (!info.isDir()) return wrong(QStringLiteral("%1 is in the way: it is no folder").arg(place));
  if (place == folder) {
    if (info.ownerId() != ::geteuid()) {
      return wrong(QStringLiteral("%1 belongs to another user (%2)").arg(folder, info.owner()));
    }
    const QFile::Permissions others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup |
                                      QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
    if (info.permissions() & others) {
      return wrong(QStringLiteral("others than you may enter %1: chmod 700 %1").arg(folder));
    }
  }
  if (!info.isWritable() || !info.isExecutable())
    return wrong(QStringLiteral("no permission to write into %1").arg(place));
  const qint64 room = QStorageInfo(place).bytesAvailable();
  if (room >= 0 && room < LeastRoom) {
    return wrong(QStringLiteral("only %1 MiB are free in %2").arg(room / MiB).arg(place));
  }
  if (place != folder) return QStringLiteral("%1 will be made").arg(folder);
  const base::Result<> written = tryToWrite(folder);
  if (!written) return wrong(QStringLiteral("cannot write into %1: %2").arg(folder, written.error()));
  return QStringLiteral("%1, %2 MiB free").arg(folder).arg(room / MiB);
}

CheckAnswer checkSessionBus() {
  std::mutex mutex;
  QStringList complaints;
  link::BusLink bus(
      QString(), [](const link::Message&) {},
      [&](const QString& line) {
        const std::lock_guard lock(mutex);
        complaints.append(line);
      });
  if (bus.flush(std::chrono::seconds(10))) return QStringLiteral("answers");
  const std::lock_guard lock(mutex);
  return wrong(complaints.isEmpty() ? QStringLiteral("does not answer")
                                    : complaints.join(QStringLiteral("; ")));
}

CheckAnswer checkArchive(const PacsSettings& settings) {
  const QString place = placeOf(settings);
  const PacsResult<> checked = makePacs(settings)->check();
  if (!checked.ok()) return wrong(QStringLiteral("%1: %2").arg(place, checked.error()));
  return QStringLiteral("%1: lets us find and store").arg(place);
}

}  // namespace bridge
