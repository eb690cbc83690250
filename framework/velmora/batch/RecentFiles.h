// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>

namespace velmora::base {
class FileManager;
}  // namespace velmora::base

/// Which data files a batch export takes: those modified less than a number of days ago.
namespace velmora {

/// The whole number at the beginning of a text, after blanks: an optional sign and decimal digits. 0 without
/// any digit; what no 64-bit integer can hold is the largest or the smallest one.
qint64 integerValue(const QString& text);

/// The interval from now, in seconds, that a file's modification date must lie above: so many days of exactly
/// 24 hours back, or forward when `days` is negative. Days beyond what 64-bit seconds can express, some
/// 10^14, count as that many.
double ageLimit(qint64 days);

/// Whether what was modified then is recent enough: strictly less than `days` times 24 hours ago. An invalid
/// date never is.
bool isRecentEnough(const QDateTime& modified, const QDateTime& now, qint64 days);

/// The entries with exactly that extension, at any depth below `folder`, that are recent enough, as paths
/// that begin with `folder` and in the order in which the folder gives them. Returns none without a folder or
/// an extension.
QStringList recentFiles(const base::FileManager& fileManager, const QString& folder, const QString& extension,
                        const QDateTime& now, qint64 days);

}  // namespace velmora
