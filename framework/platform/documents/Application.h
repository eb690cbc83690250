// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include "base/Export.h"

namespace velmora::platform {

/// The running program.
class VELMORA_EXPORT Application {
 public:
  virtual ~Application() = default;
  /// Ends the main loop after the current event. Questions have been asked before this is called.
  virtual void stop() = 0;
  /// Shows the application's help.
  virtual void showHelp() = 0;
};

}  // namespace velmora::platform
