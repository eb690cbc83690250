// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

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

  /// Keeps what stands at `path` now, if anything does, before it is replaced. At most MostVersions copies of
  /// a file are kept; older ones than OldestDays go, except the newest one. A failure is logged and stops
  /// nothing.
  void keepEarlierVersion(const QString& path);
  /// Keeps `contents` under a name made from `name`; gives the path, or a null string when that failed too.
  QString keepRescueCopy(const QString& name, const QByteArray& contents);

  static constexpr int MostVersions = 20;
  static constexpr int OldestDays = 365;

  QString earlierVersionsFolder(const QString& path) const;
  QString rescueFolder() const { return root_ + QStringLiteral("/Rescued"); }

 private:
  QString stamp() const;
  bool makePrivateFolder(const QString& path);
  bool writePrivately(const QString& path, const QByteArray& contents);
  void prune(const QString& folder);

  platform::FileManager& files_;
  const platform::RunLoop& clock_;
  QString root_;
};
