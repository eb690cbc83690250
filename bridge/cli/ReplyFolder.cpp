// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/cli/ReplyFolder.h"

#include <unistd.h>

#include <QJsonDocument>
#include <QRegularExpression>
#include <QSaveFile>

#include "bridge/link/LinkReply.h"

namespace bridge {
namespace {

/// Writes a whole file or none. Every step is checked, because QSaveFile alone does not notice a full disk.
QString writeWhole(const QString& path, const QByteArray& contents) {
  QSaveFile file(path);
  bool written = file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size() && file.flush() &&
                 ::fsync(file.handle()) == 0;
  if (!written) file.cancelWriting();
  written = file.commit() && written;
  if (written) return QString();
  return QStringLiteral("cannot write %1: %2").arg(path, file.errorString());
}

}  // namespace

ReplyFolder::ReplyFolder(const QString& path)
    : folder_(path), lock_(QDir(path).filePath(QStringLiteral(".velmora-link.lock"))) {
  lock_.setStaleLockTime(0);  // a receiver may listen for days; only one that has ended leaves a stale lock
}

QString ReplyFolder::open() {
  if (!folder_.mkpath(QStringLiteral("."))) {
    return QStringLiteral("cannot make the folder %1").arg(folder_.path());
  }
  if (!lock_.tryLock()) {
    return lock_.error() == QLockFile::LockFailedError
               ? QStringLiteral("another receiver writes into %1").arg(folder_.path())
               : QStringLiteral("cannot write into %1").arg(folder_.path());
  }
  static const QRegularExpression form(QStringLiteral("\\A([0-9]{4,9})\\.(jpg|json)\\z"));
  const QStringList names = folder_.entryList(QDir::AllEntries | QDir::Hidden | QDir::System);
  for (const QString& name : names) {
    const QRegularExpressionMatch match = form.match(name);
    if (match.hasMatch()) next_ = qMax(next_, match.captured(1).toInt() + 1);
  }
  return QString();
}

QString ReplyFolder::nextNumber() const { return QStringLiteral("%1").arg(next_, 4, 10, QLatin1Char('0')); }

QString ReplyFolder::write(const QVariantMap& reply) {
  const QString base = folder_.filePath(nextNumber());
  ++next_;
  const QByteArray jpeg = jpegOf(reply);
  if (!jpeg.isEmpty()) {
    const QString error = writeWhole(base + QStringLiteral(".jpg"), jpeg);
    if (!error.isNull()) return error;
  }
  return writeWhole(base + QStringLiteral(".json"), QJsonDocument(jsonOf(reply)).toJson());
}

}  // namespace bridge
