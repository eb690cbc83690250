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
#include "testing/standins/Scripted.h"
#include "testing/standins/ScriptedScripts.h"
#include "testing/standins/ScriptedWeb.h"
#include "testing/standins/VirtualRunLoop.h"

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

namespace detail {

/// The first of the parts that is of that kind, or the stand-in.
template <typename Kind>
Kind& chosen(Kind& standIn) {
  return standIn;
}
template <typename Kind, typename Part, typename... Others>
Kind& chosen(Kind& standIn, Part& part, Others&... others) {
  if constexpr (std::is_base_of_v<std::remove_const_t<Kind>, Part>) {
    return part;
  } else {
    return chosen(standIn, others...);
  }
}

}  // namespace detail

/// The same services, but with these parts in the places of their kind; the parts outlive them.
template <typename... Parts>
platform::Services with(const platform::Services& services, Parts&... parts) {
  return {detail::chosen(services.defaults, parts...),
          detail::chosen(services.notificationCenter, parts...),
          detail::chosen(services.distributedCenter, parts...),
          detail::chosen(services.alerts, parts...),
          detail::chosen(services.panels, parts...),
          detail::chosen(services.workspace, parts...),
          detail::chosen(services.fileManager, parts...),
          detail::chosen(services.runLoop, parts...),
          detail::chosen(services.mainBundle, parts...),
          detail::chosen(services.printer, parts...),
          detail::chosen(services.sharedPrintInfo, parts...),
          detail::chosen(services.feedback, parts...),
          detail::chosen(services.graphics, parts...),
          detail::chosen(services.interfaceFiles, parts...),
          detail::chosen(services.application, parts...),
          detail::chosen(services.scripts, parts...),
          detail::chosen(services.web, parts...),
          nullptr};
}

}  // namespace velmora::testkit
