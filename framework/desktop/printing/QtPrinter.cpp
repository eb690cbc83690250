// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/printing/QtPrinter.h"

#include <QGuiApplication>
#include <QPageSetupDialog>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QWidget>

#include "platform/printing/GraphicsContext.h"
#include "platform/runloop/RunLoop.h"
#include "platform/text/Localization.h"

namespace velmora::desktop {

namespace {

/// Draws title and view on the page of `printer`.
void drawPage(QPainter& painter, const QPrinter& printer, QWidget* view, const platform::PrintInfo& info) {
  const QRectF page = printer.pageLayout().paintRectPixels(printer.resolution());
  QRectF area(QPointF(0, 0), page.size());
  const QString title = view->window()->windowTitle().remove(QStringLiteral("[*]"));
  if (!title.isEmpty()) {
    QFont font = view->font();
    font.setPointSize(14);
    font.setBold(true);
    painter.setFont(font);
    QRectF used;
    painter.drawText(area, Qt::AlignLeft | Qt::AlignTop, title, &used);
    area.setTop(used.bottom() + used.height() * 0.5);
  }
  // Fit shrinks and never enlarges beyond the page; what does not fit is otherwise cut off by it.
  double scale = 1.0 * printer.resolution() / view->logicalDpiX();
  if (info.horizontalPagination == platform::PrintInfo::Pagination::Fit)
    scale = std::min(scale, area.width() / view->width());
  if (info.verticalPagination == platform::PrintInfo::Pagination::Fit)
    scale = std::min(scale, area.height() / view->height());
  painter.translate(area.topLeft());
  painter.scale(scale, scale);
  view->render(&painter, QPoint(), QRegion(), QWidget::DrawChildren);
}

QPageLayout::Orientation orientationOf(const platform::PrintInfo& info) {
  return info.orientation == platform::PrintInfo::Orientation::Landscape ? QPageLayout::Landscape
                                                                         : QPageLayout::Portrait;
}

/// Gives the printer the pages that `info` asks for.
void layOut(QPrinter& printer, const platform::PrintInfo& info) {
  if (info.pageLayout.isValid()) printer.setPageLayout(info.pageLayout);
  printer.setPageOrientation(orientationOf(info));
}

}  // namespace

bool QtPrinter::hasPrinter() const { return !QPrinterInfo::availablePrinters().isEmpty(); }

bool QtPrinter::runPageSetup(platform::PrintInfo& info, QWidget* window) {
  const platform::RunLoop::ModalSession session(runLoop_);
  QPrinter printer(QPrinter::HighResolution);
  layOut(printer, info);
  QPageSetupDialog dialog(&printer, window);
  if (dialog.exec() != QDialog::Accepted) return false;
  info.pageLayout = printer.pageLayout();
  info.orientation = info.pageLayout.orientation() == QPageLayout::Landscape
                         ? platform::PrintInfo::Orientation::Landscape
                         : platform::PrintInfo::Orientation::Portrait;
  return true;
}

base::Result<bool> QtPrinter::printView(QWidget* view, const platform::PrintInfo& info,
                                        const QVariantMap& settings, bool showPrintPanel) {
  if (!view || view->width() <= 0 || view->height() <= 0) {
    return base::Failure{platform::localizedString("Document", "There is nothing to print.")};
  }
  const QString outputFile = settings.value(QStringLiteral("OutputFile")).toString();
  QPrinter printer(QPrinter::HighResolution);
  // The window's title names the patient, and everybody can read the names of the jobs in a print queue.
  printer.setDocName(QGuiApplication::applicationDisplayName());
  if (!outputFile.isEmpty()) {
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(outputFile);
  } else if (const QString name = settings.value(QStringLiteral("PrinterName")).toString(); !name.isEmpty()) {
    printer.setPrinterName(name);
  }
  layOut(printer, info);  // after the printer is known: another one may bring papers of its own
  if (showPrintPanel) {
    const platform::RunLoop::ModalSession session(runLoop_);
    QPrintDialog dialog(&printer, view->window());
    if (dialog.exec() != QDialog::Accepted) return false;
  } else if (outputFile.isEmpty() && !hasPrinter()) {
    return base::Failure{platform::localizedString("Document", "There is no printer.")};
  }

  const platform::GraphicsContext::OffScreen offScreen(graphics_);
  QPainter painter;
  if (!painter.begin(&printer))
    return base::Failure{platform::localizedString("Document", "The printer could not be started.")};
  drawPage(painter, printer, view, info);
  if (!painter.end() || printer.printerState() == QPrinter::Error) {
    return base::Failure{platform::localizedString("Document", "The printer reported an error.")};
  }
  ++printedViews_;
  return true;
}

}  // namespace velmora::desktop
