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

/// Asks, at the first start of the application, whether to look for updates and whether to set up the save
/// folder.
class FirstRunQuestions {
 public:
  FirstRunQuestions(platform::UserDefaults& defaults, platform::Alerts& alerts, base::FileManager& files,
                    const platform::Bundle& bundle)
      : defaults_(defaults), alerts_(alerts), files_(files), bundle_(bundle) {}

  /// Whether they have never been asked.
  bool areDue() const;
  /// Asks, and stores the answers. Returns false when the program ends while a question is open: then it must
  /// start no further.
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
