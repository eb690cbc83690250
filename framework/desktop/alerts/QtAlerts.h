// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include "platform/controls/Alert.h"

class QMessageBox;

namespace velmora::platform {
class RunLoop;
}

namespace velmora::desktop {

/// Alerts as message boxes.
class QtAlerts : public platform::Alerts {
 public:
  explicit QtAlerts(platform::RunLoop& runLoop) : runLoop_(runLoop) {}

  int runModal(const platform::Alert& alert) override;
  void beginSheetModalForWindow(const platform::Alert& alert, QWidget* window, const QObject* owner,
                                DidEnd didEnd) override;

 private:
  platform::RunLoop& runLoop_;
};

}  // namespace velmora::desktop
