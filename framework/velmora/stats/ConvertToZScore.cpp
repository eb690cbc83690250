// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/stats/ConvertToZScore.h"

#include <cmath>

namespace {

// Formula 26.2.23.
constexpr double c0 = 2.515517;
constexpr double c1 = 0.802853;
constexpr double c2 = 0.010328;
constexpr double d1 = 1.432788;
constexpr double d2 = 0.189269;
constexpr double d3 = 0.001308;

}  // namespace

double ConvertToZScore(double p) noexcept {
  const bool upper = p > 0.5;  // false, too, for what is not a number
  const double q = upper ? 1.0 - p : p;
  const double sign = upper ? -1.0 : 1.0;
  // The order of these steps is part of the result: it is kept to the last bit.
  const double t = std::sqrt(std::log(1.0 / (q * q)));
  const double t2 = t * t;
  const double t3 = t2 * t;
  const double numerator = c2 * t2 + (c1 * t + c0);
  const double denominator = d3 * t3 + (d2 * t2 + (d1 * t + 1.0));
  return (t - numerator / denominator) * sign;
}
