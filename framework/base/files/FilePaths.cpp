// SPDX-License-Identifier: LGPL-3.0-or-later
#include <QDir>

#include "base/files/FileManager.h"

namespace velmora::base {

QString expandingTildeInPath(const QString& path) {
  QString expanded = path;
  if (path == QLatin1String("~") || path.startsWith(QLatin1String("~/"))) {
    expanded = QDir::homePath() + path.mid(1);
  }
  while (expanded.size() > 1 && expanded.endsWith(QLatin1Char('/'))) expanded.chop(1);
  return expanded;
}

QString abbreviatingWithTildeInPath(const QString& path) {
  const QString home = QDir::homePath();
  if (home.size() > 1 && path == home) return QStringLiteral("~");
  if (home.size() > 1 && path.startsWith(home + QLatin1Char('/')))
    return QLatin1Char('~') + path.mid(home.size());
  return path;
}

namespace {
/// Where the dot of the extension stands, or -1. A dot at the beginning of a name hides a file, it begins no
/// extension.
qsizetype extensionDot(const QString& path) {
  const qsizetype name = path.lastIndexOf(QLatin1Char('/')) + 1;
  const qsizetype dot = path.lastIndexOf(QLatin1Char('.'));
  return dot > name ? dot : -1;
}
}  // namespace

QString pathExtension(const QString& path) {
  const qsizetype dot = extensionDot(path);
  return dot < 0 ? QString() : path.mid(dot + 1);
}

QString deletingPathExtension(const QString& path) {
  const qsizetype dot = extensionDot(path);
  return dot < 0 ? path : path.left(dot);
}

QString appendingPathExtension(const QString& path, const QString& extension) {
  return extension.isEmpty() ? path : path + QLatin1Char('.') + extension;
}

}  // namespace velmora::base
