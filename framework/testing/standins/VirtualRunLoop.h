// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include "base/Export.h"
#include "platform/runloop/RunLoop.h"

namespace velmora::testkit {

/// A run loop whose time passes only when a test says so.
class VELMORA_EXPORT VirtualRunLoop : public platform::RunLoop {
 public:
  /// Starts at 2024-05-02 10:00, local time.
  VirtualRunLoop();

  QDateTime now() const override;
  double uptime() const override { return uptime_; }

  /// Lets `seconds` pass, running what falls due in between, each call at its own time. While a modal session
  /// is open time passes and nothing runs.
  void advance(double seconds);
  /// Runs what is due now, and what that in turn makes due now, until nothing is.
  void settle() { advance(0); }

  /// Called where work in a modal session lets the windows have their turn: what the user does then. The
  /// windows themselves are left alone.
  std::function<void()> whileProcessingEvents;

 protected:
  void scheduleChanged() override {}
  void processWindowEvents() override {
    if (whileProcessingEvents) whileProcessingEvents();
  }

 private:
  QDateTime start_;
  double uptime_ = 1000;
};

}  // namespace velmora::testkit
