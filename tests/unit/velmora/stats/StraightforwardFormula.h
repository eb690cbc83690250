// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

/// Formula 26.2.23 of Abramowitz and Stegun, written down once more, term by term, in double precision.
double straightforwardZScore(double p);
