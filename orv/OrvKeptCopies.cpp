// SPDX-License-Identifier: LGPL-3.0-or-later
#include "orv/OrvKeptCopies.h"

#include <QCryptographicHash>
#include <QDateTime>
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
const QString StampForm = QStringLiteral("yyyyMMdd-HHmmss-zzz");
constexpr qsizetype StampLength = 19;

QString stampOf(const QDateTime& time) { return time.toUTC().toString(StampForm); }

/// When the copy of that name was made; invalid for a file that is no copy.
QDateTime timeOfCopy(const QString& name) {
  QDateTime time = QDateTime::fromString(name.left(StampLength), StampForm);
  time.setTimeSpec(Qt::UTC);
  return time;
}

/// The beginning of a record's name, in characters that any file name can have.
QString readableBeginning(const QString& name) {
  QString beginning;
  for (const char32_t character : name.toUcs4()) {
    if (beginning.size() >= LongestName) break;
    const bool fits = character != U'/' && QChar::category(character) != QChar::Other_Control &&
                      QChar::category(character) != QChar::Other_Surrogate;
    beginning += fits ? QString::fromUcs4(&character, 1) : QStringLiteral("-");
  }
  return beginning;
}

}  // namespace

OrvKeptCopies::OrvKeptCopies(platform::FileManager& files, const platform::RunLoop& clock,
                             const QString& bundleIdentifier)
    : files_(files),
      clock_(clock),
      root_(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QLatin1Char('/') +
            bundleIdentifier) {}

QString OrvKeptCopies::earlierVersionsFolder(const QString& path) const {
  // Two records of the same name in different folders are different records.
  const QByteArray hash =
      QCryptographicHash::hash(QFileInfo(path).absoluteFilePath().toUtf8(), QCryptographicHash::Sha256)
          .toHex()
          .left(16);
  return root_ + QStringLiteral("/Earlier Versions/") + readableBeginning(QFileInfo(path).fileName()) +
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

QString OrvKeptCopies::keepEarlierVersion(const QString& path, const QByteArray& contents) {
  const QString folder = earlierVersionsFolder(path);
  if (!makePrivateFolder(folder)) return {};
  files_.removeAbandonedFiles(folder, {platform::pathExtension(path)});
  // The newest copy has the latest stamp, even when the clock has been put back since the one before: what
  // sorts first is the first to go.
  QDateTime time = clock_.now();
  for (const QString& name : files_.contentsOfDirectoryAtPath(folder)) {
    const QDateTime earlier = timeOfCopy(name);
    if (earlier.isValid() && earlier >= time) time = earlier.addMSecs(1);
  }
  const QString copy = platform::appendingPathExtension(folder + QLatin1Char('/') + stampOf(time),
                                                        platform::pathExtension(path));
  if (!writePrivately(copy, contents)) return {};
  prune(folder);
  return copy;
}

void OrvKeptCopies::prune(const QString& folder) {
  QStringList copies = files_.contentsOfDirectoryAtPath(folder);
  copies.removeIf([](const QString& name) { return !timeOfCopy(name).isValid(); });
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
  files_.removeAbandonedFiles(rescueFolder(), {platform::pathExtension(name)});
  // The copy must succeed where the save failed on the very name of the record.
  const QString beginning = rescueFolder() + QLatin1Char('/') +
                            readableBeginning(platform::deletingPathExtension(name)) + QLatin1Char(' ');
  QDateTime time = clock_.now();
  QString path;
  do {
    path = platform::appendingPathExtension(beginning + stampOf(time),
                                            readableBeginning(platform::pathExtension(name)));
    time = time.addMSecs(1);
  } while (files_.fileExistsAtPath(path));
  if (!writePrivately(path, contents)) return {};
  pruneRescueCopies();
  return path;
}

void OrvKeptCopies::pruneRescueCopies() {
  // They hold patients' data, so they do not stay for ever; but by age alone, never by number.
  const QDateTime oldest = clock_.now().addDays(-OldestDays);
  for (const QString& name : files_.contentsOfDirectoryAtPath(rescueFolder())) {
    const QString copy = rescueFolder() + QLatin1Char('/') + name;
    if (files_.modificationDate(copy) < oldest) files_.removeItem(copy);
  }
}

void OrvKeptCopies::removeAbandonedCopies(const QStringList& extensions) {
  files_.removeAbandonedFiles(rescueFolder(), extensions);
  const QString versions = root_ + QStringLiteral("/Earlier Versions");
  for (const QString& record : files_.contentsOfDirectoryAtPath(versions)) {
    files_.removeAbandonedFiles(versions + QLatin1Char('/') + record, extensions);
  }
}
