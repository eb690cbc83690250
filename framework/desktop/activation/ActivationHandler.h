// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <functional>

#include "desktop/activation/ActivationRequest.h"

namespace velmora::platform {
class DocumentController;
class Printer;
}  // namespace velmora::platform

namespace velmora::desktop {

/// Carries out on the application what is asked of it, at its start and while it runs.
class ActivationHandler {
 public:
  ActivationHandler(platform::Printer& printer, platform::DocumentController& controller)
      : printer_(printer), controller_(controller) {}

  /// Starts the application with the request that it was started for: interface loaded, the files named (or
  /// an untitled document) opened, launch finished. Printing is not a start; that is printAlone().
  void start(const ActivationRequest& first);

  /// What a running application does. False while it is ending: then nothing was done.
  bool carryOut(const ActivationRequest& request);

  /// Prints the files without anything else that belongs to a start: nothing is asked, nothing is listened
  /// to. What does not print is told on standard error. `printedViews` counts what has been printed. The exit
  /// status of the program.
  int printAlone(const QStringList& files, const std::function<int()>& printedViews);

 private:
  void bringToFront();

  platform::Printer& printer_;
  platform::DocumentController& controller_;
};

/// While an alert is open a request waits; this shows the user what it waits for. Main thread.
void raiseWhatIsAsked();

}  // namespace velmora::desktop
