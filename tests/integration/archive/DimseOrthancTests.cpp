// SPDX-License-Identifier: LGPL-3.0-or-later
//
// DIMSE with a real archive.
#include <gtest/gtest.h>

#include <QtEndian>

#include "bridge/pacs/DimsePacs.h"
#include "bridge/testing/LoopbackPeer.h"
#include "bridge/testing/Orthanc.h"
#include "bridge/testing/PacsOutcome.h"
#include "bridge/testing/SyntheticStudy.h"

using namespace bridge_testing;
using bridge::DimsePacs;
using bridge::Outcome;
using bridge::outcomeOf;
using bridge::PacsResult;
using bridge::PacsSettings;
using bridge::studiesOf;
using bridge::Study;
using bridge::StudyQuery;

namespace bridge {
/// How GoogleTest shows a study.
void PrintTo(const Study& study, std::ostream* stream) {
  *stream << qPrintable(QStringList({study.studyInstanceUID, study.patientID, study.issuerOfPatientID,
                                     study.patientName, study.birthDate.toString(Qt::ISODate), study.sex,
                                     study.studyDate.toString(Qt::ISODate), study.studyTime, study.studyID,
                                     study.accessionNumber, study.referringPhysician, study.description})
                            .join(QStringLiteral(" | ")));
}
}  // namespace bridge

namespace {

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

/// All of a file that follows its meta header, whose length stands in its first element (PS3.10 7.1).
QByteArray datasetOf(const QByteArray& file) {
  constexpr qsizetype LengthAt = 128 + 4 + 8;
  return file.mid(LengthAt + 4 + qFromLittleEndian<quint32>(file.constData() + LengthAt));
}

}  // namespace

/// One archive for all of these; it is emptied before each.
class DimseWithOrthanc : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    OrthancOptions options;
    options.checkCalledTitle = true;
    orthanc_ = new Orthanc(options);
  }
  static void TearDownTestSuite() {
    delete orthanc_;
    orthanc_ = nullptr;
  }
  void SetUp() override { orthanc_->clear(); }

  /// What the archive answers to a query; an error fails the test.
  static QList<Study> found(const StudyQuery& query) {
    DimsePacs pacs(orthanc_->dimse());
    return studiesOf(pacs.findStudies(query));
  }
  static PacsResult<> store(const PacsSettings& settings, const Study& study, int number = 1,
                            int pixels = 8) {
    DimsePacs pacs(settings);
    return pacs.store(syntheticStudy(study, number, pixels), SecondaryCaptureClass,
                      syntheticUID(study, number));
  }

  static inline Orthanc* orthanc_ = nullptr;
};

TEST_F(DimseWithOrthanc, FindsAStudyByEachKeyWithAllThatIsKnownOfIt) {
  const Study study = inventedStudy(1);
  Study other = inventedStudy(2);
  other.studyDate = QDate(2024, 3, 2);
  orthanc_->put(syntheticStudy(study));
  orthanc_->put(syntheticStudy(other));
  StudyQuery byUid, byAccession, byPatient, byPatientAndDay;
  byUid.studyInstanceUID = study.studyInstanceUID;
  byAccession.accessionNumber = study.accessionNumber;
  byPatient.patientID = study.patientID;
  byPatientAndDay.patientID = study.patientID;
  byPatientAndDay.studyDate = study.studyDate;
  for (const StudyQuery& query : {byUid, byAccession, byPatient, byPatientAndDay}) {
    EXPECT_EQ(found(query), QList<Study>{study});
  }
  byPatientAndDay.studyDate = other.studyDate;
  EXPECT_TRUE(found(byPatientAndDay).isEmpty());
  StudyQuery byDay;
  byDay.studyDate = other.studyDate;
  EXPECT_EQ(found(byDay), QList<Study>{other});
}

TEST_F(DimseWithOrthanc, FindsAllStudiesOfAPatient) {
  Study first = inventedStudy(1);
  Study second = inventedStudy(2);
  second.patientID = first.patientID;
  orthanc_->put(syntheticStudy(first));
  orthanc_->put(syntheticStudy(second));
  StudyQuery query;
  query.patientID = first.patientID;
  EXPECT_EQ(found(query).size(), 2);
}

TEST_F(DimseWithOrthanc, AsksAndIsAnsweredInOtherScriptsThanLatin) {
  Study study = inventedStudy();
  study.patientID = text("ÅÄÖ-7");
  study.patientName = text("Yamada^Tarou=山田^太郎=やまだ^たろう");
  orthanc_->put(syntheticStudy(study));
  StudyQuery query;
  query.patientID = study.patientID;
  EXPECT_EQ(found(query), QList<Study>{study});
}

TEST_F(DimseWithOrthanc, TakesAWildcardInAnIdentifierForACharacter) {
  Study plain = inventedStudy(1);
  plain.patientID = text("A7B");
  Study starred = inventedStudy(2);
  starred.patientID = text("A*B");
  orthanc_->put(syntheticStudy(plain));
  orthanc_->put(syntheticStudy(starred));
  StudyQuery query;
  query.patientID = text("A*B");
  EXPECT_EQ(found(query), QList<Study>{starred});
  query.patientID = text("A?B");
  EXPECT_TRUE(found(query).isEmpty());
  query.patientID = text("A7B\\A*B");
  EXPECT_TRUE(found(query).isEmpty());
}

TEST_F(DimseWithOrthanc, TellsUpperFromLowerCaseInAnIdentifier) {
  Study study = inventedStudy();
  study.patientID = text("abc");
  orthanc_->put(syntheticStudy(study));
  StudyQuery query;
  query.patientID = text("ABC");
  EXPECT_TRUE(found(query).isEmpty());
}

TEST_F(DimseWithOrthanc, FindsNothingWithoutAQuestion) {
  DimsePacs pacs(orthanc_->dimse());
  EXPECT_EQ(outcomeOf(pacs.findStudies(StudyQuery())), Outcome::Never);
}

TEST_F(DimseWithOrthanc, StoresAnObjectByteForByte) {
  const Study study = inventedStudy();
  const PacsResult<> result = store(orthanc_->dimse(), study, 1, 700);  // several fragments
  EXPECT_TRUE(result.ok()) << qPrintable(result.error());
  const QByteArray sent = datasetOf(syntheticStudy(study, 1, 700));
  EXPECT_GT(sent.size(), 700 * 700);
  EXPECT_TRUE(datasetOf(orthanc_->fileOf(syntheticUID(study))) == sent);
}

TEST_F(DimseWithOrthanc, StoringTwiceIsNoErrorAndLeavesOneObject) {
  const Study study = inventedStudy();
  EXPECT_TRUE(store(orthanc_->dimse(), study).ok());
  const PacsResult<> again = store(orthanc_->dimse(), study);
  EXPECT_TRUE(again.ok()) << qPrintable(again.error());
  EXPECT_EQ(orthanc_->instances(), QStringList{syntheticUID(study)});
}

TEST_F(DimseWithOrthanc, RefusesToStoreAnObjectUnderAnothersName) {
  const Study study = inventedStudy();
  DimsePacs pacs(orthanc_->dimse());
  EXPECT_EQ(outcomeOf(pacs.store(syntheticStudy(study, 1), SecondaryCaptureClass, syntheticUID(study, 2))),
            Outcome::Never);
  EXPECT_EQ(outcomeOf(pacs.store("no DICOM", SecondaryCaptureClass, syntheticUID(study, 1))), Outcome::Never);
  EXPECT_TRUE(orthanc_->instances().isEmpty());
}

TEST_F(DimseWithOrthanc, ChecksThatAllIsWell) {
  DimsePacs pacs(orthanc_->dimse());
  const PacsResult<> result = pacs.check();
  EXPECT_TRUE(result.ok()) << qPrintable(result.error());
}

TEST_F(DimseWithOrthanc, SaysThatTheCalledTitleIsWrong) {
  PacsSettings settings = orthanc_->dimse();
  settings.calledAETitle = text("SOMEBODY");
  DimsePacs pacs(settings);
  const PacsResult<> result = pacs.check();
  EXPECT_EQ(outcomeOf(result), Outcome::TryAgain);
  EXPECT_TRUE(result.error().contains(text("does not go by the AE title \"SOMEBODY\"")))
      << qPrintable(result.error());
}

TEST_F(DimseWithOrthanc, SaysThatAStrangerMayNotFind) {
  PacsSettings settings = orthanc_->dimse();
  settings.callingAETitle = text("STRANGER");
  DimsePacs pacs(settings);
  const PacsResult<> check = pacs.check();
  EXPECT_EQ(outcomeOf(check), Outcome::TryAgain);
  EXPECT_TRUE(check.error().contains(text("C-FIND")) && check.error().contains(text("AE title \"STRANGER\"")))
      << qPrintable(check.error());
  StudyQuery query;
  query.patientID = text("P-1");
  const PacsResult<QList<Study>> result = pacs.findStudies(query);
  EXPECT_EQ(outcomeOf(result), Outcome::TryAgain);
  EXPECT_FALSE(result.error().isEmpty());
}

TEST_F(DimseWithOrthanc, AStoreThatIsCutAnywhereIsTriedAgainAndThenStands) {
  const Study study = inventedStudy();
  const QByteArray file = syntheticStudy(study, 1, 200);
  for (const int bytes : {0, 100, 400, 20000}) {
    CuttingProxy proxy(orthanc_->dicomPort(), bytes);
    PacsSettings settings = orthanc_->dimse();
    settings.port = proxy.port();
    DimsePacs pacs(settings);
    const PacsResult<> result = pacs.store(file, SecondaryCaptureClass, syntheticUID(study));
    EXPECT_EQ(outcomeOf(result), Outcome::TryAgain) << "cut after " << bytes;
    EXPECT_FALSE(result.error().isEmpty());
    EXPECT_TRUE(orthanc_->instances().isEmpty()) << "cut after " << bytes;
  }
  EXPECT_TRUE(store(orthanc_->dimse(), study, 1, 200).ok());
  EXPECT_EQ(orthanc_->instances(), QStringList{syntheticUID(study)});
}

TEST(DimseWithoutOrthanc, TriesAgainWhileTheArchiveIsDown) {
  PacsSettings settings;
  settings.host = text("127.0.0.1");
  settings.port = freePort();
  DimsePacs pacs(settings);
  const PacsResult<> result = pacs.check();
  EXPECT_EQ(outcomeOf(result), Outcome::TryAgain);
  EXPECT_TRUE(result.error().contains(text("cannot be reached"))) << qPrintable(result.error());
}

TEST(DimseWithoutOrthanc, GivesUpWaitingForAnArchiveThatNeverAnswers) {
  SilentPeer peer;
  PacsSettings settings;
  settings.host = text("127.0.0.1");
  settings.port = peer.port();
  settings.timeout = std::chrono::seconds(1);
  DimsePacs pacs(settings);
  const PacsResult<> result = pacs.check();
  EXPECT_EQ(outcomeOf(result), Outcome::TryAgain);
  EXPECT_TRUE(result.error().contains(text("does not answer within 1 s"))) << qPrintable(result.error());
}

TEST(DimseWithoutOrthanc, SaysThatThereIsNoSuchComputer) {
  PacsSettings settings;
  settings.host = text("no-such-host.invalid");
  DimsePacs pacs(settings);
  const PacsResult<> result = pacs.check();
  EXPECT_EQ(outcomeOf(result), Outcome::TryAgain);
  EXPECT_TRUE(result.error().contains(text("no-such-host.invalid"))) << qPrintable(result.error());
}
