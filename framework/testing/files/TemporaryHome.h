// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "base/Export.h"
#include "testing/files/EnvironmentVariable.h"

namespace velmora::testkit {

/// A home folder that one test has for itself; the one before comes back with the end of the object.
class VELMORA_EXPORT TemporaryHome {
 public:
  QString path() const { return folder_.path(); }
  /// A place below the home folder.
  QString path(const QString& below) const { return folder_.path() + QLatin1Char('/') + below; }
  /// A folder below the home folder, made with its parents.
  QString makeFolder(const QString& below) const {
    QDir().mkpath(path(below));
    return path(below);
  }

 private:
  QTemporaryDir folder_;
  EnvironmentVariable home_{"HOME", QFile::encodeName(path())};
  EnvironmentVariable dataHome_{"XDG_DATA_HOME", QFile::encodeName(path(QStringLiteral(".local/share")))};
};

}  // namespace velmora::testkit
