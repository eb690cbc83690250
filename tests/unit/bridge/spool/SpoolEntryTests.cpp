// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include "bridge/cli/ReplySummary.h"
#include "bridge/spool/SpoolEntry.h"
#include "bridge/spool/SpoolFile.h"
#include "bridge/testing/Replies.h"
#include "testing/main/Shown.h"

using namespace bridge_testing;
using namespace bridge;

namespace {

const QDateTime Arrival(QDate(2024, 5, 2), QTime(23, 30, 1, 250), Qt::OffsetFromUTC, 7200);

SpooledReply taken(const QVariantMap& values) {
  return spooledReply(values, Growth, Arrival).value_or(SpooledReply());
}

QVariantMap good() { return replyTo(study("1.2.3", "12/345")); }

}  // namespace

TEST(SpoolEntry, TakesOverWhatAReplySays) {
  const SpooledReply reply = taken(good());
  EXPECT_EQ(reply.identifier, text("12-345"));
  EXPECT_EQ(reply.patientName, text("Max Muster"));
  EXPECT_EQ(reply.birthDay, QDate(2019, 3, 14));
  EXPECT_EQ(reply.studyDay, QDate(2024, 5, 2));
  EXPECT_EQ(reply.studyID, text("1.2.3"));
  EXPECT_EQ(reply.description, text("Growth Chart"));
  EXPECT_EQ(reply.application, Growth);
  EXPECT_EQ(reply.jpeg, jpeg());
  EXPECT_EQ(reply.arrival.offsetFromUtc(), 7200);
  EXPECT_TRUE(reply.sopInstanceUID.startsWith(text("2.25.")));
  EXPECT_EQ(reply.complaint, QString());
  EXPECT_NE(reply.sopInstanceUID, taken(good()).sopInstanceUID);
}

TEST(SpoolEntry, ReadsADateAsTheLocalDay) {
  QVariantMap values = good();
  // In Berlin it is the 15th already.
  values[text("DateOfBirth")] = QDateTime(QDate(2019, 3, 14), QTime(23, 30), Qt::UTC);
  EXPECT_EQ(taken(values).birthDay, QDate(2019, 3, 15));
}

// `receive` and `serve` read the same payload: what the one prints is what the other decides by.
TEST(SpoolEntry, SaysOfAReplyWhatReceiveSays) {
  const struct {
    const char* key;
    QVariant value;
    const char* said;
    bool sent;
  } table[] = {
      {"Identifier", QVariant(), "no Identifier", false},
      {"Identifier", 7, "Identifier is not a string", false},
      {"Identifier", QString(5000, QLatin1Char('x')), "Identifier is too long (5000 characters)", false},
      {"Name", QVariant(), "", true},
      {"Name", QVariantList{1}, "Name is not a string", false},
      {"DateOfBirth", QVariant(), "", true},
      {"DateOfBirth", text("2019-03-14"), "DateOfBirth is not a date", false},
      {"DateOfStudy", 1.5, "DateOfStudy is not a date", false},
      {"DateOfStudy", QDateTime(QDate(-4, 5, 2), QTime(12, 0)), "DateOfStudy is not a date", false},
      {"OsiriXStudyID", QVariant(), "", true},
      {"OsiriXStudyID", QVariantMap{{text("a"), 1}}, "", true},
      {"OsiriXStudyID", QByteArray("1.2"), "", true},
      {"StudyDescription", QVariant(), "no StudyDescription", true},
      {"StudyDescription", 5, "StudyDescription is not a string", false},
      {"JPEG", QByteArray("GIF89a"), "JPEG is not a JPEG file image", false},
  };
  for (const auto& row : table) {
    QVariantMap values = good();
    if (row.value.isValid()) {
      values[text(row.key)] = row.value;
    } else {
      values.remove(text(row.key));
    }
    const QString complaint = taken(values).complaint;
    EXPECT_EQ(complaint, row.sent ? QString() : text(row.said)) << row.key;
    const QString said = summaryOf(values, text("0001"), Arrival).section(QLatin1Char('\t'), 6);
    EXPECT_EQ(said, text(row.said)) << row.key;
  }
}

TEST(SpoolEntry, KeepsNothingOfAReplyWithoutAChart) {
  QVariantMap values = good();
  values.remove(text("JPEG"));
  EXPECT_FALSE(spooledReply(values, Growth, Arrival).has_value());
  values[text("JPEG")] = text("no bytes");
  EXPECT_FALSE(spooledReply(values, Growth, Arrival).has_value());
  EXPECT_FALSE(spooledReply({}, Growth, Arrival).has_value());
}

TEST(SpoolEntry, ReadsBackTheReplyThatItWrote) {
  SpooledReply reply = taken(good());
  reply.requestedStudyUID = text("1.9");
  reply.identifier = text("Jörg \"\n\\");
  reply.birthDay = QDate();
  EXPECT_EQ(decodeReply(encodeReply(reply)), reply);
  SpooledReply head = reply;
  head.jpeg.clear();
  EXPECT_EQ(decodeReplyHead(encodeReply(reply).left(HeadSize)), head);
}

TEST(SpoolEntry, FitsTheHeadOfTheLongestReply) {
  QVariantMap values = good();
  for (const char* key : {"Identifier", "Name", "OsiriXStudyID", "StudyDescription"}) {
    values[text(key)] = QString(100'000, QChar(u'\x01'));
  }
  EXPECT_TRUE(decodeReplyHead(encodeReply(taken(values)).left(HeadSize)).has_value());
}

TEST(SpoolEntry, TakesNoDamagedFileForAWholeOne) {
  const QByteArray file = encodeReply(taken(good()));
  for (qsizetype size = 0; size < file.size(); size += 7) {
    EXPECT_FALSE(decodeReply(file.left(size)).has_value()) << size;
  }
  for (qsizetype place = 0; place < file.size(); place += 5) {
    QByteArray changed = file;
    changed[place] = static_cast<char>(changed.at(place) ^ 1);
    EXPECT_FALSE(decodeReply(changed).has_value()) << place;
  }
}

TEST(SpoolEntry, TakesNoDayOfAnotherFormForADay) {
  const QByteArray file = encodeReply(taken(good()));
  const QByteArray contents = file.mid(file.indexOf('\n') + 1);
  for (const char* wrong : {"2019/03/14", "2019-03-14 or so", "2019-03-32"}) {
    QByteArray changed = contents;
    changed.replace("\"2019-03-14\"", QByteArray("\"") + wrong + '"');
    EXPECT_FALSE(decodeReply(sealed("velmora-link reply 1", changed)).has_value()) << wrong;
  }
}

TEST(SpoolEntry, ReadsBackTheStateThatItWrote) {
  EntryState state;
  state.state = SpoolState::Aside;
  state.changed = Arrival;
  state.tries = 12;
  state.reason = text("why not");
  EXPECT_EQ(decodeState(encodeState(state)), state);
  state.decision = Decision{study("1.2.3", "12/345"), text("2.25.1"), 9123, 4, false};
  EXPECT_EQ(decodeState(encodeState(state)), state);
  state.decision->study.birthDate = QDate();
  EXPECT_EQ(decodeState(encodeState(state)), state);
  QByteArray file = encodeState(state);
  EXPECT_FALSE(decodeState(file.chopped(1)).has_value());
  EXPECT_FALSE(decodeState(QByteArray()).has_value());
}
