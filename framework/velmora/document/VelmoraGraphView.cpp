// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/document/VelmoraGraphView.h"

#include <QMouseEvent>

#include "base/log/Guard.h"
#include "velmora/document/VelmoraDocument.h"

using namespace velmora;

VelmoraGraphView::VelmoraGraphView(QWidget* parent) : OrvGraphView(parent) {}

void VelmoraGraphView::setOwningDocument(VelmoraDocument* document) {
  owner_ = document;
  owningDocument_ = document;
  setHighlightVisibility([this] { return owningDocument() && owningDocument()->shouldShowGraphHilite(); });
}

VelmoraDocument* VelmoraGraphView::owningDocument() const { return owner_ ? owningDocument_ : nullptr; }

void VelmoraGraphView::mouseDown(QMouseEvent* event) {
  OrvGraphView::mouseDown(event);
  VelmoraDocument* document = owningDocument();
  if (!document) return;
  const QPointF point = coordinateForPoint(event->position());
  base::guarded("chart click", [&] { document->setCurrentRecordFromClick(point); });
}
