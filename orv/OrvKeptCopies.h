// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace platform {
class FileManager;
class RunLoop;
}  // namespace platform

/// Copies of records that are kept so that nothing is lost, outside the save folder and readable by the user
/// alone: the earlier versions of what a save replaces, and rescue copies of what could not be saved or was
/// dropped.
class OrvKeptCopies {
 public:
  /// Copies go below the user's data folder, in a folder named by the application's bundle identifier.
  OrvKeptCopies(platform::FileManager& files, const platform::RunLoop& clock,
                const QString& bundleIdentifier);

  /// Keeps `contents`, what stands at `path` now, before it is replaced. Gives the path of the copy, or a
  /// null string, with a log line, when none could be made. At most MostVersions copies of a file are kept;
  /// those older than OldestDays go, except the newest one.
  QString keepEarlierVersion(const QString& path, const QByteArray& contents);
  /// Keeps `contents` under a name made from `name`; gives the path, or a null string when that failed too.
  /// Those older than OldestDays go.
  QString keepRescueCopy(const QString& name, const QByteArray& contents);
  /// Removes what copying that was cut off by a power cut or a kill has left. `extensions`: of the data
  /// files.
  void removeAbandonedCopies(const QStringList& extensions);

  static constexpr int MostVersions = 20;
  static constexpr int OldestDays = 365;

  /// The copies of one file, named by the UTC time of the copying: they sort by time.
  QString earlierVersionsFolder(const QString& path) const;
  QString rescueFolder() const { return root_ + QStringLiteral("/Rescued"); }

 private:
  bool makePrivateFolder(const QString& path);
  bool writePrivately(const QString& path, const QByteArray& contents);
  void prune(const QString& folder);
  void pruneRescueCopies();

  platform::FileManager& files_;
  const platform::RunLoop& clock_;
  QString root_;
};
