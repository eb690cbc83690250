// SPDX-License-Identifier: LGPL-3.0-or-later
#include "platform/qt/QtPrinter.h"

#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QWidget>

#include "platform/GraphicsContext.h"
#include "platform/Localization.h"
#include "platform/RunLoop.h"

namespace platform::qt {

namespace {

/// Draws title and view on the page of `printer`.
void drawPage(QPainter& painter, const QPrinter& printer, QWidget* view, const PrintInfo& info) {
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
  if (info.horizontalPagination == PrintInfo::Pagination::Fit)
    scale = std::min(scale, area.width() / view->width());
  if (info.verticalPagination == PrintInfo::Pagination::Fit)
    scale = std::min(scale, area.height() / view->height());
  painter.translate(area.topLeft());
  painter.scale(scale, scale);
  view->render(&painter, QPoint(), QRegion(), QWidget::DrawChildren);
}

}  // namespace

bool QtPrinter::printView(QWidget* view, const PrintInfo& info, const QVariantMap& settings,
                          bool showPrintPanel, QString* error) {
  const auto fail = [error](const QString& reason) {
    if (error) *error = reason;
    return false;
  };
  if (!view || view->width() <= 0 || view->height() <= 0) {
    return fail(localizedString("Document", "There is nothing to print."));
  }
  const QString outputFile = settings.value(QStringLiteral("OutputFile")).toString();
  QPrinter printer(QPrinter::HighResolution);
  printer.setPageOrientation(info.orientation == PrintInfo::Orientation::Landscape ? QPageLayout::Landscape
                                                                                   : QPageLayout::Portrait);
  printer.setDocName(view->window()->windowTitle().remove(QStringLiteral("[*]")));
  if (!outputFile.isEmpty()) {
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(outputFile);
  } else if (const QString name = settings.value(QStringLiteral("PrinterName")).toString(); !name.isEmpty()) {
    printer.setPrinterName(name);
  }
  if (showPrintPanel) {
    const RunLoop::ModalSession session(runLoop_);
    QPrintDialog dialog(&printer, view->window());
    if (dialog.exec() != QDialog::Accepted) return fail(QString());
  } else if (outputFile.isEmpty() && QPrinterInfo::availablePrinters().isEmpty()) {
    return fail(localizedString("Document", "There is no printer."));
  }

  const GraphicsContext::OffScreen offScreen(graphics_);
  QPainter painter;
  if (!painter.begin(&printer)) return fail(localizedString("Document", "The printer could not be started."));
  drawPage(painter, printer, view, info);
  if (!painter.end() || printer.printerState() == QPrinter::Error) {
    return fail(localizedString("Document", "The printer reported an error."));
  }
  return true;
}

}  // namespace platform::qt
