// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QVariantMap>

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

/// A whole desktop of stand-ins, with the real file manager: what a test of documents is built on.
/// Files go wherever the settings and HOME of the test process point, so a test sets these to a folder of its
/// own.
struct TestServices {
  explicit TestServices(const QVariantMap& infoDictionary, const QString& resourcePath = {})
      : mainBundle(infoDictionary, resourcePath) {}

  VirtualRunLoop runLoop;
  MemoryUserDefaults defaults;
  platform::NotificationCenter notificationCenter;
  RecordingDistributedCenter distributedCenter{runLoop};
  ScriptedAlerts alerts{runLoop};
  ScriptedPanels panels;
  RecordingWorkspace workspace;
  base::FileManager fileManager;
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
};

}  // namespace velmora::testkit
