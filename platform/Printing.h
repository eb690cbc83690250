// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>
#include <QVariantMap>

class QWidget;

namespace platform {

/// How pages are laid out. One object serves the whole application.
struct PrintInfo {
  enum class Orientation { Portrait = 0, Landscape = 1 };
  enum class Pagination { Auto = 0, Fit = 1, Clip = 2 };

  Orientation orientation = Orientation::Portrait;
  Pagination horizontalPagination = Pagination::Clip;
  Pagination verticalPagination = Pagination::Auto;
};

/// Puts a view on paper, or into a PDF file.
class Printer {
 public:
  virtual ~Printer() = default;

  /// Prints `view`, with the title of its window at the head of the page. `settings` may hold "OutputFile" (a
  /// path: print into that PDF file) and "PrinterName". Without a panel nothing is asked. False when the user
  /// cancelled or nothing could be printed; then `error` says why, unless it was the user.
  virtual bool printView(QWidget* view, const PrintInfo& info, const QVariantMap& settings,
                         bool showPrintPanel, QString* error) = 0;
};

}  // namespace platform
