// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

namespace velmora::base {

/// Ends the application in good order when the system asks for it by a signal: SIGTERM (an end of the
/// session, a shutdown, kill) or SIGHUP (the terminal is closed).
///
/// While one of these lives the first such signal calls `end` on the main thread, from the event loop, nested
/// ones included. A second SIGTERM ends the process at once. SIGHUP does not: it comes twice when a terminal
/// is closed, from the shell and from the system. Who was started with SIGHUP ignored (nohup) goes on
/// ignoring it.
class EndSignals {
 public:
  explicit EndSignals(std::function<void()> end);
  ~EndSignals();
  EndSignals(const EndSignals&) = delete;
  EndSignals& operator=(const EndSignals&) = delete;

 private:
  void arrived();

  std::function<void()> end_;
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace velmora::base
