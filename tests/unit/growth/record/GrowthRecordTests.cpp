// SPDX-License-Identifier: LGPL-3.0-or-later
#include "apps/growth/record/GrowthRecord.h"

#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QLocale>

#include "testing/window/UserActions.h"

using namespace velmora;

using growth::Examination;
using growth::GrowthRecord;
using growth::Measure;
using growth::Measurement;
using growth::RecordDate;
using growth::Sex;

namespace {

Examination examination(const QString& date, std::optional<double> weight = std::nullopt) {
  Examination made;
  made.date.day = QDate::fromString(date, Qt::ISODate);
  made.of(Measure::Weight).value = weight;
  return made;
}

GrowthRecord fullRecord() {
  GrowthRecord record;
  record.identifier = QStringLiteral("ÄB-12 %@ \"quoted\"");
  record.birthDate.day = QDate(2020, 2, 29);
  record.sex = Sex::Female;
  Examination first = examination("2020-03-31", 3.4);
  first.of(Measure::Height).value = 51.25;
  first.of(Measure::Head).value = 1.0 / 3.0;
  Examination second;
  second.date.unread = QStringLiteral("after Easter");
  second.of(Measure::Weight).unread = QStringLiteral("about 5");
  second.of(Measure::Height).value = -1;
  record.examinations = {first, second, Examination{}};
  return record;
}

GrowthRecord readBack(const GrowthRecord& record) {
  const QByteArray bytes = QJsonDocument(record.toJson()).toJson();
  const auto read = GrowthRecord::fromJson(QJsonDocument::fromJson(bytes).object());
  EXPECT_TRUE(read.ok()) << qPrintable(read.error());
  return read.valueOr({});
}

/// Restores the language when a test has changed it.
class NumbersTyped : public testing::Test {
 protected:
  ~NumbersTyped() override { QLocale::setDefault(before); }
  QLocale before;
};

}  // namespace

TEST(GrowthRecord, ReadsBackWhatItWrote) {
  EXPECT_EQ(readBack(GrowthRecord{}), GrowthRecord{});
  EXPECT_EQ(readBack(fullRecord()), fullRecord());
  for (const std::optional<Sex> sex :
       {std::optional<Sex>(), std::optional(Sex::Male), std::optional(Sex::Female)}) {
    GrowthRecord record;
    record.sex = sex;
    EXPECT_EQ(readBack(record), record);
  }
  for (const double value : {0.0, -0.5, 1e-300, 1e300, 12.345678901234567, 5e-324}) {
    GrowthRecord record;
    record.examinations.first().of(Measure::Head).value = value;
    EXPECT_EQ(readBack(record), record) << value;
  }
}

TEST(GrowthRecord, WritesDatesAsIsoTextsAndMeasurementsAsNumbers) {
  const QJsonObject json = fullRecord().toJson();
  EXPECT_EQ(json.value("identifier"), QJsonValue(fullRecord().identifier));
  EXPECT_EQ(json.value("birthDate"), QJsonValue("2020-02-29"));
  EXPECT_EQ(json.value("sex"), QJsonValue("female"));
  const QJsonArray examinations = json.value("examinations").toArray();
  ASSERT_EQ(examinations.size(), 3);
  EXPECT_EQ(examinations.at(0).toObject(),
            (QJsonObject{{"date", "2020-03-31"}, {"weight", 3.4}, {"height", 51.25}, {"head", 1.0 / 3.0}}));
  EXPECT_EQ(examinations.at(1).toObject(),
            (QJsonObject{{"date", "after Easter"}, {"weight", "about 5"}, {"height", -1}}));
  EXPECT_EQ(examinations.at(2).toObject(), QJsonObject());
}

TEST(GrowthRecord, RefusesEachMalformedContentWithItsReason) {
  const struct {
    const char* content;
    const char* reason;
  } cases[] = {
      {R"({})", "identifier"},
      {R"({"identifier": 12, "examinations": [{}]})", "identifier"},
      {R"({"identifier": null, "examinations": [{}]})", "identifier"},
      {R"({"identifier": "A"})", "examinations"},
      {R"({"identifier": "A", "examinations": []})", "examinations"},
      {R"({"identifier": "A", "examinations": {}})", "examinations"},
      {R"({"identifier": "A", "examinations": "none"})", "examinations"},
      {R"({"identifier": "A", "examinations": [1]})", "examinations"},
      {R"({"identifier": "A", "examinations": [{}, null]})", "examinations"},
      {R"({"identifier": "A", "birthDate": 20200229, "examinations": [{}]})", "birthDate"},
      {R"({"identifier": "A", "birthDate": null, "examinations": [{}]})", "birthDate"},
      {R"({"identifier": "A", "sex": "f", "examinations": [{}]})", "sex"},
      {R"({"identifier": "A", "sex": 1, "examinations": [{}]})", "sex"},
      {R"({"identifier": "A", "sex": null, "examinations": [{}]})", "sex"},
      {R"({"identifier": "A", "examinations": [{"date": 1}]})", "date"},
      {R"({"identifier": "A", "examinations": [{"date": ["2020-01-01"]}]})", "date"},
      {R"({"identifier": "A", "examinations": [{"weight": true}]})", "weight"},
      {R"({"identifier": "A", "examinations": [{"weight": null}]})", "weight"},
      {R"({"identifier": "A", "examinations": [{"height": {}}]})", "height"},
      {R"({"identifier": "A", "examinations": [{"head": [1]}]})", "head"},
  };
  for (const auto& each : cases) {
    const QJsonDocument json = QJsonDocument::fromJson(each.content);
    ASSERT_TRUE(json.isObject()) << each.content;
    const auto result = GrowthRecord::fromJson(json.object());
    EXPECT_FALSE(result.ok()) << each.content;
    EXPECT_EQ(result.error(), QStringLiteral("The file is damaged (%1).").arg(each.reason)) << each.content;
  }
}

TEST(GrowthRecord, PassesOverWhatItDoesNotKnow) {
  const QJsonDocument json = QJsonDocument::fromJson(
      R"({"identifier": "A", "note": [1], "examinations": [{"weight": 3, "shoe size": 20}]})");
  const auto record = GrowthRecord::fromJson(json.object());
  ASSERT_TRUE(record.ok()) << qPrintable(record.error());
  EXPECT_EQ(record->examinations.first().of(Measure::Weight).value, 3.0);
}

TEST(GrowthRecord, SortsByDateWithTheUndatedLast) {
  GrowthRecord record;
  record.examinations = {examination("", 1), examination("2022-01-01", 2), examination("2021-01-01", 3),
                         examination("", 4), examination("2022-01-01", 5)};
  QList<qsizetype> places;
  for (qsizetype current = 0; current < 5; ++current) {
    GrowthRecord copy = record;
    places.append(copy.sortExaminations(current));
  }
  EXPECT_EQ(places, (QList<qsizetype>{3, 1, 0, 4, 2}))
      << "equals keep their order, and the shown one is followed";
  record.sortExaminations(0);
  QList<double> weights;
  for (const Examination& each : record.examinations) weights.append(*each.of(Measure::Weight).value);
  EXPECT_EQ(weights, (QList<double>{3, 2, 5, 1, 4}));
}

TEST(GrowthRecord, FollowsNoExaminationThatIsNotThere) {
  GrowthRecord record;
  EXPECT_EQ(record.sortExaminations(7), 0);
  EXPECT_EQ(record.examinations.size(), 1);
}

TEST(GrowthRecord, HasNoAgeWithoutBothDates) {
  GrowthRecord record;
  EXPECT_FALSE(record.ageAt(examination("2022-01-01")));
  record.birthDate.day = QDate(2020, 1, 1);
  EXPECT_FALSE(record.ageAt(Examination{}));
  EXPECT_FALSE(record.ageAt(examination("2019-12-31")));
  EXPECT_NEAR(record.ageAt(examination("2022-01-01")).value_or(0), 731 / 30.4375, 1e-12);
}

TEST_F(NumbersTyped, AreReadWithTheLocalesSignOrAPoint) {
  const struct {
    const char* locale;
    const char* text;
    double value;
  } cases[] = {
      {"en_GB", "12.5", 12.5}, {"en_GB", " 12.5 ", 12.5}, {"de_DE", "12,5", 12.5},
      {"de_DE", "12.5", 12.5}, {"en_GB", "0", 0},         {"en_GB", "-3", -3},
      {"en_GB", "12", 12},     {"de_DE", "0,125", 0.125}, {"fr_FR", "12,5", 12.5},
      {"en_GB", "12,5", 12.5}, {"de_DE", "1.234", 1.234},
  };
  for (const auto& each : cases) {
    QLocale::setDefault(QLocale(QString::fromLatin1(each.locale)));
    const Measurement read = growth::measurementFromText(each.text);
    ASSERT_TRUE(read.value) << each.locale << " " << each.text;
    EXPECT_EQ(*read.value, each.value) << each.locale << " " << each.text;
    EXPECT_TRUE(read.unread.isEmpty());
  }
}

TEST_F(NumbersTyped, AreNoneWhereTheyMightMeanThousands) {
  QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom));
  for (const char* text : {"12,345", "1,234", "1,234.5"}) {
    const Measurement read = growth::measurementFromText(text);
    EXPECT_FALSE(read.value) << text << " was read as " << read.value.value_or(0);
    EXPECT_EQ(read.unread, text);
  }
}

TEST_F(NumbersTyped, KeepTheTextThatIsNone) {
  QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom));
  for (const char* text : {"12 kg", "abc", "1..2", "nan", "inf", "-inf", "1e999", "--1", "0x10", "12.5.6"}) {
    const Measurement read = growth::measurementFromText(text);
    EXPECT_FALSE(read.value) << text;
    EXPECT_EQ(read.unread, text);
    EXPECT_EQ(growth::textOf(read), text);
  }
  EXPECT_EQ(growth::measurementFromText(""), Measurement{});
  EXPECT_EQ(growth::measurementFromText("  "), Measurement{});
}

TEST_F(NumbersTyped, AreShownSoThatTheyReadBackTheSame) {
  for (const char* name : {"en_GB", "de_DE", "fr_FR", "hi_IN", "ar_EG", "C"}) {
    QLocale::setDefault(QLocale(QString::fromLatin1(name)));
    for (const double value : {3.4, 12.345678901234567, 0.1, 100.0, 1234.5, 1.0 / 3.0, 99999.0}) {
      const Measurement typed{value, {}};
      EXPECT_EQ(growth::measurementFromText(growth::textOf(typed)), typed) << name << " " << value;
    }
  }
  QLocale::setDefault(QLocale(QLocale::German));
  EXPECT_EQ(growth::textOf({12.5, {}}), "12,5");
  EXPECT_EQ(growth::textOf({1234.5, {}}), "1234,5");
  EXPECT_EQ(growth::textOf({}), "");
}
