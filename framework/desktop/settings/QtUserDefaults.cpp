// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/settings/QtUserDefaults.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include "base/log/Log.h"
#include "platform/runloop/RunLoop.h"

namespace velmora::desktop {

namespace {

QString settingsFile(const QString& bundleIdentifier) {
  return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QLatin1Char('/') +
         bundleIdentifier + QStringLiteral(".conf");
}

}  // namespace

QtUserDefaults::QtUserDefaults(const QString& bundleIdentifier, const platform::RunLoop& clock)
    : clock_(clock),
      settings_(std::make_unique<QSettings>(settingsFile(bundleIdentifier), QSettings::IniFormat)) {
  synchronize();
}

void QtUserDefaults::synchronize() const {
  if (settings_->status() != QSettings::NoError) forgetErrors();
  // Another process may have written: the file is the truth, not what this process read earlier.
  settings_->sync();
  // Qt reads a section when it is first asked for, and only then sees that it is damaged.
  settings_->allKeys();
  if (settings_->status() != QSettings::FormatError) return;
  // The next write keeps only what could be read; the rest may still mean something to a person.
  const QString file = settings_->fileName();
  const QString copy =
      file + QStringLiteral(".damaged-") + clock_.now().toUTC().toString(QStringLiteral("yyyyMMdd-HHmmss"));
  const bool kept = QFile::copy(file, copy) || QFile::exists(copy);
  base::logLine(QStringLiteral("The settings file is damaged; ") +
                (kept ? QStringLiteral("what cannot be read was kept in ") + copy
                      : QStringLiteral("what cannot be read could not be kept")));
}

void QtUserDefaults::forgetErrors() const {
  // An error stays with a QSettings for good, and would hide the next one. What the old one holds goes to the
  // new one: both are of one file.
  settings_ = std::make_unique<QSettings>(settings_->fileName(), QSettings::IniFormat);
}

QVariant QtUserDefaults::storedValue(const QString& key) const {
  synchronize();
  const QVariant value = settings_->value(key);
  // A null text that was stored is an empty one: only what is not in the file counts as not stored.
  const bool emptied = value.typeId() == QMetaType::QString && value.toString().isEmpty();
  return emptied ? QVariant(QStringLiteral("")) : value;
}

void QtUserDefaults::storeValue(const QString& key, const QVariant& value) {
  // As text, which a person can read and repair; Qt's own form for a date is an opaque blob.
  QVariant stored = value;
  if (value.typeId() == QMetaType::QDateTime) stored = value.toDateTime().toUTC().toString(Qt::ISODateWithMs);
  synchronize();
  settings_->setValue(key, stored);
  closeToOthers();
  settings_->sync();
  if (settings_->status() == QSettings::AccessError) {
    base::logLine(
        QStringLiteral("The setting '%1' could not be stored in %2").arg(key, settings_->fileName()));
    return;
  }
}

/// Settings name folders, and patients where recent documents are remembered: they are the user's alone. The
/// file is so before anything is written, because what replaces it takes over its rights.
void QtUserDefaults::closeToOthers() const {
  const QString name = settings_->fileName();
  QDir().mkpath(QFileInfo(name).path());
  const int file = ::open(QFile::encodeName(name).constData(), O_WRONLY | O_CREAT | O_NONBLOCK | O_CLOEXEC,
                          S_IRUSR | S_IWUSR);
  if (file < 0) return;  // what cannot be opened cannot be stored either, which is told there
  ::fchmod(file, S_IRUSR | S_IWUSR);
  ::close(file);
}

}  // namespace velmora::desktop
