// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <array>
#include <stdexcept>

namespace testing_support {

/// A home folder that one test has for itself; the one before comes back with the end of the object.
class OwnHome {
 public:
  OwnHome() {
    if (!folder_.isValid()) throw std::runtime_error("no temporary home folder");
    for (std::size_t i = 0; i < variables.size(); ++i) before_[i] = qgetenv(variables[i]);
    qputenv("HOME", QFile::encodeName(path()));
    qputenv("XDG_DATA_HOME", QFile::encodeName(path(QStringLiteral(".local/share"))));
  }
  ~OwnHome() {
    for (std::size_t i = 0; i < variables.size(); ++i) qputenv(variables[i], before_[i]);
  }
  OwnHome(const OwnHome&) = delete;
  OwnHome& operator=(const OwnHome&) = delete;

  QString path() const { return folder_.path(); }
  /// A place below the home folder.
  QString path(const QString& below) const { return folder_.path() + QLatin1Char('/') + below; }
  /// A folder below the home folder, made with its parents.
  QString makeFolder(const QString& below) const {
    QDir().mkpath(path(below));
    return path(below);
  }

 private:
  static constexpr std::array variables{"HOME", "XDG_DATA_HOME"};
  QTemporaryDir folder_;
  std::array<QByteArray, variables.size()> before_;
};

/// Puts bytes into a file, with its folder; throws when that fails.
inline void writeFile(const QString& path, const QByteArray& contents) {
  QDir().mkpath(QFileInfo(path).path());
  QFile file(path);
  if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size()) {
    throw std::runtime_error(file.errorString().toStdString());
  }
}

/// The bytes of a file; nothing when there is none.
inline QByteArray readFile(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

}  // namespace testing_support
