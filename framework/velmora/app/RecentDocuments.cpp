// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/app/RecentDocuments.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <algorithm>

#include "base/files/FileManager.h"
#include "platform/settings/UserDefaults.h"
#include "velmora/resources/SettingsKeys.h"

namespace velmora {

namespace {

QString nameOf(const QString& path) { return base::deletingPathExtension(QFileInfo(path).fileName()); }

}  // namespace

bool RecentDocuments::remembers() const { return defaults_.boolForKey(settings::RememberRecentDocuments); }

void RecentDocuments::setRemembers(bool remembers) {
  defaults_.setObject(remembers, settings::RememberRecentDocuments);
  if (!remembers) clear();
}

QStringList RecentDocuments::paths() const {
  if (!remembers()) return {};
  const QByteArray stored = defaults_.stringForKey(settings::RecentDocuments).toUtf8();
  QStringList paths;
  for (const auto& path : QJsonDocument::fromJson(stored).array()) {
    if (path.isString() && QDir::isAbsolutePath(path.toString())) paths.append(path.toString());
  }
  return paths.mid(0, Most);
}

void RecentDocuments::note(const QUrl& file) {
  if (!remembers() || !file.isLocalFile()) return;
  const QString path = QDir::cleanPath(QFileInfo(file.toLocalFile()).absoluteFilePath());
  QStringList noted = paths();
  noted.removeAll(path);
  noted.prepend(path);
  store(noted.mid(0, Most));
}

void RecentDocuments::remove(const QString& path) {
  QStringList kept = paths();
  if (kept.removeAll(path) > 0) store(kept);
}

void RecentDocuments::clear() { store({}); }

void RecentDocuments::store(const QStringList& paths) {
  const QByteArray json = QJsonDocument(QJsonArray::fromStringList(paths)).toJson(QJsonDocument::Compact);
  const QString value = paths.isEmpty() ? QStringLiteral("") : QString::fromUtf8(json);
  if (value != defaults_.stringForKey(settings::RecentDocuments))
    defaults_.setObject(value, settings::RecentDocuments);
}

QString RecentDocuments::titleOf(const QString& path, const QStringList& among) {
  const QString name = nameOf(path);
  const auto namesakes = std::count_if(among.begin(), among.end(),
                                       [&name](const QString& other) { return nameOf(other) == name; });
  if (namesakes < 2) return name;
  return QStringLiteral("%1 (%2)").arg(name, base::abbreviatingWithTildeInPath(QFileInfo(path).path()));
}

}  // namespace velmora
