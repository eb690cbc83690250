// SPDX-License-Identifier: LGPL-3.0-or-later
#include "platform/qt/QtUserDefaults.h"

#include <QFile>
#include <QStandardPaths>

namespace platform::qt {

namespace {

QString settingsFile(const QString& bundleIdentifier) {
  return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QLatin1Char('/') +
         bundleIdentifier + QStringLiteral(".conf");
}

}  // namespace

QtUserDefaults::QtUserDefaults(const QString& bundleIdentifier)
    : settings_(settingsFile(bundleIdentifier), QSettings::IniFormat) {}

QVariant QtUserDefaults::storedValue(const QString& key) const {
  // Another process may have written: the file is the truth, not what this process read earlier.
  settings_.sync();
  return settings_.value(key);
}

void QtUserDefaults::storeValue(const QString& key, const QVariant& value) {
  // As text, which a person can read and repair; Qt's own form for a date is an opaque blob.
  QVariant stored = value;
  if (value.typeId() == QMetaType::QDateTime) stored = value.toDateTime().toUTC().toString(Qt::ISODateWithMs);
  settings_.setValue(key, stored);
  settings_.sync();
  // Settings name folders and patients' whereabouts: they are the user's alone.
  QFile::setPermissions(settings_.fileName(), QFile::ReadOwner | QFile::WriteOwner);
}

}  // namespace platform::qt
