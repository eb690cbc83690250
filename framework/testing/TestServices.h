// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QVariantMap>
#include <type_traits>

#include "base/files/FileManager.h"
#include "platform/Services.h"
#include "platform/bundles/Bundle.h"
#include "platform/controls/InterfaceFiles.h"
#include "platform/notifications/NotificationCenter.h"
#include "platform/printing/GraphicsContext.h"
#include "platform/printing/Printing.h"
#include "testing/Scripted.h"
#include "testing/ScriptedScripts.h"
#include "testing/ScriptedWeb.h"
#include "testing/VirtualRunLoop.h"

namespace velmora::testkit {

/// The parts of a test desktop that a test may want of another kind; it derives from this and names its own.
struct StandIns {
  using RunLoop = VirtualRunLoop;
  using Alerts = ScriptedAlerts;
  /// A reference where the alerts are the panels, too.
  using Panels = ScriptedPanels;
  using FileManager = base::FileManager;
};

/// A whole desktop of stand-ins, with the real file manager: what a test of documents is built on.
/// Files go wherever the settings and HOME of the test process point, so a test sets these to a folder of its
/// own.
template <typename Parts>
class TestDesktop {
 public:
  explicit TestDesktop(const QVariantMap& infoDictionary, const QString& resourcePath = {})
      : mainBundle(infoDictionary, resourcePath) {}

  typename Parts::RunLoop runLoop;
  MemoryUserDefaults defaults;
  platform::NotificationCenter notificationCenter;
  RecordingDistributedCenter distributedCenter{runLoop};
  typename Parts::Alerts alerts{runLoop};
  typename Parts::Panels panels = makePanels();
  RecordingWorkspace workspace;
  typename Parts::FileManager fileManager;
  platform::Bundle mainBundle;
  RecordingPrinter printer;
  platform::PrintInfo sharedPrintInfo;
  RecordingFeedback feedback;
  platform::GraphicsContext graphics;
  platform::InterfaceFiles interfaceFiles;
  RecordingApplication application;
  ScriptedScripts scripts;
  ScriptedWeb web{runLoop};
  platform::Services services{defaults,
                              notificationCenter,
                              distributedCenter,
                              alerts,
                              panels,
                              workspace,
                              fileManager,
                              runLoop,
                              mainBundle,
                              printer,
                              sharedPrintInfo,
                              feedback,
                              graphics,
                              interfaceFiles,
                              application,
                              scripts,
                              web,
                              nullptr};

 private:
  using Panels = typename Parts::Panels;
  Panels makePanels() {
    if constexpr (std::is_reference_v<Panels>) {
      return alerts;
    } else if constexpr (std::is_constructible_v<Panels, platform::RunLoop&>) {
      return Panels(runLoop);
    } else {
      return Panels();
    }
  }
};

using TestServices = TestDesktop<StandIns>;

/// Real parts in place of some of the stand-ins, which outlive them.
struct Replacements {
  platform::UserDefaults* defaults = nullptr;
  platform::DistributedNotificationCenter* distributedCenter = nullptr;
};

/// The same services, but for the parts given.
inline platform::Services with(const platform::Services& services, const Replacements& replacements) {
  return {replacements.defaults ? *replacements.defaults : services.defaults,
          services.notificationCenter,
          replacements.distributedCenter ? *replacements.distributedCenter : services.distributedCenter,
          services.alerts,
          services.panels,
          services.workspace,
          services.fileManager,
          services.runLoop,
          services.mainBundle,
          services.printer,
          services.sharedPrintInfo,
          services.feedback,
          services.graphics,
          services.interfaceFiles,
          services.application,
          services.scripts,
          services.web,
          nullptr};
}

}  // namespace velmora::testkit
