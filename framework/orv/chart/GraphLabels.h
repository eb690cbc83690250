// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QList>

namespace velmora::orv {

/// Places for labels that stand below each other: as near as possible to the places wanted (in rising order),
/// at least `spacing` apart, and between `lowest` and `highest` as far as there is room.
QList<double> spreadLabels(const QList<double>& wanted, double spacing, double lowest, double highest);

}  // namespace velmora::orv
