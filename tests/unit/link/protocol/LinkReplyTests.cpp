// SPDX-License-Identifier: LGPL-3.0-or-later
#include "link/protocol/LinkReply.h"

#include <gtest/gtest.h>

#include "testing/bus/LinkOnTheBus.h"
#include "testing/files/EnvironmentVariable.h"
#include "testing/files/Noise.h"
#include "testing/main/Shown.h"

using namespace velmora::testkit;
using namespace velmora::testkit::bus;
using namespace velmora::link;

namespace {

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

QString complaints(const QVariantMap& payload) { return readReply(payload).complaints.join(text(", ")); }

TEST(LinkReply, IsReadWithLocalDays) {
  const EnvironmentVariable zone("TZ", "Europe/Berlin");
  QVariantMap values = replyWithEveryKey();
  values.insert(text("DateOfBirth"), QDateTime(QDate(2019, 3, 14), QTime(23, 30), Qt::UTC));
  const LinkReply reply = readReply(values);
  EXPECT_EQ(reply.identifier, text("12-345-6"));
  EXPECT_EQ(reply.name, text("Jörg"));
  EXPECT_EQ(reply.birthDay, QDate(2019, 3, 15));
  EXPECT_EQ(reply.studyDay, QDate(2024, 5, 2));
  EXPECT_EQ(reply.studyID, text("1.2.3"));
  EXPECT_EQ(reply.description, text("Growth Chart"));
  EXPECT_EQ(reply.jpeg, noise(100));
  EXPECT_EQ(reply.complaints, QStringList());
  EXPECT_TRUE(reply.canBeFiled);
}

TEST(LinkReply, IsComplainedAboutWhereItIsWrong) {
  EXPECT_EQ(complaints({}), text("no Identifier, no StudyDescription, no JPEG"));
  QVariantMap wrong = replyWithEveryKey();
  wrong.insert(text("Identifier"), qint64(5));
  wrong.insert(text("DateOfBirth"), text("2019-03-14"));
  wrong.insert(text("JPEG"), text("no bytes"));
  EXPECT_EQ(complaints(wrong),
            text("Identifier is not a string, JPEG is not bytes, DateOfBirth is not a date"));
  EXPECT_FALSE(readReply(wrong).canBeFiled);
  wrong = replyWithEveryKey();
  wrong.insert(text("JPEG"), QByteArray("GIF89a"));
  EXPECT_EQ(complaints(wrong), text("JPEG is not a JPEG file image"));
  EXPECT_FALSE(readReply(wrong).canBeFiled);
}

TEST(LinkReply, CanBeFiledWithoutACaption) {
  QVariantMap values = replyWithEveryKey();
  values.remove(text("StudyDescription"));
  EXPECT_EQ(complaints(values), text("no StudyDescription"));
  EXPECT_TRUE(readReply(values).canBeFiled);
}

TEST(LinkReply, NamesNoStudyWhereTheStudyIdIsNoText) {
  for (const QVariant& value : {QVariant(qint64(7)), QVariant(QVariantMap{{text("a"), 1}}), QVariant()}) {
    QVariantMap values = replyWithEveryKey();
    values.insert(text("OsiriXStudyID"), value);
    const LinkReply reply = readReply(values);
    EXPECT_EQ(reply.studyID, QString());
    EXPECT_EQ(reply.complaints, QStringList());
    EXPECT_TRUE(reply.canBeFiled);
  }
}

TEST(LinkReply, HoldsNoHalfOfACharacterOfALongText) {
  QVariantMap values = replyWithEveryKey();
  values.insert(text("Name"), QString(1023, u'a') + text("\U0001F600"));
  const LinkReply reply = readReply(values);
  EXPECT_EQ(reply.name, QString(1023, u'a'));
  EXPECT_EQ(reply.complaints, QStringList(text("Name is too long (1025 characters)")));
}

}  // namespace
