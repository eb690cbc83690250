// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QList>
#include <QPointF>
#include <QString>

/// One curve of the reference behind the patient's points.
struct OrvReferenceCurve {
  QString label;          ///< written at the right end of the curve, for example "50"
  QList<QPointF> points;  ///< in order of x; a point that is not finite interrupts the curve
  bool emphasised;        ///< drawn stronger than the others: the median
};

/// The part of an axis that is shown.
struct OrvGraphRange {
  double lower;
  double upper;
};
