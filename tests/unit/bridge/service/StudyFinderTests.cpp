// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include "bridge/dicom/Uid.h"
#include "bridge/service/StudyFinder.h"
#include "bridge/testing/PacsOutcome.h"
#include "bridge/testing/Replies.h"
#include "bridge/testing/ScriptedPacs.h"
#include "testing/main/Shown.h"

using namespace bridge_testing;
using namespace bridge;

namespace {

const QDate Day(2024, 5, 2);

struct Row {
  const char* what;
  QList<Study> studies;
  std::function<void(SpooledReply&)> change;  // of a reply for 1.1 of patient 12-345, with everything in it
  QString study;                              // empty: set aside
};

Study with(Study study, const std::function<void(Study&)>& change) {
  change(study);
  return study;
}

Study ofIssuer(const char* uid, const char* patientID, const char* issuer, QDate birth = QDate(2019, 3, 14)) {
  return with(study(uid, patientID), [&](Study& each) {
    each.issuerOfPatientID = text(issuer);
    each.birthDate = birth;
  });
}

SpooledReply reply() {
  return *spooledReply(replyTo(study("1.1", "12/345")), Growth, QDateTime::currentDateTime());
}

void unnamed(SpooledReply& each) { each.studyID.clear(); }
void nothing(SpooledReply&) {}
std::function<void(SpooledReply&)> as(const char* identifier) {
  return [=](SpooledReply& each) { each.identifier = text(identifier); };
}
std::function<void(SpooledReply&)> requested(const char* uid) {
  return [=](SpooledReply& each) {
    unnamed(each);
    each.requestedStudyUID = text(uid);
  };
}

void inCapitals(SpooledReply& each) {
  requested("1.1")(each);
  each.identifier = text("AB-1");
}

const QString None;

QList<Row> table() {
  const Study one = study("1.1", "12/345");
  const Study two = study("1.2", "12/345");
  const Study earlier = study("1.3", "12/345", Day.addDays(-7));
  const Study hyphen = study("1.4", "12-345");
  const Study other = study("1.5", "777");
  const QDate Unknown;
  return {
      // The reply names its study.
      {"named", {one, two}, nothing, text("1.1")},
      {"named, with hyphens in the PACS too",
       {with(one, [](Study& s) { s.patientID = text("12-345"); })},
       nothing,
       text("1.1")},
      {"named, padded", {with(one, [](Study& s) { s.patientID = text("12/345 "); })}, nothing, text("1.1")},
      {"named, of another day",
       {with(one, [](Study& s) { s.studyDate = Day.addDays(1); })},
       nothing,
       text("1.1")},
      {"named, beside a patient with a hyphen", {one, hyphen}, nothing, text("1.1")},
      {"named, not known", {two}, nothing, None},
      {"named, known twice", {one, with(one, [](Study& s) { s.patientID = text("777"); })}, nothing, None},
      {"named, no UID", {one}, [](SpooledReply& r) { r.studyID = text("*"); }, None},
      {"named, two UIDs", {one}, [](SpooledReply& r) { r.studyID = text("1.1\\1.2"); }, None},
      {"named, too long", {one}, [](SpooledReply& r) { r.studyID = QString(65, QLatin1Char('1')); }, None},
      {"another patient", {one}, [](SpooledReply& r) { r.identifier = text("777"); }, None},
      {"another birth date", {one}, [](SpooledReply& r) { r.birthDay = r.birthDay.addDays(1); }, None},
      {"named, in capitals", {ofIssuer("1.1", "ab/1", "")}, as("AB-1"), text("1.1")},
      {"named, in capitals, no birth date to tell", {ofIssuer("1.1", "ab/1", "", Unknown)}, as("AB-1"), None},
      {"named, in capitals, another birth date",
       {ofIssuer("1.1", "ab/1", "", QDate(2019, 3, 15))},
       as("AB-1"),
       None},
      {"named, in small letters", {ofIssuer("1.1", "AB/1", "")}, as("ab-1"), None},
      {"in capitals, and not named",
       {ofIssuer("1.1", "ab/1", "")},
       [](SpooledReply& r) {
         r.identifier = text("AB-1");
         unnamed(r);
       },
       None},
      {"no birth date in the reply", {one}, [](SpooledReply& r) { r.birthDay = QDate(); }, text("1.1")},
      {"no birth date in the PACS", {ofIssuer("1.1", "12/345", "", Unknown)}, nothing, text("1.1")},
      {"no Patient ID in the PACS", {with(one, [](Study& s) { s.patientID.clear(); })}, nothing, None},
      {"no identifier in the reply", {one}, [](SpooledReply& r) { r.identifier = text(" "); }, None},
      // The request named it.
      {"requested", {one, two}, requested("1.2"), text("1.2")},
      {"requested, not known", {one}, requested("1.2"), None},
      {"requested, no UID", {one}, requested("?"), None},
      {"requested, another patient's", {one, other}, requested("1.5"), None},
      {"requested, another birth date",
       {one},
       [](SpooledReply& r) {
         requested("1.1")(r);
         r.birthDay = QDate(2000, 1, 1);
       },
       None},
      {"requested, of another day than the examination", {one, earlier}, requested("1.3"), text("1.3")},
      {"requested, in capitals", {ofIssuer("1.1", "ab/1", "")}, inCapitals, text("1.1")},
      {"requested, in capitals, no birth date to tell",
       {ofIssuer("1.1", "ab/1", "", Unknown)},
       inCapitals,
       None},
      {"requested, in capitals, which are another patient's",
       {ofIssuer("1.1", "ab/1", ""), ofIssuer("1.2", "AB-1", "")},
       inCapitals,
       None},
      {"requested, two patients by / and -", {one, hyphen}, requested("1.1"), None},
      {"requested, two issuers",
       {ofIssuer("1.1", "12/345", "A"), ofIssuer("1.2", "12/345", "B")},
       requested("1.1"),
       None},
      // The only one of the day.
      {"the only one of the day", {one, earlier, other}, unnamed, text("1.1")},
      {"two of the day", {one, two}, unnamed, None},
      {"none of the day", {earlier}, unnamed, None},
      {"nothing known", {}, unnamed, None},
      {"no day", {one}, [](SpooledReply& r) { unnamed(r), r.studyDay = QDate(); }, None},
      {"birth date of somebody else", {one}, [](SpooledReply& r) { unnamed(r), r.birthDay = Day; }, None},
      {"two patients by / and -, one on another day",
       {one, with(hyphen, [](Study& s) { s.studyDate = Day.addDays(9); })},
       unnamed,
       None},
      {"two issuers on other days",
       {ofIssuer("1.1", "12/345", "A"),
        with(ofIssuer("1.2", "12/345", "B"), [](Study& s) { s.studyDate = Day.addDays(9); })},
       unnamed,
       None},
      {"an unnamed issuer, same birth date",
       {ofIssuer("1.1", "12/345", "A"),
        with(ofIssuer("1.2", "12/345", ""), [](Study& s) { s.studyDate = Day.addDays(9); })},
       unnamed,
       text("1.1")},
      {"an unnamed issuer, no birth date",
       {ofIssuer("1.1", "12/345", "A", Unknown),
        with(ofIssuer("1.2", "12/345", ""), [](Study& s) { s.studyDate = Day.addDays(9); })},
       unnamed,
       None},
      {"two issuers and an unnamed one between them",
       {ofIssuer("1.1", "12/345", ""),
        with(ofIssuer("1.2", "12/345", "A"), [](Study& s) { s.studyDate = Day.addDays(9); }),
        with(ofIssuer("1.6", "12/345", "B"), [](Study& s) { s.studyDate = Day.addDays(9); })},
       unnamed,
       None},
      {"two birth dates under one identifier",
       {one, with(earlier, [](Study& s) { s.birthDate = QDate(1950, 1, 1); })},
       [](SpooledReply& r) { unnamed(r), r.birthDay = QDate(); },
       None},
      {"another sex and name under one identifier and birth date",
       {with(one, [](Study& s) { s.sex = text("M"); }),
        with(earlier, [](Study& s) { s.sex = text("F"), s.patientName = text("Other^Ann"); })},
       unnamed,
       text("1.1")},
      {"an identifier of other characters in the same places",
       {one, study("1.7", "12x345")},
       unnamed,
       text("1.1")},
      {"wildcards in the identifier",
       {one},
       [](SpooledReply& r) { unnamed(r), r.identifier = text("12*345"); },
       None},
      {"a backslash in the identifier",
       {one},
       [](SpooledReply& r) { unnamed(r), r.identifier = text("12-345\\7"); },
       None},
  };
}

}  // namespace

TEST(StudyFinder, FollowsTheTable) {
  for (const Row& row : table()) {
    SCOPED_TRACE(row.what);
    ScriptedPacs pacs;
    pacs.studies = row.studies;
    SpooledReply which = reply();
    row.change(which);
    const PacsResult<Study> answer = findStudyFor(which, pacs);
    EXPECT_EQ(outcomeOf(answer), row.study.isEmpty() ? Outcome::Never : Outcome::Done)
        << qPrintable(answer.error());
    EXPECT_EQ(answer.valueOr({}).studyInstanceUID, row.study);
    EXPECT_EQ(answer.error().isEmpty(), answer.ok());
  }
}

TEST(StudyFinder, AsksForEveryPatientIDThatTheIdentifierMayStandFor) {
  ScriptedPacs pacs;
  pacs.studies = {study("1.1", "12/345-6")};
  SpooledReply which = reply();
  which.studyID.clear();
  which.identifier = text("12-345-6");
  EXPECT_EQ(outcomeOf(findStudyFor(which, pacs)), Outcome::Done);
  QStringList asked;
  for (const StudyQuery& query : pacs.queries) asked.append(query.patientID);
  asked.sort();
  EXPECT_EQ(asked, (QStringList{text("12-345-6"), text("12-345/6"), text("12/345-6"), text("12/345/6")}));
}

TEST(StudyFinder, BoundsTheNumberOfQuestions) {
  ScriptedPacs pacs;
  SpooledReply which = reply();
  which.studyID.clear();
  which.identifier = QString(64, QLatin1Char('-'));
  EXPECT_EQ(outcomeOf(findStudyFor(which, pacs)), Outcome::Never);
  EXPECT_TRUE(pacs.queries.isEmpty());
}

TEST(StudyFinder, TriesAgainWhenThePacsIsAwayAndSetsAsideWhenItRefuses) {
  for (const char* uid : {"1.1", ""}) {
    ScriptedPacs pacs;
    pacs.studies = {study("1.1", "12/345")};
    SpooledReply which = reply();
    which.studyID = text(uid);
    pacs.findResult = Away;
    EXPECT_EQ(outcomeOf(findStudyFor(which, pacs)), Outcome::TryAgain);
    pacs.findResult = Refused;
    EXPECT_EQ(outcomeOf(findStudyFor(which, pacs)), Outcome::Never);
    EXPECT_EQ(findStudyFor(which, pacs).error(), text("not wanted"));
  }
}

TEST(StudyFinder, NeverAsksForWhatIsNoUid) {
  for (const char* uid : {"*", "1.2*", "1..2", ".1", "1.", "1.2\\1.3", "1 2", "abc", "1.2\n"}) {
    EXPECT_FALSE(isUid(text(uid))) << uid;
  }
  EXPECT_TRUE(isUid(text("1.2.840.10008")));
}
