// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include "platform/printing/Printing.h"

namespace platform {
class GraphicsContext;
class RunLoop;
}  // namespace platform

namespace platform::qt {

/// Prints a view on one page, scaled to fit it.
class QtPrinter : public Printer {
 public:
  QtPrinter(RunLoop& runLoop, GraphicsContext& graphics) : runLoop_(runLoop), graphics_(graphics) {}

  bool printView(QWidget* view, const PrintInfo& info, const QVariantMap& settings, bool showPrintPanel,
                 QString* error) override;
  bool runPageSetup(PrintInfo& info, QWidget* window) override;
  bool hasPrinter() const override;
  /// How many views have been printed so far.
  int printedViews() const { return printedViews_; }

 private:
  RunLoop& runLoop_;
  GraphicsContext& graphics_;
  int printedViews_ = 0;
};

}  // namespace platform::qt
