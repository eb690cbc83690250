// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

namespace velmora::platform {
struct Services;
}

namespace velmora {

/// What the application asks when it starts for the first time: whether to look for updates, and whether to
/// set the save folder up.
class FirstRunQuestions {
 public:
  explicit FirstRunQuestions(platform::Services& services) : services_(services) {}

  /// Whether they have never been asked.
  bool areDue() const;
  /// Asks, and stores the answers. False when the program ends while a question is open: then it starts no
  /// further.
  bool ask();

 private:
  bool askAboutUpdates();
  bool askAboutSaveFolder();
  void setUpSaveFolder();

  platform::Services& services_;
};

}  // namespace velmora
