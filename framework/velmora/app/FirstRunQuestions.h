// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>

namespace velmora::base {
class FileManager;
}
namespace velmora::platform {
class Alerts;
class Bundle;
class UserDefaults;
}  // namespace velmora::platform

namespace velmora {

/// What the application asks when it starts for the first time: whether to look for updates, and whether to
/// set the save folder up.
class FirstRunQuestions {
 public:
  FirstRunQuestions(platform::UserDefaults& defaults, platform::Alerts& alerts, base::FileManager& files,
                    const platform::Bundle& bundle)
      : defaults_(defaults), alerts_(alerts), files_(files), bundle_(bundle) {}

  /// Whether they have never been asked.
  bool areDue() const;
  /// Asks, and stores the answers. False when the program ends while a question is open: then it starts no
  /// further.
  bool ask();

 private:
  bool askAboutUpdates();
  bool askAboutSaveFolder();
  void setUpSaveFolder();
  QString applicationName() const;

  platform::UserDefaults& defaults_;
  platform::Alerts& alerts_;
  base::FileManager& files_;
  const platform::Bundle& bundle_;
};

}  // namespace velmora
