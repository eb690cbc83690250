// SPDX-License-Identifier: LGPL-3.0-or-later
#include "platform/qt/QtUserDefaults.h"

#include <QFile>
#include <QStandardPaths>

#include "platform/Log.h"

namespace platform::qt {

namespace {

QString settingsFile(const QString& bundleIdentifier) {
  return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QLatin1Char('/') +
         bundleIdentifier + QStringLiteral(".conf");
}

}  // namespace

QtUserDefaults::QtUserDefaults(const QString& bundleIdentifier)
    : settings_(std::make_unique<QSettings>(settingsFile(bundleIdentifier), QSettings::IniFormat)) {
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
  const QString copy = file + QStringLiteral(".damaged-") +
                       QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd-HHmmss"));
  const bool kept = QFile::copy(file, copy) || QFile::exists(copy);
  logLine(QStringLiteral("The settings file is damaged; ") +
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
  return settings_->value(key);
}

void QtUserDefaults::storeValue(const QString& key, const QVariant& value) {
  // As text, which a person can read and repair; Qt's own form for a date is an opaque blob.
  QVariant stored = value;
  if (value.typeId() == QMetaType::QDateTime) stored = value.toDateTime().toUTC().toString(Qt::ISODateWithMs);
  synchronize();
  settings_->setValue(key, stored);
  settings_->sync();
  if (settings_->status() == QSettings::AccessError) {
    logLine(QStringLiteral("The setting '%1' could not be stored in %2").arg(key, settings_->fileName()));
    return;
  }
  // Settings name folders and patients' whereabouts: they are the user's alone.
  QFile::setPermissions(settings_->fileName(), QFile::ReadOwner | QFile::WriteOwner);
}

}  // namespace platform::qt
