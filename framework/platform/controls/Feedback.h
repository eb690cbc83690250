// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QPoint>

#include "base/Export.h"

namespace velmora::platform {

/// Sounds and animations by which the desktop answers without words.
class VELMORA_EXPORT Feedback {
 public:
  virtual ~Feedback() = default;
  /// Plays the system beep: what was asked cannot be done.
  virtual void beep() = 0;
  /// Shows a puff of smoke at a point of the screen: something has been removed for good.
  virtual void showPoof(const QPoint& screenPoint) = 0;
};

}  // namespace velmora::platform
