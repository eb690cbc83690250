// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <functional>

#include "desktop/activation/ActivationRequest.h"

namespace velmora::platform {
class DocumentController;
class Printer;
}  // namespace velmora::platform

namespace velmora::desktop {

/// Carries out the requests of the desktop on the application, when it starts and while it runs.
class ActivationHandler {
 public:
  ActivationHandler(platform::Printer& printer, platform::DocumentController& controller)
      : printer_(printer), controller_(controller) {}

  /// Starts the application with the request that it was started for: interface loaded, the files named (or
  /// an untitled document) opened, launch finished. Printing is not a start; that is printAlone().
  void start(const ActivationRequest& first);

  /// Carries out a request to the running application. Returns false, having done nothing, while it is
  /// ending.
  bool carryOut(const ActivationRequest& request);

  /// Prints the files without anything else that belongs to a start: nobody is asked, and no request is
  /// heard. Says on standard error what cannot be printed. `printedViews` counts what has been printed.
  /// Returns the exit status of the program.
  int printAlone(const QStringList& files, const std::function<int()>& printedViews);

 private:
  void bringToFront();

  platform::Printer& printer_;
  platform::DocumentController& controller_;
};

/// Raises the alert that is open, if any, for which a request waits. Main thread only.
void raiseWhatIsAsked();

}  // namespace velmora::desktop
