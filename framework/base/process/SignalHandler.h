// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QSocketNotifier>
#include <functional>
#include <initializer_list>
#include <memory>
#include <vector>

namespace velmora::base {

/// Ends a program in good order when it is asked to by a signal: SIGTERM (the end of a session, a shutdown,
/// kill), SIGHUP (the terminal is closed), SIGINT (Ctrl-C).
///
/// While one of these lives the first of its signals calls `end` on the thread that made it, from the event
/// loop, nested ones included. Later signals do nothing more, unless one is to end the process. A process has
/// one handler at a time.
class SignalHandler {
 public:
  struct Signal {
    int number;
    /// The second one ends the process at once. Not for SIGHUP, which comes twice when a terminal is closed:
    /// from the shell and from the system.
    bool againEndsProcess = false;
    /// Handled even when whoever started the program has it ignored, as nohup does with SIGHUP.
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
