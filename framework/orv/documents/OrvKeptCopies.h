// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include "base/Export.h"
#include "orv/documents/OrvPrivateFolder.h"

namespace velmora::platform {
class RunLoop;
}

/// Copies of records that are kept so that nothing is lost, outside the save folder and readable by the user
/// alone: the earlier versions of what a save replaces, and rescue copies of what could not be saved or was
/// dropped.
class VELMORA_EXPORT OrvKeptCopies {
 public:
  /// Copies go below the user's data folder, in a folder named by the application's bundle identifier.
  OrvKeptCopies(velmora::base::FileManager& files, const velmora::platform::RunLoop& clock,
                const QString& bundleIdentifier);

  /// Whose an earlier version is: one that the program itself wrote or read there, or one that somebody else
  /// put in its place, which may be another patient's record.
  enum class Origin { Own, Another };
  /// Keeps `contents`, what stands at `path` now, before it is replaced. Gives the path of the copy, which is
  /// the newest one when that holds the same already. A failure is logged. At most MostVersions own versions
  /// of a file are kept; those older than OldestDays go, whoever wrote them, except the newest one.
  velmora::base::Result<QString> keepEarlierVersion(const QString& path, const QByteArray& contents,
                                                    Origin origin = Origin::Own);
  /// Keeps `contents`, which are not empty, under a name made from `name`, and gives the path of the copy.
  /// Those older than OldestDays go. A failure is logged.
  velmora::base::Result<QString> keepRescueCopy(const QString& name, const QByteArray& contents);
  /// Removes what copying that was cut off by a power cut or a kill has left, and the copies that have grown
  /// too old. `extensions`: of the data files.
  void removeAbandonedCopies(const QStringList& extensions);

  static constexpr int MostVersions = 20;
  static constexpr int OldestDays = 365;

  /// The copies of one file, named by the UTC time of the copying, so that they sort by time; those of
  /// another are marked.
  QString earlierVersionsFolder(const QString& path) const;
  QString rescueFolder() const { return folder_.path() + QStringLiteral("/Rescued"); }

 private:
  QString versionsRoot() const { return folder_.path() + QStringLiteral("/Earlier Versions"); }
  QStringList copiesIn(const QString& folder) const;
  bool holds(const QString& copy, const QByteArray& contents) const;
  void prune(const QString& folder);
  void pruneRescueCopies();

  velmora::base::FileManager& files_;
  const velmora::platform::RunLoop& clock_;
  OrvPrivateFolder folder_;
};
