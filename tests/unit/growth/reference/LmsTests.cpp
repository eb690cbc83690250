// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>
#include <cmath>
#include <limits>

#include "apps/growth/reference/Lms.h"

using growth::Lms;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

}  // namespace

TEST(Lms, GivesTheZScoreOfAMeasurement) {
  // L = 1 is the plain normal distribution, L = 0 the lognormal one, L = -1 has the reciprocal distributed
  // normally.
  EXPECT_NEAR(*growth::zScoreOf({1, 100, 0.1}, 120), 2.0, 1e-14);
  EXPECT_NEAR(*growth::zScoreOf({0, 100, 0.1}, 100 * std::exp(0.3)), 3.0, 1e-13);
  EXPECT_NEAR(*growth::zScoreOf({-1, 100, 0.1}, 80), -2.5, 1e-14);
  EXPECT_EQ(*growth::zScoreOf({2.5, 7, 0.1}, 7), 0.0);
}

TEST(Lms, GoesSmoothlyThroughAPowerOfZero) {
  const double logarithmic = *growth::zScoreOf({0, 100, 0.1}, 130);
  for (const double power : {1e-8, -1e-8, 1e-12, -1e-12, 1e-19, 1e-21, 1e-300, 5e-324}) {
    EXPECT_NEAR(*growth::zScoreOf({power, 100, 0.1}, 130), logarithmic, 1e-7) << power;
    EXPECT_NEAR(*growth::valueOf({power, 100, 0.1}, logarithmic), 130, 1e-5) << power;
  }
  EXPECT_NEAR(*growth::zScoreOf({1e-12, 100, 0.1}, 130), logarithmic, 1e-11);
}

TEST(Lms, ComesBackFromValueToZScore) {
  for (const double power : {-3.0, -1.0, -0.2, -1e-9, 0.0, 1e-9, 0.5, 1.0, 4.4}) {
    const Lms lms{power, 12.5, 0.08};
    for (double z = -2.5; z <= 2.5; z += 0.125) {
      const double value = *growth::valueOf(lms, z);
      EXPECT_NEAR(*growth::zScoreOf(lms, value), z, 1e-12) << power << ' ' << z;
    }
  }
}

TEST(Lms, HasNoZScoreForWhatIsNoMeasurement) {
  for (const double value : {0.0, -0.0, -1.0, -1e300, infinity, -infinity, notANumber}) {
    EXPECT_FALSE(growth::zScoreOf({1, 100, 0.1}, value)) << value;
  }
  // The power of a huge value leaves the doubles; there is no number to show.
  EXPECT_FALSE(growth::zScoreOf({4, 100, 0.1}, 1e300));
  EXPECT_TRUE(growth::zScoreOf({-1, 100, 0.1}, 1e300));
}

TEST(Lms, HasNoValueWhereTheDistributionDoesNotReach) {
  EXPECT_FALSE(growth::valueOf({1, 100, 0.1}, -10));  // exactly the end
  EXPECT_FALSE(growth::valueOf({1, 100, 0.1}, -11));
  EXPECT_TRUE(growth::valueOf({1, 100, 0.1}, -9.99));
  EXPECT_FALSE(growth::valueOf({-2, 100, 0.1}, 5));
  EXPECT_FALSE(growth::valueOf({0, 100, 1}, 1e6));
  EXPECT_FALSE(growth::valueOf({0, 100, 1}, -1e6));
  EXPECT_FALSE(growth::valueOf({1, 100, 0.1}, notANumber));
}

// Expected values: the well-known ones of tables of the normal distribution, to the digits that these print.
TEST(StandardNormal, KnowsTheTabulatedQuantiles) {
  const struct {
    double p, z;
  } table[] = {{0.03, -1.8807936081512509}, {0.05, -1.6448536269514722}, {0.10, -1.2815515655446004},
               {0.25, -0.6744897501960817}, {0.75, 0.6744897501960817},  {0.85, 1.0364333894937898},
               {0.975, 1.9599639845400545}, {0.97, 1.8807936081512509},  {0.001, -3.090232306167813},
               {1e-9, -5.9978070150076865}};
  for (const auto& row : table) {
    EXPECT_NEAR(growth::standardNormalQuantile(row.p), row.z, 2e-15 * std::abs(row.z) + 1e-15) << row.p;
    EXPECT_NEAR(growth::standardNormalCdf(row.z), row.p, 4e-15 * row.p + 1e-16) << row.p;
  }
  EXPECT_EQ(growth::standardNormalQuantile(0.5), 0.0);
  EXPECT_EQ(growth::standardNormalCdf(0.0), 0.5);
}

TEST(StandardNormal, ComesBackFromTheQuantileOverTheWholeLowerTail) {
  for (double exponent = -300; exponent < -0.31; exponent += 0.37) {
    const double p = std::pow(10.0, exponent);
    const double z = growth::standardNormalQuantile(p);
    // Near z the cdf changes by the share |z| dz, so this is what one rounding of z leaves.
    EXPECT_NEAR(growth::standardNormalCdf(z) / p, 1.0, 4e-16 * (4 + z * z)) << p;
  }
}

TEST(StandardNormal, IsSymmetricAndRises) {
  double previous = -infinity;
  for (int step = 1; step < 1024; ++step) {
    const double p = step / 1024.0;
    const double z = growth::standardNormalQuantile(p);
    EXPECT_GT(z, previous);
    EXPECT_EQ(z, -growth::standardNormalQuantile(1.0 - p));
    previous = z;
  }
}

TEST(StandardNormal, AnswersAtAndBeyondTheEnds) {
  EXPECT_EQ(growth::standardNormalQuantile(0), -infinity);
  EXPECT_EQ(growth::standardNormalQuantile(1), infinity);
  EXPECT_TRUE(std::isnan(growth::standardNormalQuantile(-0.1)));
  EXPECT_TRUE(std::isnan(growth::standardNormalQuantile(1.1)));
  EXPECT_TRUE(std::isnan(growth::standardNormalQuantile(notANumber)));
  EXPECT_NEAR(growth::standardNormalQuantile(5e-324), -38.47, 0.02);
  EXPECT_EQ(growth::centileOf(0), 50.0);
  EXPECT_EQ(growth::centileOf(-infinity), 0.0);
  EXPECT_EQ(growth::centileOf(infinity), 100.0);
}
