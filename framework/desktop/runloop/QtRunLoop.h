// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QTimer>

#include "platform/runloop/RunLoop.h"

namespace velmora::desktop {

/// The run loop on Qt's event loop. Made on the main thread, after the application object.
class QtRunLoop : public platform::RunLoop {
 public:
  QtRunLoop();

  QDateTime now() const override { return QDateTime::currentDateTime(); }
  double uptime() const override;

 protected:
  void scheduleChanged() override;
  void processWindowEvents() override;

 private:
  void rearm();

  QElapsedTimer clock_;
  QTimer timer_;
};

}  // namespace velmora::desktop
