// SPDX-License-Identifier: LGPL-3.0-or-later
#include "orv/chart/GraphRanges.h"

#include <algorithm>
#include <cmath>

namespace velmora::orv {

namespace {

constexpr double largestBound = 1e12;
// Shorter ranges leave no digits for ticks.
constexpr double smallestPart = 1e-9;
constexpr double farthestGrowth = 2.0;  ///< in lengths of the range
constexpr double clearance = 0.02;      ///< between a point and the frame, in lengths of the range
constexpr double stepsInRange = 10.0;

// 1, 2 or 5 times a power of ten, not above `length`.
double roundStep(double length) {
  const double power = std::pow(10.0, std::floor(std::log10(length)));
  for (const double factor : {5.0, 2.0}) {
    if (factor * power <= length) return factor * power;
  }
  return power;
}

}  // namespace

OrvGraphRange usableGraphRange(OrvGraphRange range) {
  if (range.lower > range.upper) std::swap(range.lower, range.upper);
  const double largest = std::max(std::abs(range.lower), std::abs(range.upper));
  // Written so that a bound that is not a number fails, too.
  const bool isUsable = largest <= largestBound && range.upper - range.lower > smallestPart * largest &&
                        range.upper - range.lower >= 1e-9;
  return isUsable ? range : OrvGraphRange{0, 1};
}

OrvGraphRange grownGraphRange(OrvGraphRange range, const QList<double>& values) {
  const double length = range.upper - range.lower;
  double lowest = range.lower;
  double highest = range.upper;
  for (const double value : values) {
    if (!(std::abs(value - std::clamp(value, range.lower, range.upper)) <= farthestGrowth * length)) continue;
    lowest = std::min(lowest, value);
    highest = std::max(highest, value);
  }
  const double step = roundStep(length / stepsInRange);
  OrvGraphRange grown = range;
  if (lowest < range.lower) grown.lower = std::floor((lowest - clearance * length) / step) * step;
  if (highest > range.upper) grown.upper = std::ceil((highest + clearance * length) / step) * step;
  return grown;
}

}  // namespace velmora::orv
