// SPDX-License-Identifier: LGPL-3.0-or-later
#include "orv/documents/OrvPrivateFolder.h"

#include <QFileInfo>
#include <QStandardPaths>

#include "base/files/FileManager.h"
#include "base/log/Log.h"

using namespace velmora;

using velmora::base::Failure;
using velmora::base::Result;

namespace {

Failure logged(const QString& message) {
  base::logLine(message);
  return {message};
}

}  // namespace

OrvPrivateFolder::OrvPrivateFolder(base::FileManager& files, const QString& bundleIdentifier)
    : files_(files),
      path_(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QLatin1Char('/') +
            bundleIdentifier) {}

bool OrvPrivateFolder::contains(const QString& file) const {
  const QString folder = QFileInfo(path_).canonicalFilePath();
  return !folder.isEmpty() && QFileInfo(file).canonicalFilePath().startsWith(folder + QLatin1Char('/'));
}

Result<> OrvPrivateFolder::make(const QString& folder) {
  // Closed to others before anything is in it: the names of the folders below are those of records.
  Result<> made = files_.createPrivateDirectory(path_);
  // A file system without rights cannot close it, and loses nothing by it.
  if (made.ok() || files_.isDirectory(path_)) made = files_.createDirectory(folder);
  if (made.ok()) return {};
  // Named after records, what stands below is not told to a log.
  return logged(QStringLiteral("No folder for copies could be made in %1").arg(path_));
}

Result<> OrvPrivateFolder::write(const QString& file, const QByteArray& contents) {
  const Result<> written = files_.writePrivately(file, contents);
  if (written.ok()) return {};
  return logged(QStringLiteral("A file could not be kept in %1: %2").arg(path_, written.error()));
}
