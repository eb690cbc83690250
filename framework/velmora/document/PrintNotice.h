// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDateTime>

namespace velmora::platform {
class Alerts;
class RunLoop;
}  // namespace velmora::platform

namespace velmora {

/// Tells the user that a record is about to be printed twice within 30 seconds.
class PrintNotice {
 public:
  PrintNotice(platform::Alerts& alerts, const platform::RunLoop& clock);

  /// Call it before each printing.
  void tellIfRecentlyPrinted();
  /// Call it when the record goes to the printer.
  void notePrinted();

 private:
  platform::Alerts& alerts_;
  const platform::RunLoop& clock_;
  QDateTime lastPrinted_;
};

}  // namespace velmora
