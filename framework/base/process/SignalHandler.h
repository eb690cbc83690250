// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QSocketNotifier>
#include <functional>
#include <initializer_list>
#include <memory>
#include <vector>

#include "base/Export.h"

namespace velmora::base {

/// Ends a program in good order on a signal: SIGTERM (the end of a session, a shutdown, kill), SIGHUP (the
/// terminal is closed), SIGINT (Ctrl-C).
///
/// While a handler lives, the first of its signals calls `end` from the event loop of the thread that created
/// the handler, nested loops included. Further signals are ignored, unless one of them is to end the process.
/// A process has one handler at a time.
class VELMORA_EXPORT SignalHandler {
 public:
  struct Signal {
    int number;
    /// A second one ends the process at once. Not for SIGHUP, which arrives twice when a terminal is closed:
    /// from the shell and from the system.
    bool againEndsProcess = false;
    /// Handled even if the process was started with it ignored, as under nohup.
    bool evenIfIgnored = false;
  };

  SignalHandler(std::initializer_list<Signal> signals, std::function<void()> end);
  ~SignalHandler();
  SignalHandler(const SignalHandler&) = delete;
  SignalHandler& operator=(const SignalHandler&) = delete;

 private:
  void arrived();

  std::vector<Signal> signals_;
  std::function<void()> end_;
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace velmora::base
