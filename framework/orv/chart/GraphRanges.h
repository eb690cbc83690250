// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QList>

#include "orv/chart/OrvGraphData.h"

namespace velmora::orv {

/// A range that can be drawn: turned the right way round, or 0 to 1 when it is not finite, empty, or beyond
/// 1e12.
OrvGraphRange usableGraphRange(OrvGraphRange range);

/// `range`, grown to whole steps of a tick so that the values stand a little inside it. Values further away
/// than twice the length of the range, and values that are not finite, do not make it grow.
OrvGraphRange grownGraphRange(OrvGraphRange range, const QList<double>& values);

}  // namespace velmora::orv
