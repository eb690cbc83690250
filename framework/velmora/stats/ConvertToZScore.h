// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

/// The standard normal deviate (z-score) above which the tail probability `p` lies: small p, positive z
/// (0.025 gives about 1.9604). A caller with a lower-tail percentile passes 1 - percentile.
///
/// The rational approximation 26.2.23 of Abramowitz M, Stegun IA (editors), Handbook of Mathematical
/// Functions, National Bureau of Standards, 1964, p. 933; absolute error below 4.5e-4. Nothing is rejected:
/// 0, 1, NaN and what is so small that its square vanishes (below about 7.5e-155) give NaN, values outside
/// [0, 1] a finite number without meaning. Pure, and so thread-safe.
extern "C" __attribute__((visibility("default"))) double ConvertToZScore(double p) noexcept;
