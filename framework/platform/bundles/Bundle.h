// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>
#include <QVariantMap>

#include "base/Export.h"

namespace velmora::platform {

/// An application or plugin on the disk: its information dictionary and its resources.
class VELMORA_EXPORT Bundle {
 public:
  Bundle() = default;
  Bundle(QVariantMap infoDictionary, QString resourcePath)
      : info_(std::move(infoDictionary)), resourcePath_(std::move(resourcePath)) {}

  /// A value of the information dictionary; invalid when the key is absent.
  QVariant objectForInfoDictionaryKey(const QString& key) const { return info_.value(key); }
  QString stringForInfoDictionaryKey(const QString& key) const { return info_.value(key).toString(); }
  QString bundleIdentifier() const {
    return stringForInfoDictionaryKey(QStringLiteral("CFBundleIdentifier"));
  }
  /// The folder that holds what the bundle carries.
  const QString& resourcePath() const { return resourcePath_; }

 private:
  QVariantMap info_;
  QString resourcePath_;
};

}  // namespace velmora::platform
