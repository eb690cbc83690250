// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>
#include <memory>

#include "base/Export.h"
#include "platform/Services.h"

namespace velmora::desktop {

/// The real desktop: makes every service once, and runs the application on it.
///
///     int main(int argc, char** argv) {
///       desktop::prepareSessionBus();
///       QApplication application(argc, argv);
///       desktop::Desktop desktop("growth");
///       ...  // a document controller made with desktop.services()
///       return desktop.run(controller);
///     }
class VELMORA_EXPORT Desktop {
 public:
  /// `name` is the program's name: its bundle stands in ../share/<name> beside the folder of the program.
  explicit Desktop(const QString& name);
  ~Desktop();
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;

  platform::Services& services();

  /// Starts the application: interface loaded, the files named on the command line (or an untitled document)
  /// opened, launch finished; then the main loop. Returns the exit status.
  int run(platform::DocumentController& controller);

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace velmora::desktop
