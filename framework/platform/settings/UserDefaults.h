// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QString>
#include <QVariantMap>

#include "base/Export.h"

namespace velmora::platform {

/// The user's settings: string keys, typed values. Beneath the stored values lies a registration domain of
/// defaults that lives in memory only; a stored value overrides it. Nothing is cached: every read asks the
/// store.
class VELMORA_EXPORT UserDefaults {
 public:
  virtual ~UserDefaults() = default;

  /// Adds to the registration domain; a key registered before is replaced.
  void registerDefaults(const QVariantMap& defaults);

  /// The stored value, else the registered one, else an invalid QVariant.
  QVariant objectForKey(const QString& key) const;
  /// Strings as they are, numbers as decimal text. Anything else counts as not stored: returns the registered
  /// value then, or a null string.
  QString stringForKey(const QString& key) const;
  /// Missing and non-boolean values read as false. "YES", "true" and "1" in text count as true.
  bool boolForKey(const QString& key) const;
  /// A decimal string is converted ("7" reads as 7); missing and other values read as 0.
  qint64 integerForKey(const QString& key) const;
  /// Anything else counts as not stored: returns the registered date then, or an invalid one.
  QDateTime dateForKey(const QString& key) const;

  /// Stores a boolean, integer, string or date (QDateTime).
  void setObject(const QVariant& value, const QString& key);
  void setInteger(qint64 value, const QString& key);

 protected:
  virtual QVariant storedValue(const QString& key) const = 0;
  virtual void storeValue(const QString& key, const QVariant& value) = 0;

 private:
  QVariantMap registered_;
};

/// The platform's "never": 0001-01-01T00:00:00Z.
VELMORA_EXPORT QDateTime distantPast();

}  // namespace velmora::platform
