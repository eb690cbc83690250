// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QSettings>
#include <memory>

#include "platform/settings/UserDefaults.h"

namespace velmora::platform {
class RunLoop;
}

namespace velmora::desktop {

/// The user's settings in an INI file named by the bundle identifier, in the user's configuration folder.
/// Before anything is written over a damaged file, it is kept beside under a name of its own, with the time
/// of the run loop.
class QtUserDefaults : public platform::UserDefaults {
 public:
  /// The run loop must outlive the settings.
  QtUserDefaults(const QString& bundleIdentifier, const platform::RunLoop& clock);

 protected:
  QVariant storedValue(const QString& key) const override;
  void storeValue(const QString& key, const QVariant& value) override;

 private:
  void synchronize() const;
  void forgetErrors() const;
  void closeToOthers() const;

  const platform::RunLoop& clock_;
  mutable std::unique_ptr<QSettings> settings_;
};

}  // namespace velmora::desktop
