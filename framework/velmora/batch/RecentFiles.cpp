// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/batch/RecentFiles.h"

#include <algorithm>
#include <limits>

#include "base/files/FileManager.h"

namespace velmora {

namespace {
constexpr qint64 SecondsPerDay = 86400;
constexpr qint64 MostDays = std::numeric_limits<qint64>::max() / SecondsPerDay;
}  // namespace

qint64 integerValue(const QString& text) {
  const QString trimmed = text.trimmed();
  qsizetype at = 0;
  const bool negative = trimmed.startsWith(QLatin1Char('-'));
  if (negative || trimmed.startsWith(QLatin1Char('+'))) ++at;
  // Counted below zero, where there is room for one more.
  constexpr qint64 smallest = std::numeric_limits<qint64>::min();
  qint64 value = 0;
  for (; at < trimmed.size() && trimmed.at(at) >= QLatin1Char('0') && trimmed.at(at) <= QLatin1Char('9');
       ++at) {
    const int digit = trimmed.at(at).digitValue();
    value = value < (smallest + digit) / 10 ? smallest : value * 10 - digit;
  }
  if (negative) return value;
  return value == smallest ? std::numeric_limits<qint64>::max() : -value;
}

double ageLimit(qint64 days) {
  return static_cast<double>(-(std::clamp(days, -MostDays, MostDays) * SecondsPerDay));
}

bool isRecentEnough(const QDateTime& modified, const QDateTime& now, qint64 days) {
  if (!modified.isValid()) return false;
  const double interval = static_cast<double>(now.msecsTo(modified)) / 1000.0;
  return interval > ageLimit(days);
}

QStringList recentFiles(const base::FileManager& fileManager, const QString& folder, const QString& extension,
                        const QDateTime& now, qint64 days) {
  QStringList paths;
  if (folder.isEmpty() || extension.isEmpty()) return paths;
  fileManager.enumeratorAtPath(folder, [&](const QString& relativePath) {
    if (base::pathExtension(relativePath) != extension) return true;
    const QString path = folder + QLatin1Char('/') + relativePath;
    if (isRecentEnough(fileManager.modificationDate(path), now, days)) paths.append(path);
    return true;
  });
  return paths;
}

}  // namespace velmora
