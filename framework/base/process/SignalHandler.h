// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

#include "base/Export.h"

namespace velmora::base {

/// Ends a program in good order on a signal: SIGTERM (the end of a session, a shutdown, kill), SIGHUP (the
/// terminal is closed), SIGINT (Ctrl-C).
///
/// While a handler lives, the first of its signals calls `end` from the event loop of the thread that created
/// the handler, nested loops included. Further signals are ignored, but for what Program says. A process has
/// one handler at a time.
class VELMORA_EXPORT SignalHandler {
 public:
  enum class Program {
    Desktop,  ///< ends on SIGTERM, of which a second one ends the process at once, and SIGHUP; on neither if
              ///< the process was started with it ignored, as under nohup
    Service,  ///< ends on SIGTERM and SIGINT, even if the process was started with them ignored
    Console,  ///< likewise, and on SIGHUP
  };

  SignalHandler(Program program, std::function<void()> end);
  ~SignalHandler();
  SignalHandler(const SignalHandler&) = delete;
  SignalHandler& operator=(const SignalHandler&) = delete;

 private:
  void arrived();

  Program program_;
  std::function<void()> end_;
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace velmora::base
