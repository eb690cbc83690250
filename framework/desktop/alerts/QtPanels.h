// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include "platform/controls/Panels.h"

namespace platform {
class RunLoop;
}

namespace platform::qt {

/// Open and save panels as Qt's file dialogs.
class QtPanels : public Panels {
 public:
  explicit QtPanels(RunLoop& runLoop) : runLoop_(runLoop) {}

  int runModal(OpenPanel& panel) override;
  int runModal(SavePanel& panel) override;

 private:
  RunLoop& runLoop_;
};

}  // namespace platform::qt
