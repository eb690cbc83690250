// SPDX-License-Identifier: LGPL-3.0-or-later
#include "platform/settings/UserDefaults.h"

#include <QTimeZone>

namespace velmora::platform {

void UserDefaults::registerDefaults(const QVariantMap& defaults) { registered_.insert(defaults); }

QVariant UserDefaults::objectForKey(const QString& key) const {
  const QVariant stored = storedValue(key);
  return stored.isValid() ? stored : registered_.value(key);
}

namespace {

QString textOf(const QVariant& value) {
  switch (value.typeId()) {
    case QMetaType::QString:
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::UInt:
    case QMetaType::ULongLong:
    case QMetaType::Double:
      return value.toString();
    default:
      return {};
  }
}

QDateTime dateOf(const QVariant& value) {
  if (value.typeId() == QMetaType::QDateTime) return value.toDateTime();
  if (value.typeId() == QMetaType::QString) return QDateTime::fromString(value.toString(), Qt::ISODateWithMs);
  return {};
}

}  // namespace

QString UserDefaults::stringForKey(const QString& key) const {
  const QString stored = textOf(storedValue(key));
  return stored.isNull() ? textOf(registered_.value(key)) : stored;
}

bool UserDefaults::boolForKey(const QString& key) const {
  const QVariant value = objectForKey(key);
  switch (value.typeId()) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::LongLong:
      return value.toBool();
    case QMetaType::QString: {
      const QString text = value.toString().trimmed().toLower();
      return text == QLatin1String("true") || text == QLatin1String("yes") || text == QLatin1String("1");
    }
    default:
      return false;
  }
}

qint64 UserDefaults::integerForKey(const QString& key) const {
  const QVariant value = objectForKey(key);
  switch (value.typeId()) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::LongLong:
      return value.toLongLong();
    case QMetaType::QString: {
      bool decimal = false;
      const qint64 number = value.toString().trimmed().toLongLong(&decimal);
      return decimal ? number : 0;
    }
    default:
      return 0;
  }
}

QDateTime UserDefaults::dateForKey(const QString& key) const {
  const QDateTime stored = dateOf(storedValue(key));
  return stored.isValid() ? stored : dateOf(registered_.value(key));
}

void UserDefaults::setObject(const QVariant& value, const QString& key) { storeValue(key, value); }
void UserDefaults::setInteger(qint64 value, const QString& key) { storeValue(key, value); }

QDateTime distantPast() { return QDateTime(QDate(1, 1, 1), QTime(0, 0), QTimeZone::utc()); }

}  // namespace velmora::platform
