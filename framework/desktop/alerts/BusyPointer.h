// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QCursor>
#include <QGuiApplication>

namespace velmora::desktop {

/// While one lives the pointer shows that the application is busy.
class BusyPointer {
 public:
  BusyPointer() { QGuiApplication::setOverrideCursor(Qt::BusyCursor); }
  ~BusyPointer() { QGuiApplication::restoreOverrideCursor(); }
  BusyPointer(const BusyPointer&) = delete;
  BusyPointer& operator=(const BusyPointer&) = delete;
};

}  // namespace velmora::desktop
