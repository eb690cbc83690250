// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include "tests/unit/growth/reference/ReferenceFiles.h"

using growth::GrowthReference;

namespace {

// Why a file is refused; empty when it is taken.
std::string refusal(const QByteArray& bytes) {
  const auto reference = GrowthReference::fromBytes(bytes);
  EXPECT_EQ(reference.ok(), reference.error().isEmpty()) << qPrintable(reference.error());
  return reference.error().toStdString();
}

// The small reference with a text in it replaced, and a digest that fits.
QByteArray changed(const char* before, const char* after) {
  QByteArray text = smallReference();
  EXPECT_TRUE(text.contains(before)) << before;
  return sealed(text.replace(text.indexOf(before), static_cast<qsizetype>(qstrlen(before)), after));
}

}  // namespace

TEST(ReferenceFile, IsTakenWhenGood) {
  EXPECT_EQ(refusal(sealed(smallReference())), "");
  EXPECT_EQ(refusal(changed("title: Arm", "# a remark\n\ntitle: Arm")), "");
  EXPECT_EQ(refusal(changed("0 1 10 0.1", "0 1e0 1.0E+1 +0.1")), "");
}

TEST(ReferenceFile, MayCoverOneSexOnly) {
  QByteArray text = smallReference();
  text.replace("rows girls 2\n0 1 10 0.1\n12 1 22 0.1\n", "")
      .replace("rows girls 2\n10 1 20 0.1\n20 1 30 0.1\n", "");
  const auto reference = GrowthReference::fromBytes(sealed(text));
  ASSERT_TRUE(reference.ok());
  EXPECT_TRUE(reference->range(growth::Sex::Male));
  EXPECT_FALSE(reference->range(growth::Sex::Female));
  EXPECT_FALSE(reference->parametersAt(growth::Sex::Female, 5));
  EXPECT_TRUE(reference->centileCurve(growth::Sex::Female, 50, 0, 20).isEmpty());
}

TEST(ReferenceFile, IsRefusedWithTheLineAndTheReason) {
  const struct {
    const char* before;
    const char* after;
    const char* reason;
  } table[] = {
      {"velmora-reference 1", "{\"format\": 1}",
       "Line 1: this is not a reference file (it does not begin with \"velmora-reference\")."},
      {"velmora-reference 1", "velmora-reference one",
       "Line 1: this is not a reference file (it does not begin with \"velmora-reference\")."},
      {"velmora-reference 1", "velmora-reference 2",
       "Line 1: the file has format 2; this program reads formats up to 1."},
      {"title: Arm for age\n", "", "Line 13: the heading above does not say \"title\"."},
      {"join: Young below 10, old from 10\n", "", "Line 13: the heading above does not say \"join\"."},
      {"unit: cm", "unit: ", "Line 5: \"unit\" says nothing."},
      {"unit: cm", "unit=cm", "Line 5: a heading line is a key, a colon, a space and a text."},
      {"unit: cm", "title: cm", "Line 5: \"title\" is said twice."},
      {"unit: cm", "colour: red", "Line 5: \"colour\" is not known."},
      {"unit: cm", "unit: c\xff\xfem", "Line 5: this is not UTF-8 text."},
      {"method: LMS", "method: GAMLSS", "Line 10: the method \"GAMLSS\" is not known."},
      {"interpolation: linear", "interpolation: cubic", "Line 12: the interpolation \"cubic\" is not known."},
      {"[table young]", "[young]", "Line 14: this is no \"[table name]\"."},
      {"[table old]", "[table young]", "Line 25: there are two tables \"young\"."},
      {"title: Young arms", "titel: Young arms", "Line 15: \"titel\" is not known."},
      {"figures: young.csv", "title: young.csv", "Line 16: \"title\" is said twice."},
      {"figures: young.csv\n", "", "Line 24: the table above does not say \"figures\"."},
      {"use: from 0 below 10\n", "", "Line 24: the table above does not say \"use\"."},
      {"use: from 0 below 10", "use: from 10 below 0",
       "Line 17: \"use\" is \"from a below b\" or \"from a through b\", with a less than b."},
      {"use: from 0 below 10", "use: from 0 till 10",
       "Line 17: \"use\" is \"from a below b\" or \"from a through b\", with a less than b."},
      {"use: from 0 below 10", "use: from 0 below nan",
       "Line 17: \"use\" is \"from a below b\" or \"from a through b\", with a less than b."},
      {"use: from 0 below 10", "use: from 0 below 10\nuse: from 0 below 10",
       "Line 18: \"use\" is said twice."},
      {"use: from 0 below 10", "use: from -1 below 10",
       "Line 25: the table above is used where it has no rows."},
      {"use: from 10 through 20", "use: from 10 through 21",
       "Line 35: the table above is used where it has no rows."},
      {"use: from 0 below 10", "use: from 0 below 9",
       "Line 35: the tables \"young\" and \"old\" do not join."},
      {"use: from 0 below 10", "use: from 0 through 10",
       "Line 35: the tables \"young\" and \"old\" do not join."},
      {"use: from 10 through 20", "use: from 10 below 20",
       "Line 35: nothing follows the table \"old\", which is used \"below\" its end."},
      {"rows boys 3", "rows children 3",
       "Line 18: rows begin with \"rows boys\" or \"rows girls\" and their number, 2 to 5000."},
      {"rows boys 3", "rows boys 5001",
       "Line 18: rows begin with \"rows boys\" or \"rows girls\" and their number, 2 to 5000."},
      {"rows boys 3", "rows boys -3",
       "Line 18: rows begin with \"rows boys\" or \"rows girls\" and their number, 2 to 5000."},
      {"rows boys 3", "rows boys 4", "Line 22: a row is four numbers with one space between: x L M S."},
      {"rows boys 3", "rows boys 2",
       "Line 21: a line of a table is a key, a colon, a space and a text, or begins rows."},
      {"rows girls 2", "rows boys 2", "Line 22: the table has \"boys\" twice."},
      {"5 0 20 0.2", "5 0 20", "Line 20: a row is four numbers with one space between: x L M S."},
      {"5 0 20 0.2", "5  0 20 0.2", "Line 20: a row is four numbers with one space between: x L M S."},
      {"5 0 20 0.2", "5 0 20 0,2", "Line 20: \"0,2\" is not a number."},
      {"5 0 20 0.2", "5 nan 20 0.2", "Line 20: \"nan\" is not a number."},
      {"5 0 20 0.2", "5 0 inf 0.2", "Line 20: \"inf\" is not a number."},
      {"5 0 20 0.2", "5 0 1e999 0.2", "Line 20: \"1e999\" is not a number."},
      {"5 0 20 0.2", "5 0 0 0.2", "Line 20: M is not above 0."},
      {"5 0 20 0.2", "5 0 -20 0.2", "Line 20: M is not above 0."},
      {"5 0 20 0.2", "5 0 20 0", "Line 20: S is not above 0."},
      {"5 0 20 0.2", "0 0 20 0.2", "Line 20: x does not rise from row to row."},
      {"5 0 20 0.2", "-5 0 20 0.2", "Line 20: x does not rise from row to row."},
  };
  for (const auto& row : table) {
    EXPECT_EQ(refusal(changed(row.before, row.after)), row.reason) << row.before << " -> " << row.after;
  }
}

TEST(ReferenceFile, IsRefusedWhereverItIsCutShort) {
  const QByteArray whole = sealed(smallReference());
  for (qsizetype length = 0; length < whole.size(); ++length) {
    EXPECT_NE(refusal(whole.first(length)), "") << length;
  }
  EXPECT_EQ(refusal(QByteArray()),
            "Line 1: this is not a reference file (it does not begin with \"velmora-reference\").");
  EXPECT_EQ(refusal(smallReference()), "Line 35: the file is cut short before this line.");
}

TEST(ReferenceFile, IsRefusedWhenAnyByteWasChanged) {
  const QByteArray whole = sealed(smallReference());
  for (qsizetype place = 0; place < whole.size(); ++place) {
    QByteArray bytes = whole;
    bytes[place] = static_cast<char>(bytes[place] ^ 1);
    EXPECT_NE(refusal(bytes), "") << place;
  }
  EXPECT_EQ(refusal(sealed(smallReference()).replace("5 0 20 0.2", "5 0 20 0.3")),
            "Line 35: the file was changed after it was made (its SHA-256 is another).");
  EXPECT_EQ(refusal(whole + '\n'), "Line 35: the file goes on after its last line.");
}

TEST(ReferenceFile, IsRefusedWhenItIsTooLarge) {
  const QByteArray filler = '#' + QByteArray(1024 * 1024, 'x') + '\n';
  EXPECT_EQ(refusal(changed("title: Arm", (filler + "title: Arm").constData())),
            "The file is larger than 1048576 bytes.");
}
