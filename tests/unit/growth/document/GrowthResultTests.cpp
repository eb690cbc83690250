// SPDX-License-Identifier: LGPL-3.0-or-later
//
// What stands beside a measurement. The weights are the published percentiles of boys at 24.5 months (CDC
// 2000 weight for age: 3rd 10.44, 10th 11.11, 25th 11.85, 75th 13.71, 97th 15.69 kg); 746 days after birth a
// child is 24.51.
#include <gtest/gtest.h>

#include <QLabel>

#include "apps/growth/testing/GrowthApplication.h"
#include "testing/standins/LogRecorder.h"

using namespace velmora;
using namespace velmora::testkit;

using growth::GrowthApplication;
using user::textOf;

namespace {

QString weightResult(const QString& weight) {
  GrowthApplication application;
  return textOf(application.typeBoy("17/1/2024", weight), "weightResultField");
}

}  // namespace

TEST(GrowthResult, OfABoyOfTwentyFourAndAHalfMonthsIsThePublishedCentile) {
  EXPECT_EQ(weightResult("10.44"), "z-score -1.88, centile 3.0");
  EXPECT_EQ(weightResult("11.85"), "z-score -0.68, centile 24.9");
  EXPECT_EQ(weightResult("13.71"), "z-score 0.67, centile 74.9");
  EXPECT_EQ(weightResult("15.69"), "z-score 1.88, centile 97.0");
  EXPECT_EQ(weightResult("14"), "z-score 0.86, centile 80.5");
}

TEST(GrowthResult, NearTheMedianHasNoMinusBeforeAZero) {
  EXPECT_EQ(weightResult("12.74"), "z-score 0.00, centile 49.9");
}

TEST(GrowthResult, StandsBesideTheAgeInWords) {
  GrowthApplication application;
  GrowthDocument& document = application.typeBoy("17/1/2024", "14");
  EXPECT_EQ(textOf(document, "ageField"), "2 y 0 m 16 d");
}

TEST(GrowthResult, FollowsTheSex) {
  GrowthApplication application;
  GrowthDocument& document = application.typeBoy("17/1/2024", "14");
  application.chooseSex(document, GrowthApplication::SexItem::Female);
  EXPECT_TRUE(textOf(document, "weightResultField").startsWith("z-score 1."))
      << qPrintable(textOf(document, "weightResultField"));
}

TEST(GrowthResult, SaysWhatIsMissing) {
  GrowthApplication application;
  GrowthDocument& document = application.newRecord();
  user::enter(user::field(document, "weightField"), "14");
  EXPECT_EQ(textOf(document, "weightResultField"), "Needs birth and exam date.");
  user::enter(user::field(document, "birthDateField"), "1/1/2022");
  EXPECT_EQ(textOf(document, "weightResultField"), "Needs birth and exam date.");
  user::enter(user::field(document, "examDateField"), "17/1/2024");
  EXPECT_EQ(textOf(document, "weightResultField"), "Needs the sex.");
  application.chooseSex(document, GrowthApplication::SexItem::Male);
  EXPECT_EQ(textOf(document, "weightResultField"), "z-score 0.86, centile 80.5");
  EXPECT_EQ(textOf(document, "heightResultField"), "");
}

TEST(GrowthResult, OutsideTheReferenceSaysSo) {
  GrowthApplication application;
  GrowthDocument& document = application.typeBoy("1/1/2027", "18");
  EXPECT_TRUE(textOf(document, "weightResultField").startsWith("z-score"));
  user::enter(user::field(document, "headField"), "50");
  EXPECT_EQ(textOf(document, "headResultField"), "The reference does not cover this age.")
      << "it ends at 36 months";
}

TEST(GrowthResult, BeforeTheBirthHasNoAge) {
  GrowthApplication application;
  GrowthDocument& document = application.typeBoy("31/12/2021", "3");
  EXPECT_EQ(textOf(document, "weightResultField"), "The examination lies before the birth.");
  EXPECT_EQ(textOf(document, "ageField"), "");
}

TEST(GrowthResult, OfWhatIsNoMeasurementSaysSo) {
  EXPECT_EQ(weightResult("heavy"), "This is not a number.");
  EXPECT_EQ(weightResult("0"), "A measurement is above zero.");
  EXPECT_EQ(weightResult("-3"), "A measurement is above zero.");
  EXPECT_EQ(weightResult(""), "");
}

TEST(GrowthResult, FarOutsideTheCentilesIsBounded) {
  EXPECT_TRUE(weightResult("5").endsWith("centile < 0.1")) << qPrintable(weightResult("5"));
  EXPECT_TRUE(weightResult("40").endsWith("centile > 99.9")) << qPrintable(weightResult("40"));
}

TEST(GrowthResult, WithoutReferenceFilesIsMissingAndTheLogSaysWhy) {
  const LogRecorder log;
  GrowthApplication application("/nowhere");
  EXPECT_EQ(log.lines().filter("Reference /nowhere/").size(), 3);
  GrowthDocument& document = application.typeBoy("17/1/2024", "14");
  EXPECT_EQ(textOf(document, "weightResultField"), "No reference.");
  EXPECT_FALSE(document.getJPEGData().isEmpty()) << "the chart shows the points alone";
}

TEST(GrowthResult, IsWrittenInTheLanguageOfTheDesktop) {
  GrowthApplication application;
  QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
  GrowthDocument& document = application.typeBoy("17.1.2024", "14,0");
  EXPECT_EQ(textOf(document, "weightResultField"), "z-score 0,86, centile 80,5");
}
