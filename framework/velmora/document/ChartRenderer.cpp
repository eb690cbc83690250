// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/document/ChartRenderer.h"

#include <QCoreApplication>
#include <QHoverEvent>
#include <QScopeGuard>
#include <QTabBar>
#include <QTabWidget>

#include "orv/chart/JpegEncoder.h"
#include "platform/printing/GraphicsContext.h"

namespace velmora {

namespace {

constexpr int BestQuality = 100;

void repaint(QTabWidget* charts) {
  if (!charts) return;
  charts->repaint();
  // A chart covers what is behind it, so it is not painted with it.
  for (QWidget* inside : charts->findChildren<QWidget*>()) {
    if (inside->isVisible()) inside->repaint();
  }
}

}  // namespace

QByteArray ChartRenderer::jpegOf(QTabWidget* charts) {
  highlightAllowed_ = false;
  const auto showAgain = qScopeGuard([this, charts] {
    highlightAllowed_ = true;
    repaint(charts);
  });
  repaint(charts);
  if (!charts) return {};
  // Where mouse and keyboard happen to be is no part of the chart.
  QTabBar* tabs = charts->tabBar();
  QHoverEvent leave(QEvent::HoverLeave, QPointF(-1, -1), QPointF(-1, -1), QPointF(-1, -1));
  QCoreApplication::sendEvent(tabs, &leave);
  const bool focused = tabs->hasFocus();
  if (focused) tabs->clearFocus();
  const auto focusAgain = qScopeGuard([tabs, focused] {
    if (focused) tabs->setFocus(Qt::OtherFocusReason);
  });
  const platform::GraphicsContext::OffScreen offScreen(graphics_);
  return orv::encodeJpeg(charts->grab().toImage(), BestQuality);
}

bool ChartRenderer::mayShowHighlight() const {
  return highlightAllowed_ && graphics_.currentContextDrawingToScreen();
}

}  // namespace velmora
