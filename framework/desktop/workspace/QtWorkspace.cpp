// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/workspace/QtWorkspace.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDesktopServices>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

namespace velmora::desktop {

bool QtWorkspace::openURL(const QUrl& url) { return QDesktopServices::openUrl(url); }

bool QtWorkspace::selectFile(const QString& path) {
  QDBusMessage show = QDBusMessage::createMethodCall(
      QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
      QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
  // Every character that an address cannot hold is escaped, which QUrl::toString() does not do.
  const QByteArray address = QUrl::fromLocalFile(path).toEncoded(QUrl::FullyEncoded);
  show << QStringList{QString::fromLatin1(address)} << QString();
  constexpr int PatienceMilliseconds = 2000;
  const QDBusMessage answer = QDBusConnection::sessionBus().call(show, QDBus::Block, PatienceMilliseconds);
  if (answer.type() == QDBusMessage::ReplyMessage) return true;
  const QFileInfo item(path);
  return openURL(QUrl::fromLocalFile(item.isDir() ? path : item.absolutePath()));
}

std::optional<QString> QtWorkspace::absolutePathForAppBundleWithIdentifier(const QString& identifier) const {
  // An identifier names a file here: one that could leave the folder names nothing.
  if (identifier.isEmpty() || identifier.contains(QLatin1Char('/'))) return std::nullopt;
  const QString entry =
      QStandardPaths::locate(QStandardPaths::ApplicationsLocation, identifier + QStringLiteral(".desktop"));
  if (entry.isEmpty()) return std::nullopt;
  const QSettings desktopEntry(entry, QSettings::IniFormat);
  const QString program = desktopEntry.value(QStringLiteral("Desktop Entry/TryExec")).toString();
  const QString found = program.isEmpty() ? QString() : QStandardPaths::findExecutable(program);
  return found.isEmpty() ? entry : found;
}

}  // namespace velmora::desktop
