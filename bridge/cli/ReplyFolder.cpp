// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/cli/ReplyFolder.h"

#include <QJsonDocument>
#include <QRegularExpression>

#include "base/files/FileManager.h"
#include "bridge/cli/ReplySummary.h"
#include "link/protocol/LinkReply.h"

using namespace velmora;

namespace bridge {
namespace {

base::Result<> writeFile(const QString& path, const QByteArray& contents) {
  const base::Result<> written = base::FileManager().writeDurably(path, contents);
  if (written) return written;
  return base::Failure{QStringLiteral("cannot write %1: %2").arg(path, written.error())};
}

}  // namespace

ReplyFolder::ReplyFolder(const QString& path)
    : folder_(path), lock_(QDir(path).filePath(QStringLiteral(".velmora-link.lock"))) {
  lock_.setStaleLockTime(0);  // a receiver may listen for days; only one that has ended leaves a stale lock
}

base::Result<> ReplyFolder::open() {
  if (!folder_.mkpath(QStringLiteral("."))) {
    return base::Failure{QStringLiteral("cannot make the folder %1").arg(folder_.path())};
  }
  if (!lock_.tryLock()) {
    return base::Failure{lock_.error() == QLockFile::LockFailedError
                             ? QStringLiteral("another receiver writes into %1").arg(folder_.path())
                             : QStringLiteral("cannot write into %1").arg(folder_.path())};
  }
  static const QRegularExpression form(QStringLiteral("\\A([0-9]{4,9})\\.(jpg|json)\\z"));
  const QStringList names = folder_.entryList(QDir::AllEntries | QDir::Hidden | QDir::System);
  for (const QString& name : names) {
    const QRegularExpressionMatch match = form.match(name);
    if (match.hasMatch()) next_ = qMax(next_, match.captured(1).toInt() + 1);
  }
  return {};
}

QString ReplyFolder::nextNumber() const { return QStringLiteral("%1").arg(next_, 4, 10, QLatin1Char('0')); }

base::Result<> ReplyFolder::write(const QVariantMap& reply) {
  const QString path = folder_.filePath(nextNumber());
  ++next_;
  const QByteArray jpeg = link::readReply(reply).jpeg;
  if (!jpeg.isEmpty()) {
    const base::Result<> written = writeFile(path + QStringLiteral(".jpg"), jpeg);
    if (!written) return written;
  }
  return writeFile(path + QStringLiteral(".json"), QJsonDocument(jsonOf(reply)).toJson());
}

}  // namespace bridge
