// SPDX-License-Identifier: LGPL-3.0-or-later
#include "orv/documents/OrvWrittenFolders.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <tuple>

using namespace velmora;

OrvWrittenFolders::OrvWrittenFolders(base::FileManager& files, const QString& bundleIdentifier)
    : files_(files), folder_(files, bundleIdentifier) {}

QString OrvWrittenFolders::listPath() const {
  return folder_.path() + QStringLiteral("/Written Folders.json");
}

QStringList OrvWrittenFolders::all() const {
  constexpr qint64 LargestList = 1024 * 1024;
  const base::Result<QByteArray> list = files_.readFile(listPath(), LargestList);
  if (!list.ok()) return {};
  QStringList folders;
  for (const auto& folder : QJsonDocument::fromJson(*list).array()) {
    if (folder.isString()) folders.append(folder.toString());
  }
  return folders;
}

base::Result<> OrvWrittenFolders::write(const QString& path, const QByteArray& contents,
                                        const base::FileManager::FinalCheck& check) {
  add(path);
  return files_.writeDurably(path, contents, check);
}

void OrvWrittenFolders::add(const QString& file) {
  const QString folder = QFileInfo(file).absolutePath();
  QStringList folders = all();
  if (folders.contains(folder) || !files_.isDirectory(folder)) return;
  folders.append(folder);
  if (folders.size() > MostFolders) folders.removeFirst();
  if (!folder_.make(folder_.path())) return;
  std::ignore = folder_.write(listPath(), QJsonDocument(QJsonArray::fromStringList(folders)).toJson());
}
