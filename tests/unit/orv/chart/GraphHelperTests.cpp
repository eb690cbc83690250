// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>
#include <algorithm>
#include <cmath>
#include <limits>

#include "orv/chart/GraphLabels.h"
#include "orv/chart/GraphRanges.h"

using namespace velmora::orv;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

void expectRange(const OrvGraphRange& range, double lower, double upper) {
  EXPECT_NEAR(range.lower, lower, 1e-12);
  EXPECT_NEAR(range.upper, upper, 1e-12);
}

}  // namespace

TEST(GraphLabels, StayWhereTheyAreWantedWhenThereIsRoom) {
  EXPECT_EQ(spreadLabels({10, 30, 50}, 12, 0, 100), (QList<double>{10, 30, 50}));
  EXPECT_TRUE(spreadLabels({}, 12, 0, 100).isEmpty());
}

TEST(GraphLabels, MoveApartAroundTheirMiddle) {
  EXPECT_EQ(spreadLabels({40, 40}, 12, 0, 100), (QList<double>{34, 46}));
  EXPECT_EQ(spreadLabels({40, 41, 42, 80}, 10, 0, 100), (QList<double>{31, 41, 51, 80}));
  // A group that grows into the next one takes it along.
  EXPECT_EQ(spreadLabels({40, 40, 48}, 10, 0, 100),
            (QList<double>{32 + 2.0 / 3, 42 + 2.0 / 3, 52 + 2.0 / 3}));
}

TEST(GraphLabels, StayBetweenTheirLimits) {
  EXPECT_EQ(spreadLabels({2, 3, 4}, 10, 0, 100), (QList<double>{0, 10, 20}));
  EXPECT_EQ(spreadLabels({97, 98}, 10, 0, 100), (QList<double>{90, 100}));
  EXPECT_EQ(spreadLabels({-500}, 10, 0, 100), (QList<double>{0}));
}

TEST(GraphLabels, NeverOverlapWhateverIsWanted) {
  QList<double> wanted;
  for (int label = 0; label < 60; ++label) wanted.append(200 + 150 * std::sin(label * label));
  std::sort(wanted.begin(), wanted.end());
  const QList<double> places = spreadLabels(wanted, 13, 0, 1000);
  ASSERT_EQ(places.size(), 60);
  for (qsizetype i = 1; i < places.size(); ++i) EXPECT_GE(places[i] - places[i - 1], 13 - 1e-9);
  EXPECT_GE(places.first(), 0);
  EXPECT_LE(places.last(), 1000 + 1e-9);
}

TEST(GraphRanges, AreTakenWhenTheyCanBeDrawn) {
  expectRange(usableGraphRange({-3, 240}), -3, 240);
  expectRange(usableGraphRange({240, 24}), 24, 240);
  expectRange(usableGraphRange({0, 1e12}), 0, 1e12);
}

TEST(GraphRanges, AreReplacedWhenTheyCannotBeDrawn) {
  const OrvGraphRange table[] = {
      {5, 5},     {0, infinity},   {-infinity, 3},      {notANumber, 3}, {3, notANumber},
      {0, 1e300}, {-1e300, 1e300}, {1e11, 1e11 + 1e-3}, {0, 1e-300},     {notANumber, notANumber}};
  for (const OrvGraphRange& range : table) expectRange(usableGraphRange(range), 0, 1);
}

TEST(GraphRanges, GrowToContainTheValues) {
  expectRange(grownGraphRange({0, 20}, {}), 0, 20);
  expectRange(grownGraphRange({0, 20}, {0, 20, 7}), 0, 20);
  expectRange(grownGraphRange({0, 20}, {23.5}), 0, 24);
  expectRange(grownGraphRange({0, 20}, {23.7}), 0, 26);
  expectRange(grownGraphRange({40, 140}, {31, 160}), 20, 170);
  expectRange(grownGraphRange({0, 20}, {60}), 0, 62);
  expectRange(grownGraphRange({0, 20}, {-40}), -42, 20);
}

TEST(GraphRanges, DoNotGrowForAbsurdValues) {
  expectRange(grownGraphRange({0, 20}, {61, -41, 1e300, -1e300, infinity, -infinity, notANumber}), 0, 20);
}
