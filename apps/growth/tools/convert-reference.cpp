// SPDX-License-Identifier: LGPL-3.0-or-later
//
// growth-convert-reference HEADING FOLDER REFERENCE
// Writes a reference file from its heading and the published tables in a folder (see reference/FORMAT.md).
#include <QDir>
#include <QFile>
#include <cstdio>

#include "apps/growth/tools/ReferenceConverter.h"
#include "base/files/FileManager.h"

namespace {

std::optional<QByteArray> contentsOf(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return std::nullopt;
  return file.readAll();
}

int complain(const QString& reason) {
  std::fprintf(stderr, "growth-convert-reference: %s\n", qUtf8Printable(reason));
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fprintf(stderr, "usage: growth-convert-reference HEADING FOLDER REFERENCE\n");
    return 2;
  }
  const QString headingPath = QFile::decodeName(argv[1]);
  const QDir folder(QFile::decodeName(argv[2]));
  const QString referencePath = QFile::decodeName(argv[3]);

  const std::optional<QByteArray> heading = contentsOf(headingPath);
  if (!heading) return complain(QStringLiteral("%1 cannot be read.").arg(headingPath));

  const auto tables = [&folder](const QString& name) { return contentsOf(folder.filePath(name)); };
  const auto reference = growth::convertReference(*heading, tables);
  if (!reference.ok()) return complain(QStringLiteral("%1: %2").arg(headingPath, reference.error()));

  const auto written = velmora::base::FileManager().writeDurably(referencePath, *reference);
  return written.ok() ? 0 : complain(QStringLiteral("%1: %2").arg(referencePath, written.error()));
}
