// SPDX-License-Identifier: LGPL-3.0-or-later
#include "apps/growth/reference/Lms.h"

#include <cmath>
#include <limits>
#include <numbers>

namespace growth {

namespace {

// Nearer to 0 than this, the power transformation and the logarithm agree to the last bit, and products with
// L begin to lose digits to underflow.
bool isLogarithmic(double L) { return std::abs(L) < 1e-20; }

std::optional<double> ifFinite(double number) {
  return std::isfinite(number) ? std::optional(number) : std::nullopt;
}

double standardNormalDensity(double z) { return std::exp(-0.5 * z * z) / std::sqrt(2.0 * std::numbers::pi); }

// The quantile for 0 < p <= 0.5.
double lowerQuantile(double p) {
  // A start to within 0.003: formula 26.2.22 of Abramowitz M, Stegun IA. Handbook of Mathematical Functions.
  // 1964.
  const double t = std::sqrt(-2.0 * std::log(p));
  double z = (2.30753 + 0.27061 * t) / (1.0 + t * (0.99229 + 0.04481 * t)) - t;
  // Halley's method on cdf(z) - p triples the number of right digits each time: 3, 9, all. The fourth step is
  // only there for tails near the smallest number a double holds.
  for (int step = 0; step < 4; ++step) {
    const double density = standardNormalDensity(z);
    if (density == 0.0) break;
    const double newton = (standardNormalCdf(z) - p) / density;
    const double correction = newton / (1.0 + 0.5 * z * newton);
    z -= correction;
    if (std::abs(correction) <= std::numeric_limits<double>::epsilon() * std::abs(z)) break;
  }
  return z;
}

}  // namespace

std::optional<double> zScoreOf(const Lms& lms, double value) {
  if (!std::isfinite(value) || value <= 0.0) return std::nullopt;
  const double logarithm = std::log(value / lms.M);
  if (isLogarithmic(lms.L)) return ifFinite(logarithm / lms.S);
  // expm1 keeps the digits that (value/M)^L - 1 would cancel where L is small or the value near the median.
  return ifFinite(std::expm1(lms.L * logarithm) / (lms.L * lms.S));
}

std::optional<double> valueOf(const Lms& lms, double z) {
  double logarithm = lms.S * z;
  if (!isLogarithmic(lms.L)) {
    const double power = lms.L * lms.S * z;
    if (!(power > -1.0)) return std::nullopt;
    logarithm = std::log1p(power) / lms.L;
  }
  const std::optional<double> value = ifFinite(lms.M * std::exp(logarithm));
  return value && *value > 0.0 ? value : std::nullopt;
}

double standardNormalCdf(double z) { return 0.5 * std::erfc(-z / std::numbers::sqrt2); }

double standardNormalQuantile(double p) {
  if (!(p >= 0.0 && p <= 1.0)) return std::numeric_limits<double>::quiet_NaN();
  if (p == 0.0) return -std::numeric_limits<double>::infinity();
  if (p == 1.0) return std::numeric_limits<double>::infinity();
  if (p == 0.5) return 0.0;
  return p < 0.5 ? lowerQuantile(p) : -lowerQuantile(1.0 - p);
}

double centileOf(double z) { return 100.0 * standardNormalCdf(z); }

}  // namespace growth
