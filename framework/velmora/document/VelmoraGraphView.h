// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QPointer>

#include "base/Export.h"
#include "orv/chart/OrvGraphView.h"

class VelmoraDocument;

/// The chart of a patient document. Every click on it is handed to the document, in the chart's data
/// coordinates. Applications subclass it, or use it as it is, and name it in their interface file
/// "VelmoraDocument".
class VELMORA_EXPORT VelmoraGraphView : public OrvGraphView {
 public:
  explicit VelmoraGraphView(QWidget* parent = nullptr);

  /// The document whose chart this is. The document itself connects it when its window loads.
  void setOwningDocument(VelmoraDocument* document);
  VelmoraDocument* owningDocument() const;

 protected:
  void mouseDown(QMouseEvent* event) override;

 private:
  QPointer<QObject> owner_;
  VelmoraDocument* owningDocument_ = nullptr;
};
