// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QVariantMap>

#include "platform/Bundle.h"
#include "platform/FileManager.h"
#include "platform/GraphicsContext.h"
#include "platform/InterfaceFiles.h"
#include "platform/NotificationCenter.h"
#include "platform/Printing.h"
#include "platform/Services.h"
#include "platform/testing/Scripted.h"
#include "platform/testing/ScriptedScripts.h"
#include "platform/testing/ScriptedWeb.h"
#include "platform/testing/VirtualRunLoop.h"

namespace platform::testing {

/// A whole desktop of stand-ins, with the real file manager: what a test of documents is built on.
/// Files go wherever the settings and HOME of the test process point, so a test sets these to a folder of its
/// own.
struct TestServices {
  explicit TestServices(const QVariantMap& infoDictionary, const QString& resourcePath = {})
      : mainBundle(infoDictionary, resourcePath) {}

  VirtualRunLoop runLoop;
  MemoryUserDefaults defaults;
  NotificationCenter notificationCenter;
  RecordingDistributedCenter distributedCenter{runLoop};
  ScriptedAlerts alerts{runLoop};
  ScriptedPanels panels;
  RecordingWorkspace workspace;
  FileManager fileManager;
  Bundle mainBundle;
  RecordingPrinter printer;
  PrintInfo sharedPrintInfo;
  RecordingEffects effects;
  GraphicsContext graphics;
  InterfaceFiles interfaceFiles;
  RecordingApplication application;
  ScriptedScripts scripts;
  ScriptedWeb web{runLoop};
  Services services{defaults,
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
                    effects,
                    graphics,
                    interfaceFiles,
                    application,
                    scripts,
                    web,
                    nullptr};
};

}  // namespace platform::testing
