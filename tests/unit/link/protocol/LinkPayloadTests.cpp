// SPDX-License-Identifier: LGPL-3.0-or-later
#include "link/protocol/LinkPayload.h"

#include <gtest/gtest.h>

#include "link/protocol/BundleIdentifier.h"
#include "testing/files/Noise.h"
#include "testing/main/Shown.h"

using namespace velmora::link;

namespace {

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

TEST(LinkRequest, HoldsWhatTheStudySays) {
  const QVariantMap studyId{{text("a"), QVariantList{qint64(1), 0.5, true, text("x")}}};
  const auto request = requestPayload({{text("Identifier"), text("12/345/6")},
                                       {text("DateOfStudy"), text("2024-05-02")},
                                       {text("OsiriXStudyID"), studyId}});
  ASSERT_TRUE(request.ok()) << qPrintable(request.error());
  EXPECT_EQ(*request, (QVariantMap{{text("Identifier"), text("12/345/6")},
                                   {text("DateOfStudy"), QDateTime(QDate(2024, 5, 2), QTime(12, 0))},
                                   {text("OsiriXStudyID"), studyId}}));
}

TEST(BundleIdentifier, IsANameOnTheBusWhereTheBusAllowsIt) {
  for (const char* good : {"org.velmora.growth", "a.b", "_a.-b", "A-1_b.c"})
    EXPECT_TRUE(isBusName(text(good)));
  for (const char* bad : {"", "a", "a.b\n", "1.a", "a.1", "a..b", ".a", "a.b.", "a.b/c"}) {
    EXPECT_FALSE(isBusName(text(bad))) << bad;
  }
  EXPECT_FALSE(isBusName(text("a.") + QString(254, u'a')));
}

TEST(LinkRequest, IsReadAsFarAsItsValuesAreWhatTheyShouldBe) {
  const QDateTime birth(QDate(2019, 3, 14), QTime(12, 0));
  const LinkRequest whole = readRequest({{text("Identifier"), text("12/345/6")},
                                         {text("Name"), text("Jörg")},
                                         {text("DateOfBirth"), birth},
                                         {text("DateOfStudy"), birth.addDays(7)},
                                         {text("OsiriXStudyID"), qint64(7)}});
  EXPECT_EQ(whole.identifier, QVariant(text("12/345/6")));
  EXPECT_EQ(whole.name, text("Jörg"));
  EXPECT_EQ(whole.birthDate, birth);
  EXPECT_EQ(whole.studyDate, birth.addDays(7));
  EXPECT_EQ(whole.studyID, QVariant(qint64(7)));
  const LinkRequest odd =
      readRequest({{text("Name"), QVariantList{1}}, {text("DateOfBirth"), text("2019-03-14")}});
  EXPECT_FALSE(odd.identifier.isValid());
  EXPECT_TRUE(odd.name.isNull());
  EXPECT_FALSE(odd.birthDate.isValid());
  EXPECT_FALSE(odd.studyDate.isValid());
  EXPECT_FALSE(odd.studyID.isValid());
}

TEST(LinkRequest, IsHeldWithoutWhatNobodyReads) {
  const QVariantMap read{{text("Identifier"), text("1")}, {text("OsiriXStudyID"), QVariantList{1}}};
  QVariantMap more = read;
  more.insert(text("JPEG"), QByteArray("a picture"));
  EXPECT_EQ(requestKeysOnly(more), read);
}

TEST(BundleIdentifier, HasTheCharactersOfANameOnTheBus) {
  for (const char* good : {"org.velmora.growth", "a", "A-1_b.c"}) EXPECT_TRUE(isBundleIdentifier(text(good)));
  for (const char* bad : {"", "it's", "a b", "a\n", "ö", "a/b"}) EXPECT_FALSE(isBundleIdentifier(text(bad)));
  EXPECT_TRUE(isBundleIdentifier(QString(255, u'a')));
  EXPECT_FALSE(isBundleIdentifier(QString(256, u'a')));
}

}  // namespace
