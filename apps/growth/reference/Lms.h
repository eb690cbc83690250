// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <optional>

namespace growth {

/// The three numbers that describe how a measurement is distributed among children of one sex and age: the
/// power L that makes it normal, its median M and its coefficient of variation S. Source: Cole TJ, Green PJ.
/// Smoothing reference centile curves: the LMS method and penalized likelihood. Statistics in Medicine
/// 1992;11(10):1305-1319.
struct Lms {
  double L;
  double M;  ///< in the unit of the measurement, above 0
  double S;  ///< above 0

  bool operator==(const Lms&) const = default;
};

/// How many standard deviations `value` lies above the median: ((value/M)^L - 1) / (L S), or ln(value/M) / S
/// for L = 0. Nothing for a value that is not a positive finite number, or whose z is beyond what a double
/// holds.
std::optional<double> zScoreOf(const Lms& lms, double value);

/// The value that has this z: M (1 + L S z)^(1/L), or M exp(S z) for L = 0. Nothing where the distribution
/// does not reach: 1 + L S z is not positive, or the value leaves the positive finite numbers.
std::optional<double> valueOf(const Lms& lms, double z);

/// The share of the standard normal distribution that lies below z, 0 to 1. Accurate far into the lower tail.
double standardNormalCdf(double z);

/// The z below which the share `p` of the standard normal distribution lies, to about 1e-15 of its size.
/// Minus infinity at 0, infinity at 1, not a number outside.
double standardNormalQuantile(double p);

/// The percentage of the reference children below z, 0 to 100.
double centileOf(double z);

}  // namespace growth
