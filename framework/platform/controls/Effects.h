// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QPoint>

namespace velmora::platform {

/// The small signs that the desktop gives.
class Effects {
 public:
  virtual ~Effects() = default;
  /// The system beep: what was asked cannot be done here.
  virtual void beep() = 0;
  /// A puff of smoke at a point of the screen: something has gone for good.
  virtual void showPoof(const QPoint& screenPoint) = 0;
};

}  // namespace velmora::platform
