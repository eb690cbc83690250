// SPDX-License-Identifier: LGPL-3.0-or-later
#include "testing/files/Files.h"

#include <sys/stat.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <stdexcept>

namespace velmora::testkit {

namespace {
[[noreturn]] void fail(const QFile& file) {
  throw std::runtime_error((file.fileName() + QStringLiteral(": ") + file.errorString()).toStdString());
}
}  // namespace

void writeFile(const QString& path, const QByteArray& contents) {
  QDir().mkpath(QFileInfo(path).path());
  QFile file(path);
  if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size() || !file.flush())
    fail(file);
}

QByteArray readFile(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList fileNames(const QString& folder) {
  return QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

QStringList filesBelow(const QString& folder) {
  QStringList found;
  QDirIterator entries(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
  while (entries.hasNext()) {
    const QString path = entries.next();
    if (!entries.fileInfo().isDir()) found.append(path.mid(folder.size() + 1));
  }
  found.sort();
  return found;
}

unsigned permissionsOf(const QString& path) {
  struct stat status {};
  return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 07777u : 0;
}

void setModified(const QString& path, const QDateTime& time) {
  QFile file(path);
  if (!file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly) ||
      !file.setFileTime(time, QFileDevice::FileModificationTime))
    fail(file);
}

}  // namespace velmora::testkit
