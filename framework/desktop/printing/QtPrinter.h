// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include "platform/printing/Printing.h"

namespace velmora::platform {
class GraphicsContext;
class RunLoop;
}  // namespace velmora::platform

namespace velmora::desktop {

/// Prints a view on one page, scaled to fit it.
class QtPrinter : public platform::Printer {
 public:
  QtPrinter(platform::RunLoop& runLoop, platform::GraphicsContext& graphics)
      : runLoop_(runLoop), graphics_(graphics) {}

  base::Result<bool> printView(QWidget* view, const platform::PrintInfo& info, const QVariantMap& settings,
                               bool showPrintPanel) override;
  bool runPageSetup(platform::PrintInfo& info, QWidget* window) override;
  bool hasPrinter() const override;
  /// How many views have been printed so far.
  int printedViews() const { return printedViews_; }

 private:
  platform::RunLoop& runLoop_;
  platform::GraphicsContext& graphics_;
  int printedViews_ = 0;
};

}  // namespace velmora::desktop
