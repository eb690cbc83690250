// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include "platform/controls/Panels.h"

namespace velmora::platform {
class RunLoop;
}

namespace velmora::desktop {

/// Open and save panels as Qt's file dialogs.
class QtPanels : public platform::Panels {
 public:
  explicit QtPanels(platform::RunLoop& runLoop) : runLoop_(runLoop) {}

  int runModal(platform::OpenPanel& panel) override;
  int runModal(platform::SavePanel& panel) override;

 private:
  platform::RunLoop& runLoop_;
};

}  // namespace velmora::desktop
