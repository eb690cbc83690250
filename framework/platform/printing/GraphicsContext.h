// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include "base/Export.h"

namespace velmora::platform {

/// Tells drawing code what it draws for. A window is drawn for the screen, except while it is grabbed for an
/// image or printed; marks that belong to the screen alone (the highlight of the current examination) ask
/// here.
class VELMORA_EXPORT GraphicsContext {
 public:
  bool currentContextDrawingToScreen() const { return offScreen_ == 0; }

  /// While one of these lives, drawing is not for the screen.
  class OffScreen {
   public:
    explicit OffScreen(GraphicsContext& context) : context_(context) { ++context_.offScreen_; }
    ~OffScreen() { --context_.offScreen_; }
    OffScreen(const OffScreen&) = delete;
    OffScreen& operator=(const OffScreen&) = delete;

   private:
    GraphicsContext& context_;
  };

 private:
  int offScreen_ = 0;
};

}  // namespace velmora::platform
