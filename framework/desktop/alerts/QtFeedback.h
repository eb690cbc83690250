// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include "platform/controls/Feedback.h"

namespace velmora::desktop {

class QtFeedback : public platform::Feedback {
 public:
  void beep() override;
  /// A short-lived cloud of a few grey puffs that takes no input and goes by itself.
  void showPoof(const QPoint& screenPoint) override;
};

}  // namespace velmora::desktop
