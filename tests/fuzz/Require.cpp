// SPDX-License-Identifier: LGPL-3.0-or-later
#include <cstdio>
#include <cstdlib>

#include "tests/fuzz/FuzzTargets.h"

void fuzz::require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}
