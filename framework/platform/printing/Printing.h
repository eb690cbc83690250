// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QPageLayout>
#include <QString>
#include <QVariantMap>

#include "base/Export.h"
#include "base/Result.h"

class QWidget;

namespace velmora::platform {

/// How pages are laid out. One object serves the whole application.
struct PrintInfo {
  enum class Orientation { Portrait = 0, Landscape = 1 };
  enum class Pagination { Auto = 0, Fit = 1, Clip = 2 };

  Orientation orientation = Orientation::Portrait;
  Pagination horizontalPagination = Pagination::Clip;
  Pagination verticalPagination = Pagination::Auto;
  /// Paper and margins; invalid while nobody has chosen any: then they are the printer's own. The orientation
  /// is the one above, not that of the layout.
  QPageLayout pageLayout;
};

/// Puts a view on paper, or into a PDF file.
class VELMORA_EXPORT Printer {
 public:
  virtual ~Printer() = default;

  /// Prints `view`, with the title of its window at the head of the page. `settings` may hold "OutputFile" (a
  /// path: print into that PDF file) and "PrinterName". Without a panel nothing is asked. Returns false when
  /// the user cancels.
  virtual base::Result<bool> printView(QWidget* view, const PrintInfo& info, const QVariantMap& settings,
                                       bool showPrintPanel) = 0;
  /// Lets the user choose paper, margins and orientation, beginning with what `info` says, over `window`
  /// where one is given. Returns false, and leaves `info` as it was, when the user cancels. The base has
  /// nothing to choose from.
  virtual bool runPageSetup(PrintInfo& /*info*/, QWidget* /*window*/) { return false; }
  /// Whether there is a printer to print on when nobody can be asked for one.
  virtual bool hasPrinter() const { return true; }
};

}  // namespace velmora::platform
