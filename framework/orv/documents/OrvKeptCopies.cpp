// SPDX-License-Identifier: LGPL-3.0-or-later
#include "orv/documents/OrvKeptCopies.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QFileInfo>
#include <algorithm>
#include <functional>
#include <tuple>

#include "base/files/FileManager.h"
#include "platform/runloop/RunLoop.h"

using namespace velmora;

using velmora::base::Failure;
using velmora::base::Result;

namespace {

/// File names are limited to 255 bytes; this leaves room for stamps and hashes in any script.
constexpr qsizetype LongestName = 40;
const QString StampForm = QStringLiteral("yyyyMMdd-HHmmss-zzz");
constexpr qsizetype StampLength = 19;
/// Follows the stamp of a copy of what somebody else had put in a record's place.
const QString MarkOfAnother = QStringLiteral(" another");

QString stampOf(const QDateTime& time) { return time.toUTC().toString(StampForm); }

/// When the copy of that name was made; invalid for a file that is no copy.
QDateTime timeOfCopy(const QString& name) {
  QDateTime time = QDateTime::fromString(name.left(StampLength), StampForm);
  time.setTimeSpec(Qt::UTC);
  return time;
}

bool isOfAnother(const QString& copy) { return copy.mid(StampLength).startsWith(MarkOfAnother); }

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

OrvKeptCopies::OrvKeptCopies(base::FileManager& files, const platform::RunLoop& clock,
                             const QString& bundleIdentifier)
    : files_(files), clock_(clock), folder_(files, bundleIdentifier) {}

QString OrvKeptCopies::earlierVersionsFolder(const QString& path) const {
  // Two records of the same name in different folders are different records.
  const QByteArray hash =
      QCryptographicHash::hash(QFileInfo(path).absoluteFilePath().toUtf8(), QCryptographicHash::Sha256)
          .toHex()
          .left(16);
  return versionsRoot() + QLatin1Char('/') + readableBeginning(QFileInfo(path).fileName()) +
         QLatin1Char(' ') + QString::fromLatin1(hash);
}

QStringList OrvKeptCopies::copiesIn(const QString& folder) const {
  QStringList copies = files_.contentsOfDirectoryAtPath(folder);
  copies.removeIf([](const QString& name) { return !timeOfCopy(name).isValid(); });
  copies.sort();  // the stamps sort by time
  return copies;
}

bool OrvKeptCopies::holds(const QString& copy, const QByteArray& contents) const {
  const Result<QByteArray> kept = files_.readFile(copy, contents.size());
  return kept.ok() && *kept == contents;
}

Result<QString> OrvKeptCopies::keepEarlierVersion(const QString& path, const QByteArray& contents,
                                                  Origin origin) {
  const QString folder = earlierVersionsFolder(path);
  const Result<> made = folder_.make(folder);
  if (!made) return made.failure();
  files_.removeAbandonedFiles(folder, {base::pathExtension(path)});
  QDateTime time = clock_.now();
  const QStringList copies = copiesIn(folder);
  if (!copies.isEmpty()) {
    // Saving a record over and over without a change must not push its true earlier versions out. What counts
    // as another's is kept as such, however well known it is.
    const QString newest = folder + QLatin1Char('/') + copies.last();
    if ((origin == Origin::Own || isOfAnother(copies.last())) && holds(newest, contents)) return newest;
    // The newest copy has the latest stamp, even when the clock has been put back since the one before: what
    // sorts first is the first to go.
    const QDateTime earlier = timeOfCopy(copies.last());
    if (earlier >= time) time = earlier.addMSecs(1);
  }
  const QString mark = origin == Origin::Another ? MarkOfAnother : QString();
  const QString copy = base::appendingPathExtension(folder + QLatin1Char('/') + stampOf(time) + mark,
                                                    base::pathExtension(path));
  const Result<> written = folder_.write(copy, contents);
  if (!written) return written.failure();
  prune(folder);
  return copy;
}

void OrvKeptCopies::prune(const QString& folder) {
  const QStringList copies = copiesIn(folder);
  // The bound in number is for the user's own versions: however many there are, they never push out
  // another's.
  qsizetype own = std::count_if(copies.begin(), copies.end(), std::not_fn(isOfAnother));
  const QDateTime oldest = clock_.now().addDays(-OldestDays);
  for (const QString& name : copies.mid(0, copies.size() - 1)) {
    const QString copy = folder + QLatin1Char('/') + name;
    const bool tooMany = !isOfAnother(name) && own-- > MostVersions;
    // One that cannot go now is tried again with the next save.
    if (tooMany || files_.modificationDate(copy) < oldest) std::ignore = files_.removeItem(copy);
  }
}

Result<QString> OrvKeptCopies::keepRescueCopy(const QString& name, const QByteArray& contents) {
  if (contents.isEmpty()) return Failure{QStringLiteral("There is nothing to keep.")};
  const Result<> made = folder_.make(rescueFolder());
  if (!made) return made.failure();
  files_.removeAbandonedFiles(rescueFolder(), {base::pathExtension(name)});
  // The copy must succeed where the save failed on the very name of the record.
  const QString beginning = rescueFolder() + QLatin1Char('/') +
                            readableBeginning(base::deletingPathExtension(name)) + QLatin1Char(' ');
  QDateTime time = clock_.now();
  QString path;
  do {
    path =
        base::appendingPathExtension(beginning + stampOf(time), readableBeginning(base::pathExtension(name)));
    time = time.addMSecs(1);
  } while (files_.fileExistsAtPath(path));
  const Result<> written = folder_.write(path, contents);
  if (!written) return written.failure();
  pruneRescueCopies();
  return path;
}

void OrvKeptCopies::pruneRescueCopies() {
  // They hold patients' data, so they do not stay for ever; but by age alone, never by number.
  const QDateTime oldest = clock_.now().addDays(-OldestDays);
  for (const QString& name : files_.contentsOfDirectoryAtPath(rescueFolder())) {
    const QString copy = rescueFolder() + QLatin1Char('/') + name;
    if (files_.modificationDate(copy) < oldest) std::ignore = files_.removeItem(copy);
  }
}

void OrvKeptCopies::removeAbandonedCopies(const QStringList& extensions) {
  files_.removeAbandonedFiles(folder_.path(), extensions + QStringList{QStringLiteral("json")},
                              base::FileManager::Depth::Everything);
  pruneRescueCopies();
  for (const QString& record : files_.contentsOfDirectoryAtPath(versionsRoot())) {
    prune(versionsRoot() + QLatin1Char('/') + record);
  }
}
