// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include "platform/controls/Alert.h"

class QMessageBox;

namespace platform {
class RunLoop;
}

namespace platform::qt {

/// Alerts as message boxes.
class QtAlerts : public Alerts {
 public:
  explicit QtAlerts(RunLoop& runLoop) : runLoop_(runLoop) {}

  int runModal(const Alert& alert) override;
  void beginSheetModalForWindow(const Alert& alert, QWidget* window, const QObject* owner,
                                DidEnd didEnd) override;

 private:
  RunLoop& runLoop_;
};

}  // namespace platform::qt
