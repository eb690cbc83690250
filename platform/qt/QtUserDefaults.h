// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QSettings>

#include "platform/UserDefaults.h"

namespace platform::qt {

/// The user's settings in an INI file named by the bundle identifier, in the user's configuration folder.
class QtUserDefaults : public UserDefaults {
 public:
  explicit QtUserDefaults(const QString& bundleIdentifier);

 protected:
  QVariant storedValue(const QString& key) const override;
  void storeValue(const QString& key, const QVariant& value) override;

 private:
  mutable QSettings settings_;
};

}  // namespace platform::qt
