// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include <thread>

#include "bridge/pacs/WebPacs.h"
#include "bridge/testing/Orthanc.h"
#include "bridge/testing/PacsOutcome.h"
#include "bridge/testing/SyntheticStudy.h"

namespace bridge {
namespace {

using bridge_testing::inventedStudy;
using bridge_testing::Orthanc;
using bridge_testing::OrthancOptions;
using bridge_testing::SecondaryCaptureClass;
using bridge_testing::syntheticStudy;
using bridge_testing::syntheticUID;

/// An Orthanc with DICOMweb, for which the plugin's answers need not fit into Latin-1.
OrthancOptions web() {
  OrthancOptions options;
  options.dicomWeb = true;
  options.more = {{QStringLiteral("DefaultEncoding"), QStringLiteral("Utf8")}};
  return options;
}

/// An invented study with names in all scripts that there are.
Study studyOf(int number, const QString& patientID) {
  Study study = inventedStudy(number);
  study.patientID = patientID;
  study.patientName = QStringLiteral("Yamada^Tarou=山田^太郎=やまだ^たろう");
  study.referringPhysician = QStringLiteral("Müller^Käthe");
  study.description = QStringLiteral("Größe");
  study.issuerOfPatientID = QStringLiteral("Clinic");
  return study;
}

PacsResult<> put(WebPacs& pacs, const Study& study) {
  return pacs.store(syntheticStudy(study), SecondaryCaptureClass, syntheticUID(study));
}

TEST(WebPacsWithOrthanc, FindsWhatItHasStored) {
  const Orthanc orthanc(web());
  WebPacs pacs(orthanc.web());
  const PacsResult<> checked = pacs.check();
  ASSERT_TRUE(checked.ok()) << qPrintable(checked.error());

  const Study first = studyOf(1, QStringLiteral("P1"));
  Study second = studyOf(2, QStringLiteral("P1"));
  second.studyDate = first.studyDate.addDays(1);
  const Study third = studyOf(3, QStringLiteral("P*"));
  const Study fourth = studyOf(4, QStringLiteral("Ä 1/2&a=b+c%20"));
  const Study fifth = studyOf(5, QStringLiteral("Ä 1/2&a=b-c%20"));
  for (const Study& study : {first, second, third, fourth, fifth}) {
    const PacsResult<> stored = put(pacs, study);
    ASSERT_TRUE(stored.ok()) << qPrintable(stored.error());
  }
  // Once more changes nothing.
  EXPECT_TRUE(put(pacs, first).ok());
  EXPECT_EQ(orthanc.instances().size(), 5);
  EXPECT_EQ(orthanc.fileOf(syntheticUID(first)), syntheticStudy(first));

  StudyQuery byUid;
  byUid.studyInstanceUID = first.studyInstanceUID;
  EXPECT_EQ(studiesOf(pacs.findStudies(byUid)), QList<Study>{first});

  StudyQuery byAccession;
  byAccession.accessionNumber = second.accessionNumber;
  EXPECT_EQ(studiesOf(pacs.findStudies(byAccession)), QList<Study>{second});

  StudyQuery ofPatient;
  ofPatient.patientID = QStringLiteral("P1");
  EXPECT_EQ(studiesOf(pacs.findStudies(ofPatient)).size(), 2);
  ofPatient.studyDate = second.studyDate;
  EXPECT_EQ(studiesOf(pacs.findStudies(ofPatient)), QList<Study>{second});

  StudyQuery wildcard;
  wildcard.patientID = QStringLiteral("P*");
  EXPECT_EQ(studiesOf(pacs.findStudies(wildcard)), QList<Study>{third});

  StudyQuery odd;
  odd.patientID = fourth.patientID;
  EXPECT_EQ(studiesOf(pacs.findStudies(odd)), QList<Study>{fourth});

  StudyQuery nobody;
  nobody.patientID = QStringLiteral("nobody");
  EXPECT_TRUE(studiesOf(pacs.findStudies(nobody)).isEmpty());
}

TEST(WebPacsWithOrthanc, RefusesWhatIsNoDicomForGood) {
  const Orthanc orthanc(web());
  // On a thread that has no event loop, as the service has one for the archive.
  PacsResult<> result;
  std::thread worker([&] {
    WebPacs pacs(orthanc.web());
    result = pacs.store("this is no DICOM file", SecondaryCaptureClass, QStringLiteral("2.25.1"));
  });
  worker.join();
  EXPECT_EQ(outcomeOf(result), Outcome::Never);
  EXPECT_FALSE(result.error().isEmpty());
}

TEST(WebPacsWithOrthanc, AsksForTheRightUserAndPassword) {
  OrthancOptions options = web();
  options.user = QStringLiteral("nurse");
  options.password = QStringLiteral("secret");
  const Orthanc orthanc(options);
  PacsSettings settings = orthanc.web();
  const PacsResult<> right = WebPacs(settings).check();
  EXPECT_TRUE(right.ok()) << qPrintable(right.error());
  settings.password = QStringLiteral("wrong");
  WebPacs locked(settings);
  for (const PacsResult<>& result : {locked.check(), put(locked, studyOf(1, QStringLiteral("P")))}) {
    EXPECT_EQ(outcomeOf(result), Outcome::TryAgain);
    EXPECT_TRUE(
        result.error().startsWith(QStringLiteral("the archive does not accept the user or the password")))
        << qPrintable(result.error());
  }
  settings = orthanc.web();
  settings.url = orthanc.url(QStringLiteral("/elsewhere"));
  const PacsResult<> elsewhere = WebPacs(settings).check();
  EXPECT_EQ(outcomeOf(elsewhere), Outcome::TryAgain);
  EXPECT_TRUE(elsewhere.error().startsWith(QStringLiteral("there is no DICOMweb service at this address")))
      << qPrintable(elsewhere.error());
}

}  // namespace
}  // namespace bridge
