// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>
#include <algorithm>
#include <cmath>
#include <limits>

#include "tests/unit/growth/reference/ReferenceFiles.h"

using growth::GrowthReference;
using growth::Lms;
using growth::Sex;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

double justBelow(double x) { return std::nextafter(x, -infinity); }
double justAbove(double x) { return std::nextafter(x, infinity); }

GrowthReference small() { return GrowthReference::fromBytes(sealed(smallReference())).value(); }

qsizetype gapsIn(const QList<QPointF>& curve) {
  return std::count_if(curve.begin(), curve.end(),
                       [](const QPointF& point) { return std::isnan(point.y()); });
}

}  // namespace

TEST(GrowthReference, KnowsTheBoyOfTwentyFourAndAHalfMonthsAndNinetyCentimetres) {
  const auto z = shippedReference(QStringLiteral("height")).zScore(Sex::Male, 24.5, 90);
  ASSERT_TRUE(z);
  EXPECT_NEAR(*z, 0.894542, 1e-6);
}

TEST(GrowthReference, SaysWhatItIsAndWhereItComesFrom) {
  for (const char* name : shippedReferences) {
    const auto heading = shippedReference(QString::fromLatin1(name)).heading();
    EXPECT_TRUE(heading.source.contains(QStringLiteral("2000 CDC growth charts for the United States")))
        << name;
    EXPECT_TRUE(heading.method.contains(QStringLiteral("Cole TJ, Green PJ"))) << name;
    EXPECT_EQ(heading.shortTitle, QStringLiteral("CDC 2000")) << name;
    EXPECT_FALSE(heading.population.isEmpty()) << name;
    EXPECT_FALSE(heading.join.isEmpty()) << name;
  }
  const auto heading = shippedReference(QStringLiteral("bmi")).heading();
  EXPECT_EQ(heading.title, QStringLiteral("Body mass index for age"));
  EXPECT_EQ(heading.measurement, QStringLiteral("body mass index"));
  EXPECT_EQ(heading.unit, QStringLiteral("kg/m²"));
  EXPECT_EQ(heading.variable, QStringLiteral("age"));
  EXPECT_EQ(heading.variableUnit, QStringLiteral("months"));
}

TEST(GrowthReference, AnswersToTheEdgesOfItsRangeAndNotBeyond) {
  const struct {
    const char* name;
    double from, to;
  } table[] = {{"weight", 0, 240},
               {"height", 0, 240},
               {"head", 0, 36},
               {"bmi", 24, 240.5},
               {"weight-for-length", 45, 103.5},
               {"weight-for-stature", 77, 121.5}};
  for (const auto& row : table) {
    const GrowthReference reference = shippedReference(QString::fromLatin1(row.name));
    for (const Sex sex : {Sex::Male, Sex::Female}) {
      ASSERT_TRUE(reference.range(sex)) << row.name;
      EXPECT_EQ(reference.range(sex)->from, row.from) << row.name;
      EXPECT_EQ(reference.range(sex)->to, row.to) << row.name;
      for (const double inside : {row.from, justAbove(row.from), justBelow(row.to), row.to}) {
        EXPECT_TRUE(reference.parametersAt(sex, inside)) << row.name << ' ' << inside;
        EXPECT_TRUE(reference.zScore(sex, inside, 20)) << row.name << ' ' << inside;
        EXPECT_TRUE(reference.valueAt(sex, inside, 0)) << row.name << ' ' << inside;
      }
      for (const double outside : {justBelow(row.from), justAbove(row.to), row.from - 1, row.to + 1,
                                   -infinity, infinity, std::nan(""), -1e300, 1e300}) {
        EXPECT_FALSE(reference.parametersAt(sex, outside)) << row.name << ' ' << outside;
        EXPECT_FALSE(reference.zScore(sex, outside, 20)) << row.name << ' ' << outside;
        EXPECT_FALSE(reference.valueAt(sex, outside, 0)) << row.name << ' ' << outside;
      }
    }
  }
}

TEST(GrowthReference, HasNoZScoreForWhatIsNoMeasurement) {
  const GrowthReference weight = shippedReference(QStringLiteral("weight"));
  for (const double value : {0.0, -3.5, infinity, -infinity, std::nan("")}) {
    EXPECT_FALSE(weight.zScore(Sex::Female, 12, value)) << value;
  }
}

TEST(GrowthReference, ChangesFromLengthToStatureAtTwentyFourMonths) {
  const GrowthReference height = shippedReference(QStringLiteral("height"));
  const auto& infant = height.tables().at(0);
  const auto& child = height.tables().at(1);
  EXPECT_EQ(height.parametersAt(Sex::Male, 23.99), infant.parametersAt(Sex::Male, 23.99));
  EXPECT_EQ(height.parametersAt(Sex::Male, justBelow(24)), infant.parametersAt(Sex::Male, justBelow(24)));
  EXPECT_EQ(height.parametersAt(Sex::Male, 24), child.parametersAt(Sex::Male, 24));
  // The median published for boys at 24 months is that of standing stature; lying they are 0.8 cm longer.
  EXPECT_EQ(height.valueAt(Sex::Male, 24, 0), 86.45220101);
  EXPECT_NEAR(*height.valueAt(Sex::Male, justBelow(24), 0), (86.8381751 + 87.66160934) / 2, 1e-9);
  // 30 months lies in both published tables; the reference answers with stature.
  EXPECT_EQ(height.parametersAt(Sex::Female, 30), child.parametersAt(Sex::Female, 30));
  EXPECT_NE(infant.parametersAt(Sex::Female, 30), child.parametersAt(Sex::Female, 30));
}

TEST(GrowthReference, InterpolatesEachParameterLinearlyBetweenRows) {
  const GrowthReference reference = small();
  EXPECT_EQ(reference.parametersAt(Sex::Male, 0), (Lms{1, 10, 0.1}));
  EXPECT_EQ(reference.parametersAt(Sex::Male, 5), (Lms{0, 20, 0.2}));
  const Lms between = *reference.parametersAt(Sex::Male, 2);
  EXPECT_NEAR(between.L, 0.6, 1e-15);
  EXPECT_NEAR(between.M, 14, 1e-14);
  EXPECT_NEAR(between.S, 0.14, 1e-16);
  // The girls' young table goes on to 12, but from 10 on the old one is used.
  EXPECT_NEAR(reference.parametersAt(Sex::Female, 9)->M, 19, 1e-13);
  EXPECT_EQ(reference.parametersAt(Sex::Female, 10), (Lms{1, 20, 0.1}));
  EXPECT_EQ(reference.parametersAt(Sex::Female, 11)->M, 21);
}

TEST(GrowthReference, ComesBackFromValueToZScore) {
  int checks = 0;
  for (const char* name : shippedReferences) {
    const GrowthReference reference = shippedReference(QString::fromLatin1(name));
    for (const Sex sex : {Sex::Male, Sex::Female}) {
      const auto range = reference.range(sex).value();
      for (int place = 0; place <= 100; ++place) {
        const double x = std::lerp(range.from, range.to, place / 100.0);
        for (const double z : {-3.0, -1.8807936081512509, -0.5, 0.0, 1.0, 2.0}) {
          const auto value = reference.valueAt(sex, x, z);
          ASSERT_TRUE(value) << name << ' ' << x << ' ' << z;
          EXPECT_NEAR(reference.zScore(sex, x, *value).value(), z, 1e-11) << name << ' ' << x;
          ++checks;
        }
      }
    }
  }
  EXPECT_EQ(checks, 6 * 2 * 101 * 6);
}

TEST(CentileCurve, IsInterruptedWhereTheTablesDoNotMeet) {
  const QList<QPointF> height = shippedReference(QStringLiteral("height")).centileCurve(Sex::Male, 50, 0, 60);
  ASSERT_EQ(gapsIn(height), 1);
  const auto gap =
      std::find_if(height.begin(), height.end(), [](const QPointF& p) { return std::isnan(p.y()); });
  EXPECT_EQ(std::prev(gap)->x(), 24);
  EXPECT_EQ(std::next(gap)->x(), 24);
  EXPECT_NEAR(std::prev(gap)->y() - std::next(gap)->y(), 0.8, 0.01);
}

TEST(CentileCurve, GoesThroughWhereTheTablesMeet) {
  for (const Sex sex : {Sex::Male, Sex::Female}) {
    for (const int percentile : growth::chartPercentiles) {
      const QList<QPointF> curve =
          shippedReference(QStringLiteral("weight")).centileCurve(sex, percentile, 0, 240);
      EXPECT_EQ(gapsIn(curve), 0) << percentile;
      EXPECT_TRUE(std::is_sorted(curve.begin(), curve.end(), [](const QPointF& a, const QPointF& b) {
        return a.x() <= b.x() && a != b;
      }));
      EXPECT_EQ(std::count_if(curve.begin(), curve.end(), [](const QPointF& p) { return p.x() == 24; }), 1);
    }
  }
}

TEST(CentileCurve, CoversThePartAskedForWithItsEnds) {
  const GrowthReference weight = shippedReference(QStringLiteral("weight"));
  const QList<QPointF> part = weight.centileCurve(Sex::Male, 50, 12.25, 14.75);
  ASSERT_EQ(part.size(), 5);
  EXPECT_EQ(part[0].x(), 12.25);
  EXPECT_EQ(part[1].x(), 12.5);
  EXPECT_EQ(part[2].x(), 13.5);
  EXPECT_EQ(part[3].x(), 14.5);
  EXPECT_EQ(part[4].x(), 14.75);
  EXPECT_EQ(part[1].y(), weight.valueAt(Sex::Male, 12.5, 0));
  EXPECT_EQ(part[4].y(), weight.valueAt(Sex::Male, 14.75, 0));

  const QList<QPointF> whole = weight.centileCurve(Sex::Male, 50, -1e300, 1e300);
  EXPECT_EQ(whole.first().x(), 0);
  EXPECT_EQ(whole.last().x(), 240);
  // From the join on, the table that begins there is the only one that answers.
  EXPECT_EQ(weight.centileCurve(Sex::Male, 50, 24, 24), QList<QPointF>{QPointF(24, 12.6707633)});
}

TEST(CentileCurve, IsEmptyOutsideTheReference) {
  const GrowthReference head = shippedReference(QStringLiteral("head"));
  EXPECT_TRUE(head.centileCurve(Sex::Male, 50, 37, 60).isEmpty());
  EXPECT_TRUE(head.centileCurve(Sex::Male, 50, 12, 6).isEmpty());
  EXPECT_TRUE(head.centileCurve(Sex::Male, 50, std::nan(""), 6).isEmpty());
  for (const double percentile : {0.0, 100.0, -3.0, 103.0, std::nan("")}) {
    EXPECT_TRUE(head.centileCurve(Sex::Male, percentile, 0, 36).isEmpty()) << percentile;
  }
}

TEST(CentileCurve, ListsHigherPercentilesAboveLowerOnes) {
  int checks = 0;
  for (const char* name : shippedReferences) {
    const GrowthReference reference = shippedReference(QString::fromLatin1(name));
    for (const Sex sex : {Sex::Male, Sex::Female}) {
      QList<QPointF> lower;
      for (const int percentile : growth::chartPercentiles) {
        const QList<QPointF> curve = reference.centileCurve(sex, percentile, 0, 240);
        for (qsizetype i = 0; i < lower.size(); ++i) {
          if (std::isnan(curve[i].y())) continue;
          EXPECT_GT(curve[i].y(), lower[i].y()) << name << ' ' << percentile << ' ' << curve[i].x();
          ++checks;
        }
        lower = curve;
      }
    }
  }
  EXPECT_GT(checks, 9000);
}
