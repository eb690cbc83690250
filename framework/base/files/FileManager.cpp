// SPDX-License-Identifier: LGPL-3.0-or-later
#include "base/files/FileManager.h"

#include <sys/stat.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>

#include "base/SystemError.h"

namespace velmora::base {

bool FileManager::fileExistsAtPath(const QString& path) const { return QFileInfo::exists(path); }

bool FileManager::isDirectory(const QString& path) const { return QFileInfo(path).isDir(); }

void FileManager::enumeratorAtPath(const QString& path,
                                   const std::function<bool(const QString&)>& visit) const {
  if (path.isEmpty()) return;  // to Qt this is the folder that the program stands in
  // Links are listed but not followed: a link to a folder above would otherwise never end.
  QDirIterator entries(path, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
  const qsizetype prefix = path.endsWith(QLatin1Char('/')) ? path.size() : path.size() + 1;
  while (entries.hasNext()) {
    if (!visit(entries.next().mid(prefix))) return;
  }
}

QStringList FileManager::contentsOfDirectoryAtPath(const QString& path) const {
  if (path.isEmpty()) return {};  // to Qt this is the folder that the program stands in
  return QDir(path).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

QDateTime FileManager::modificationDate(const QString& path) const { return QFileInfo(path).lastModified(); }

Result<> FileManager::removeItem(const QString& path) {
  const QFileInfo item(path);
  if (item.isDir() && !item.isSymLink()) {
    // Out of its place first, so that a folder which cannot go stays whole and is never left half.
    const QString place = QDir::cleanPath(path);
    QTemporaryDir aside(QFileInfo(place).path() + QStringLiteral("/.removed-XXXXXX"));
    const bool moved = aside.isValid() && std::rename(QFile::encodeName(place).constData(),
                                                      QFile::encodeName(aside.path()).constData()) == 0;
    if (moved && aside.remove()) return {};
    return Failure{QStringLiteral("The folder '%1' could not be removed.").arg(path)};
  }
  QFile file(path);
  return file.remove() ? Result<>() : Failure{file.errorString()};
}

Result<QByteArray> FileManager::readFile(const QString& path, qint64 limit) const {
  // A named pipe or a device would hang the reader, so what it is gets asked first.
  struct stat status {};
  if (::stat(QFile::encodeName(path).constData(), &status) != 0) return Failure{systemError()};
  if (!S_ISREG(status.st_mode)) return Failure{QStringLiteral("It is not a file.")};
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return Failure{file.errorString()};
  if (file.size() > limit) {
    return Failure{QStringLiteral("It is too large (%1 MB).").arg(file.size() / (1024 * 1024))};
  }
  // As much memory as the file takes, not as it might: a limit is far above what most files are. One byte
  // more than is left shows whether it has grown meanwhile.
  QByteArray contents;
  for (;;) {
    const qint64 left = std::max<qint64>(file.size() - contents.size(), 0) + 1;
    const QByteArray part = file.read(std::min(left, limit + 1 - contents.size()));
    if (file.error() != QFileDevice::NoError) return Failure{file.errorString()};
    contents += part;
    if (part.isEmpty() || contents.size() > limit) break;
  }
  if (contents.size() > limit) return Failure{QStringLiteral("It is too large.")};
  return contents;
}

}  // namespace velmora::base
