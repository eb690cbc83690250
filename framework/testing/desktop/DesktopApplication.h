// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <thread>

#include "desktop/alerts/QtAlerts.h"
#include "desktop/alerts/QtPanels.h"
#include "desktop/runloop/QtRunLoop.h"
#include "testing/application/RecordApplication.h"
#include "testing/standins/LogRecorder.h"

namespace velmora::testkit {

/// A desktop with the real run loop, alerts and panels; the rest are stand-ins.
struct RealParts : StandIns {
  using RunLoop = desktop::QtRunLoop;
  using Alerts = desktop::QtAlerts;
  using Panels = desktop::QtPanels;
};

/// The test application on that desktop, saving automatically, as its user has it after some days.
class DesktopApplication : public BasicRecordApplication<RealParts> {
 public:
  DesktopApplication() {
    desktop.defaults.registerDefaults({{settings::VersionCheckInterval, 31}, {settings::AutoSave, true}});
  }

  /// Puts a record with two examinations into the save folder, and the cache knows it.
  void keepRecord(const QString& name) {
    BasicRecordApplication::keepRecord(name, {QStringLiteral("01/02/2023"), QStringLiteral("01/02/2024")});
  }
  /// The viewer tells of a study, from a thread of its own as the real centre does.
  void chooseStudy(const QString& identifier) {
    std::thread([&] { deliver(study(identifier)); }).join();
  }

  LogRecorder log;
};

}  // namespace velmora::testkit
