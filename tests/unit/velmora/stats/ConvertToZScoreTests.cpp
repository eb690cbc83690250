// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/stats/ConvertToZScore.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include "tests/unit/velmora/stats/StraightforwardFormula.h"

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

/// Probabilities from 1e-300 to 1 - 1e-16, close together where charts need them.
std::vector<double> probabilities() {
  std::vector<double> all;
  for (int exponent = -300; exponent < -4; ++exponent) {
    for (const double factor : {1.0, 2.3, 7.7}) all.push_back(factor * std::pow(10.0, exponent));
  }
  for (int i = 1; i < 10000; ++i) all.push_back(i / 10000.0);
  for (int exponent = -5; exponent >= -16; --exponent) all.push_back(1.0 - std::pow(10.0, exponent));
  return all;
}

/// The z above which the share q of the standard normal distribution lies, by halving an interval.
long double trueUpperQuantile(long double q) {
  const long double root2 = std::sqrt(2.0L);
  long double low = -1;
  long double high = 40;
  for (int step = 0; step < 120; ++step) {
    const long double middle = (low + high) / 2;
    (std::erfc(middle / root2) / 2 > q ? low : high) = middle;
  }
  return (low + high) / 2;
}

}  // namespace

TEST(ConvertToZScore, HasExternalCLinkageUnderExactlyThatName) {
  void* library = dlopen(VELMORA_STATS_LIBRARY, RTLD_NOW);
  ASSERT_NE(library, nullptr) << dlerror();
  void* found = dlsym(library, "ConvertToZScore");
  ASSERT_NE(found, nullptr) << dlerror();
  auto* function = reinterpret_cast<double (*)(double)>(found);
  EXPECT_EQ(function, &ConvertToZScore);
  EXPECT_NEAR(function(0.025), 1.9604, 5e-5);
  dlclose(library);
}

TEST(ConvertToZScore, IsTheFormulaToTheLastBit) {
  int differing = 0;
  for (const double p : probabilities()) {
    const double expected = straightforwardZScore(p);
    const double got = ConvertToZScore(p);
    if (std::isnan(expected) && std::isnan(got)) continue;
    if (std::bit_cast<std::uint64_t>(expected) == std::bit_cast<std::uint64_t>(got)) continue;
    ++differing;
    EXPECT_EQ(got, expected) << "p = " << p;
  }
  EXPECT_EQ(differing, 0);
}

TEST(ConvertToZScore, IsWithinFourAndAHalfTenThousandthsOfTheTrueQuantile) {
  // Below 1e-150 the square of p leaves what a double holds.
  long double worst = 0;
  for (const double p : probabilities()) {
    if (p < 1e-150) continue;
    const long double truth = p > 0.5 ? -trueUpperQuantile(1.0L - p) : trueUpperQuantile(p);
    const long double error = std::fabs(ConvertToZScore(p) - truth);
    worst = std::max(worst, error);
    EXPECT_LT(error, 4.5e-4L) << "p = " << p;
  }
  RecordProperty("worst", std::to_string(static_cast<double>(worst)));
  EXPECT_GT(worst, 4e-4L) << "the approximation is that of the formula, not a better one";
}

TEST(ConvertToZScore, GivesTheDocumentedDeviates) {
  EXPECT_NEAR(ConvertToZScore(0.025), 1.9604, 5e-5);
  EXPECT_NEAR(ConvertToZScore(0.05), 1.6452, 5e-5);
  EXPECT_NEAR(ConvertToZScore(0.01), 2.3268, 5e-5);
  EXPECT_NEAR(ConvertToZScore(0.001), 3.0905, 5e-5);
}

TEST(ConvertToZScore, IsNegativeAboveOneHalf) {
  EXPECT_NEAR(ConvertToZScore(0.975), -1.9604, 5e-5);
  EXPECT_NEAR(ConvertToZScore(0.84), -0.9944, 5e-5);
  EXPECT_NEAR(ConvertToZScore(0.99), -2.3268, 5e-5);
}

TEST(ConvertToZScore, LeavesTheResidualOfTheApproximationAtOneHalf) {
  EXPECT_NE(ConvertToZScore(0.5), 0.0);
  EXPECT_NEAR(ConvertToZScore(0.5), -1.01e-7, 5e-10);
  EXPECT_GT(ConvertToZScore(std::nextafter(0.5, 1.0)), 0.0) << "just above, the sign is turned";
}

TEST(ConvertToZScore, IsSymmetric) {
  // Of these, 1 - p is exact, so the symmetry is too.
  for (int i = 1; i < 2048; ++i) {
    const double p = i / 4096.0;
    EXPECT_EQ(ConvertToZScore(1 - p), -ConvertToZScore(p)) << "p = " << p;
  }
  for (const double p : {0.01, 0.025, 0.05, 0.1, 0.3}) {
    EXPECT_NEAR(ConvertToZScore(1 - p), -ConvertToZScore(p), 1e-12) << "p = " << p;
  }
}

TEST(ConvertToZScore, IsNotANumberAtTheEnds) {
  EXPECT_TRUE(std::isnan(ConvertToZScore(0.0)));
  EXPECT_TRUE(std::isnan(ConvertToZScore(1.0)));
  EXPECT_TRUE(std::isnan(ConvertToZScore(-0.0)));
}

TEST(ConvertToZScore, IsNotANumberWhereTheSquareOfPIsTooSmall) {
  EXPECT_TRUE(std::isnan(ConvertToZScore(1e-300)));
  EXPECT_TRUE(std::isfinite(ConvertToZScore(1e-150)));
}

TEST(ConvertToZScore, PassesNotANumberOn) { EXPECT_TRUE(std::isnan(ConvertToZScore(notANumber))); }

TEST(ConvertToZScore, RejectsNothingOutsideZeroAndOne) {
  // By hand: q = -0.2 has the square of 0.2, and p = 1.2 is q = -0.2 with the sign turned.
  EXPECT_EQ(ConvertToZScore(-0.2), ConvertToZScore(0.2));
  EXPECT_TRUE(std::isfinite(ConvertToZScore(1.2)));
  EXPECT_NEAR(ConvertToZScore(1.2), -ConvertToZScore(0.2), 1e-12);
  EXPECT_EQ(std::bit_cast<std::uint64_t>(ConvertToZScore(-0.75)),
            std::bit_cast<std::uint64_t>(straightforwardZScore(-0.75)));
}
