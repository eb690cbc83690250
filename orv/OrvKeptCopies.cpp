// SPDX-License-Identifier: LGPL-3.0-or-later
#include "orv/OrvKeptCopies.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include "platform/FileManager.h"
#include "platform/Log.h"
#include "platform/RunLoop.h"

using platform::FileResult;

namespace {

constexpr QFile::Permissions UserOnlyFile = QFile::ReadOwner | QFile::WriteOwner;
constexpr QFile::Permissions UserOnlyFolder = UserOnlyFile | QFile::ExeOwner;
/// File names are limited to 255 bytes; this leaves room for stamps and hashes in any script.
constexpr qsizetype LongestName = 40;

}  // namespace

OrvKeptCopies::OrvKeptCopies(platform::FileManager& files, const platform::RunLoop& clock,
                             const QString& bundleIdentifier)
    : files_(files),
      clock_(clock),
      root_(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QLatin1Char('/') +
            bundleIdentifier) {}

QString OrvKeptCopies::stamp() const {
  return clock_.now().toUTC().toString(QStringLiteral("yyyyMMdd-HHmmss-zzz"));
}

QString OrvKeptCopies::earlierVersionsFolder(const QString& path) const {
  // Two records of the same name in different folders are different records.
  const QByteArray hash =
      QCryptographicHash::hash(QFileInfo(path).absoluteFilePath().toUtf8(), QCryptographicHash::Sha256)
          .toHex()
          .left(16);
  return root_ + QStringLiteral("/Earlier Versions/") + QFileInfo(path).fileName().left(LongestName) +
         QLatin1Char(' ') + QString::fromLatin1(hash);
}

bool OrvKeptCopies::makePrivateFolder(const QString& path) {
  const FileResult made = files_.createDirectory(path);
  if (!made.ok()) {
    platform::logLine(made.error);
    return false;
  }
  QFile::setPermissions(root_, UserOnlyFolder);
  return true;
}

bool OrvKeptCopies::writePrivately(const QString& path, const QByteArray& contents) {
  const FileResult written = files_.writeDurably(path, contents);
  if (!written.ok()) {
    platform::logLine(QStringLiteral("A copy could not be kept: ") + written.error);
    return false;
  }
  return QFile::setPermissions(path, UserOnlyFile);
}

void OrvKeptCopies::keepEarlierVersion(const QString& path) {
  if (!files_.fileExistsAtPath(path)) return;
  QByteArray contents;
  const FileResult read = files_.readFile(path, contents);
  if (!read.ok()) {
    platform::logLine(QStringLiteral("An earlier version could not be kept: ") + read.error);
    return;
  }
  const QString folder = earlierVersionsFolder(path);
  if (!makePrivateFolder(folder)) return;
  writePrivately(
      platform::appendingPathExtension(folder + QLatin1Char('/') + stamp(), platform::pathExtension(path)),
      contents);
  prune(folder);
}

void OrvKeptCopies::prune(const QString& folder) {
  QStringList copies = files_.contentsOfDirectoryAtPath(folder);
  copies.sort();  // the stamps sort by time
  const QDateTime oldest = clock_.now().addDays(-OldestDays);
  for (qsizetype i = 0; i + 1 < copies.size(); ++i) {
    const QString copy = folder + QLatin1Char('/') + copies.at(i);
    const bool tooMany = copies.size() - i > MostVersions;
    if (tooMany || files_.modificationDate(copy) < oldest) files_.removeItem(copy);
  }
}

QString OrvKeptCopies::keepRescueCopy(const QString& name, const QByteArray& contents) {
  if (contents.isEmpty() || !makePrivateFolder(rescueFolder())) return {};
  QString safe = name;
  safe.replace(QLatin1Char('/'), QLatin1Char('-'));
  const QString stem = platform::deletingPathExtension(safe).left(LongestName) + QLatin1Char(' ') + stamp();
  const QString path = platform::appendingPathExtension(rescueFolder() + QLatin1Char('/') + stem,
                                                        platform::pathExtension(safe));
  return writePrivately(path, contents) ? path : QString();
}
