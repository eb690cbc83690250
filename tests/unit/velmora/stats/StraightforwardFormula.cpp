// SPDX-License-Identifier: LGPL-3.0-or-later
#include "tests/unit/velmora/stats/StraightforwardFormula.h"

#include <cmath>

double straightforwardZScore(double p) {
  double q;
  double s;
  if (p > 0.5) {
    q = 1.0 - p;
    s = -1.0;
  } else {
    q = p;
    s = 1.0;
  }
  double square = q * q;
  double reciprocal = 1.0 / square;
  double logarithm = std::log(reciprocal);
  double t = std::sqrt(logarithm);

  double n = 0.802853 * t;
  n = n + 2.515517;
  n = 0.010328 * (t * t) + n;

  double d = 1.432788 * t;
  d = d + 1.0;
  d = 0.189269 * (t * t) + d;
  d = 0.001308 * (t * t * t) + d;

  double z = t - n / d;
  return z * s;
}
