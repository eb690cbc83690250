// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include <QUrlQuery>

#include "bridge/pacs/DicomJson.h"
#include "bridge/pacs/WebPacs.h"
#include "bridge/testing/PacsOutcome.h"
#include "tests/unit/bridge/pacs/WebScriptedArchive.h"

namespace bridge {
namespace {

using web_testing::answer;
using web_testing::json;
using web_testing::ScriptedArchive;

/// A study in the DICOM JSON model.
QByteArray study(const QByteArray& uid, const QByteArray& patientID, const QByteArray& more = {}) {
  return R"({"0020000D":{"vr":"UI","Value":[")" + uid + R"("]},"00100020":{"vr":"LO","Value":[")" +
         patientID + R"("]})" + more + "}";
}

StudyQuery ofPatient(const QString& patientID) {
  StudyQuery query;
  query.patientID = patientID;
  return query;
}

TEST(WebFind, AsksForEveryAttributeAndEveryConditionOnce) {
  ScriptedArchive archive(json("[]"));
  StudyQuery query;
  query.studyInstanceUID = QStringLiteral("1.2.3");
  query.accessionNumber = QStringLiteral("A&limit=1#?+ %41/ä");
  query.patientID = QStringLiteral("P 1");
  query.studyDate = QDate(2024, 1, 2);
  studiesOf(WebPacs(archive.settings()).findStudies(query));
  ASSERT_FALSE(archive.requests().isEmpty());
  const auto request = archive.requests().first();
  EXPECT_EQ(request.method, "GET");
  EXPECT_EQ(request.header("Accept"), "application/dicom+json");
  EXPECT_TRUE(request.path.startsWith("/dicom-web/studies?")) << request.path.constData();
  const QUrlQuery asked(QString::fromLatin1(request.path.mid(request.path.indexOf('?') + 1)));
  const auto value = [&](const char* name) {
    return asked.allQueryItemValues(QLatin1String(name), QUrl::FullyDecoded).join(QLatin1Char(','));
  };
  EXPECT_EQ(value("StudyInstanceUID"), QStringLiteral("1.2.3"));
  EXPECT_EQ(value("AccessionNumber"), query.accessionNumber);
  EXPECT_EQ(value("PatientID"), query.patientID);
  EXPECT_EQ(value("StudyDate"), QStringLiteral("20240102"));
  EXPECT_EQ(value("limit"), QStringLiteral("501"));
  EXPECT_EQ(asked.allQueryItemValues(QStringLiteral("includefield")).size(), StudyAttributes.size() - 1);
}

TEST(WebFind, AsksWithWildcardsWhenAServerMayNotHaveUnderstoodTheCharacters) {
  ScriptedArchive archive([](const ScriptedArchive::Request& request) {
    const bool understood = request.path.contains("PatientID=P*1*/2&");
    return json("[" + (understood ? study("1.1", "P 1+ä/2") + "," + study("1.2", "P-1+ä/2") : QByteArray()) +
                "]");
  });
  const QList<Study> studies =
      studiesOf(WebPacs(archive.settings()).findStudies(ofPatient(QStringLiteral("P 1+ä/2"))));
  ASSERT_EQ(archive.requests().size(), 2);
  EXPECT_TRUE(archive.requests().first().path.contains("PatientID=P%201%2B%C3%A4/2&"));
  ASSERT_EQ(studies.size(), 1);
  EXPECT_EQ(studies.first().studyInstanceUID, QStringLiteral("1.1"));
}

TEST(WebFind, ReadsAllThatAStudySays) {
  ScriptedArchive archive(json("[" + study("1.2.3", "P1 ", R"(,
    "00080020":{"vr":"DA","Value":["20240102"]},"00080030":{"vr":"TM","Value":["101112.5"]},
    "00080050":{"vr":"SH","Value":["ACC"]},"00080090":{"vr":"PN","Value":[{"Alphabetic":"Ref^Doc"}]},
    "00081030":{"vr":"LO","Value":["Größe"]},"00100021":{"vr":"LO","Value":["Clinic"]},
    "00100010":{"vr":"PN","Value":[{"Alphabetic":"Yamada^Tarou","Ideographic":"山田^太郎","Phonetic":"やまだ^たろう"}]},
    "00100030":{"vr":"DA","Value":["2010.02.03"]},"00100040":{"vr":"CS","Value":["F"]},
    "00200010":{"vr":"SH","Value":[77]})") +
                               "]"));
  const QList<Study> studies =
      studiesOf(WebPacs(archive.settings()).findStudies(ofPatient(QStringLiteral("P1"))));
  ASSERT_EQ(studies.size(), 1);
  Study expected;
  expected.studyInstanceUID = QStringLiteral("1.2.3");
  expected.patientID = QStringLiteral("P1");
  expected.issuerOfPatientID = QStringLiteral("Clinic");
  expected.patientName = QStringLiteral("Yamada^Tarou=山田^太郎=やまだ^たろう");
  expected.birthDate = QDate(2010, 2, 3);
  expected.sex = QStringLiteral("F");
  expected.studyDate = QDate(2024, 1, 2);
  expected.studyTime = QStringLiteral("101112.5");
  expected.studyID = QStringLiteral("77");
  expected.accessionNumber = QStringLiteral("ACC");
  expected.referringPhysician = QStringLiteral("Ref^Doc");
  expected.description = QStringLiteral("Größe");
  EXPECT_EQ(studies.first(), expected);
}

TEST(WebFind, LeavesOutGroupsOfANameThatSayNothing) {
  const auto nameOf = [](const QByteArray& groups) {
    const auto read =
        studiesFromJson("[" + study("1.2", "P", R"(,"00100010":{"vr":"PN","Value":[)" + groups + "]}") + "]");
    return read.valueOr({}).value(0).patientName;
  };
  EXPECT_EQ(nameOf(R"({"Alphabetic":"A^B","Ideographic":"^","Phonetic":"^"})"), QStringLiteral("A^B"));
  EXPECT_EQ(nameOf(R"({"Ideographic":"山田^太郎"})"), QStringLiteral("=山田^太郎"));
  EXPECT_EQ(nameOf(R"({"Alphabetic":"A^B","Phonetic":"C"})"), QStringLiteral("A^B==C"));
  EXPECT_EQ(nameOf(R"("A^B")"), QStringLiteral("A^B"));
  EXPECT_EQ(nameOf("{}"), QString());
  EXPECT_EQ(nameOf("null"), QString());
}

TEST(WebFind, TakesOnlyWhatMatchesLetterByLetter) {
  ScriptedArchive archive(json("[" + study("1.1", "P1") + "," + study("1.2", "p*") + "," +
                               study("1.3", "P*") + "," + study("1.4", "P*x") + "]"));
  const QList<Study> studies =
      studiesOf(WebPacs(archive.settings()).findStudies(ofPatient(QStringLiteral("P*"))));
  ASSERT_EQ(studies.size(), 1);
  EXPECT_EQ(studies.first().studyInstanceUID, QStringLiteral("1.3"));
}

TEST(WebFind, ComparesTheDayOfTheStudy) {
  ScriptedArchive archive(json("[" + study("1.1", "P", R"(,"00080020":{"vr":"DA","Value":["20240102"]})") +
                               "," + study("1.2", "P", R"(,"00080020":{"vr":"DA","Value":["20240103"]})") +
                               "," + study("1.3", "P") + "]"));
  StudyQuery query;
  query.studyDate = QDate(2024, 1, 3);
  const QList<Study> studies = studiesOf(WebPacs(archive.settings()).findStudies(query));
  ASSERT_EQ(studies.size(), 1);
  EXPECT_EQ(studies.first().studyInstanceUID, QStringLiteral("1.2"));
}

TEST(WebFind, AsksNothingWhenThereIsNothingToFind) {
  ScriptedArchive archive(json("[" + study("1.1", "P") + "]"));
  EXPECT_EQ(outcomeOf(WebPacs(archive.settings()).findStudies(StudyQuery())), Outcome::Never);
  EXPECT_TRUE(
      studiesOf(WebPacs(archive.settings()).findStudies(ofPatient(QStringLiteral("P\\Q")))).isEmpty());
  EXPECT_TRUE(archive.requests().isEmpty());
}

TEST(WebFind, TakesAStudyThatIsThereTwiceOnce) {
  ScriptedArchive archive(json("[" + study("1.1", "P") + "," + study("1.1", "P") + "]"));
  const QList<Study> studies =
      studiesOf(WebPacs(archive.settings()).findStudies(ofPatient(QStringLiteral("P"))));
  EXPECT_EQ(studies.size(), 1);
}

TEST(WebFind, TakesNoContentForNoStudies) {
  ScriptedArchive archive(answer("204 No Content", {}));
  const QList<Study> studies =
      studiesOf(WebPacs(archive.settings()).findStudies(ofPatient(QStringLiteral("P"))));
  EXPECT_TRUE(studies.isEmpty());
}

TEST(WebFind, AsksForANarrowerQuestionWhenThereAreTooManyStudies) {
  QByteArray many = "[" + study("1.0", "P");
  for (int number = 1; number < Pacs::MostStudies; ++number) {
    many += "," + study("1." + QByteArray::number(number), "P");
  }
  ScriptedArchive justEnough(json(many + "]"));
  const QList<Study> studies =
      studiesOf(WebPacs(justEnough.settings()).findStudies(ofPatient(QStringLiteral("P"))));
  EXPECT_EQ(studies.size(), Pacs::MostStudies);

  ScriptedArchive oneMore(json(many + "," + study("1.500", "P") + "]"));
  const PacsResult<QList<Study>> result =
      WebPacs(oneMore.settings()).findStudies(ofPatient(QStringLiteral("P")));
  EXPECT_EQ(outcomeOf(result), Outcome::Never);
  EXPECT_EQ(result.error(), QStringLiteral("more than 500 studies match: ask for something narrower"));
}

TEST(WebFind, HearsThatTheArchiveHasLeftStudiesOut) {
  ScriptedArchive archive(
      answer("200 OK", "[" + study("1.2", "P") + "]",
             "Warning: 299 archive: There are 7 additional results that can be requested\r\n"));
  EXPECT_EQ(outcomeOf(WebPacs(archive.settings()).findStudies(ofPatient(QStringLiteral("P")))),
            Outcome::Never);

  ScriptedArchive other(answer("200 OK", "[" + study("1.2", "P") + "]",
                               "Warning: 299 archive: The fuzzymatching parameter is not supported.\r\n"));
  EXPECT_EQ(studiesOf(WebPacs(other.settings()).findStudies(ofPatient(QStringLiteral("P")))).size(), 1);
}

TEST(WebFind, SurvivesAnswersThatAreNone) {
  const QByteArray deep = QByteArray(100000, '[');
  const QByteArray deepInside =
      "[" + study("1.2", "P", ",\"00081030\":" + QByteArray(900, '[') + QByteArray(900, ']')) + "]";
  const QList<QByteArray> bad{"",
                              "<html>Please log in</html>",
                              "{}",
                              "null",
                              "[{}]",
                              "[1,\"x\",null]",
                              deep,
                              deep + QByteArray(100000, ']'),
                              "[" + study("", "P") + "]",
                              "[" + study("1.2/../3", "P") + "]",
                              "[" + study("1.2\\n", "P") + "]",
                              "[" + study(QByteArray(65, '1'), "P") + "]",
                              R"([{"0020000D":{"vr":"UI","Value":"1.2"}}])",
                              R"([{"0020000D":["1.2"]}])",
                              "[" + study("1.2", "P") + ",{}]",
                              "[" + study("1.2", "P")};
  for (const QByteArray& body : bad) {
    SCOPED_TRACE(body.left(80).constData());
    ScriptedArchive archive(json(body));
    const PacsResult<QList<Study>> result =
        WebPacs(archive.settings()).findStudies(ofPatient(QStringLiteral("P")));
    EXPECT_EQ(outcomeOf(result), Outcome::TryAgain);
    EXPECT_TRUE(result.error().startsWith(QStringLiteral("the archive's answer")))
        << qPrintable(result.error());
  }
  const auto odd = studiesFromJson(deepInside);
  ASSERT_TRUE(odd.ok());
  EXPECT_EQ(odd->first().description, QString());
}

TEST(WebFind, ReadsTypesThatAreWrongAsAbsent) {
  const auto read = studiesFromJson(
      "[" + study("1.2", "P", R"(,"00080020":{"vr":"DA","Value":[20240102]},"00100030":{"Value":["20240231"]},
      "00100040":{"Value":["<b>"]},"00080050":{"Value":[{"a":1}]},"00200010":7,"00100010":{"Value":[["x"]]},
      "00081030":{"Value":[true]},"00080090":{"Value":[{"Alphabetic":5}]})") +
      "]");
  ASSERT_TRUE(read.ok());
  Study expected;
  expected.studyInstanceUID = QStringLiteral("1.2");
  expected.patientID = QStringLiteral("P");
  expected.studyDate = QDate(2024, 1, 2);
  EXPECT_EQ(read->first(), expected);
}

}  // namespace
}  // namespace bridge
