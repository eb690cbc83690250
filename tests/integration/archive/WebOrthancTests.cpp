// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include <thread>

#include "bridge/pacs/WebPacs.h"
#include "bridge/testing/Orthanc.h"
#include "bridge/testing/SyntheticStudy.h"

namespace bridge {
namespace {

using Outcome = PacsResult::Outcome;
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

PacsResult put(WebPacs& pacs, const Study& study) {
  return pacs.store(syntheticStudy(study), SecondaryCaptureClass, syntheticUID(study));
}

TEST(WebPacsWithOrthanc, FindsWhatItHasStored) {
  const Orthanc orthanc(web());
  WebPacs pacs(orthanc.web());
  const PacsResult checked = pacs.check();
  ASSERT_TRUE(checked.done()) << qPrintable(checked.reason);

  const Study first = studyOf(1, QStringLiteral("P1"));
  Study second = studyOf(2, QStringLiteral("P1"));
  second.studyDate = first.studyDate.addDays(1);
  const Study third = studyOf(3, QStringLiteral("P*"));
  const Study fourth = studyOf(4, QStringLiteral("Ä 1/2&a=b+c%20"));
  const Study fifth = studyOf(5, QStringLiteral("Ä 1/2&a=b-c%20"));
  for (const Study& study : {first, second, third, fourth, fifth}) {
    const PacsResult stored = put(pacs, study);
    ASSERT_TRUE(stored.done()) << qPrintable(stored.reason);
  }
  // Once more changes nothing.
  EXPECT_TRUE(put(pacs, first).done());
  EXPECT_EQ(orthanc.instances().size(), 5);
  EXPECT_EQ(orthanc.fileOf(syntheticUID(first)), syntheticStudy(first));

  QList<Study> found;
  StudyQuery byUid;
  byUid.studyInstanceUID = first.studyInstanceUID;
  ASSERT_TRUE(pacs.findStudies(byUid, found).done());
  EXPECT_EQ(found, QList<Study>{first});

  StudyQuery byAccession;
  byAccession.accessionNumber = second.accessionNumber;
  ASSERT_TRUE(pacs.findStudies(byAccession, found).done());
  EXPECT_EQ(found, QList<Study>{second});

  StudyQuery ofPatient;
  ofPatient.patientID = QStringLiteral("P1");
  ASSERT_TRUE(pacs.findStudies(ofPatient, found).done());
  EXPECT_EQ(found.size(), 2);
  ofPatient.studyDate = second.studyDate;
  ASSERT_TRUE(pacs.findStudies(ofPatient, found).done());
  EXPECT_EQ(found, QList<Study>{second});

  StudyQuery wildcard;
  wildcard.patientID = QStringLiteral("P*");
  ASSERT_TRUE(pacs.findStudies(wildcard, found).done());
  EXPECT_EQ(found, QList<Study>{third});

  StudyQuery odd;
  odd.patientID = fourth.patientID;
  ASSERT_TRUE(pacs.findStudies(odd, found).done());
  EXPECT_EQ(found, QList<Study>{fourth});

  StudyQuery nobody;
  nobody.patientID = QStringLiteral("nobody");
  ASSERT_TRUE(pacs.findStudies(nobody, found).done());
  EXPECT_TRUE(found.isEmpty());
}

TEST(WebPacsWithOrthanc, RefusesWhatIsNoDicomForGood) {
  const Orthanc orthanc(web());
  // On a thread that has no event loop, as the service has one for the archive.
  PacsResult result;
  std::thread worker([&] {
    WebPacs pacs(orthanc.web());
    result = pacs.store("this is no DICOM file", SecondaryCaptureClass, QStringLiteral("2.25.1"));
  });
  worker.join();
  EXPECT_EQ(result.outcome, Outcome::Never);
  EXPECT_FALSE(result.reason.isEmpty());
}

TEST(WebPacsWithOrthanc, AsksForTheRightUserAndPassword) {
  OrthancOptions options = web();
  options.user = QStringLiteral("nurse");
  options.password = QStringLiteral("secret");
  const Orthanc orthanc(options);
  PacsSettings settings = orthanc.web();
  const PacsResult right = WebPacs(settings).check();
  EXPECT_TRUE(right.done()) << qPrintable(right.reason);
  settings.password = QStringLiteral("wrong");
  WebPacs locked(settings);
  for (const PacsResult& result : {locked.check(), put(locked, studyOf(1, QStringLiteral("P")))}) {
    EXPECT_EQ(result.outcome, Outcome::TryAgain);
    EXPECT_TRUE(
        result.reason.startsWith(QStringLiteral("the archive does not accept the user or the password")))
        << qPrintable(result.reason);
  }
  settings = orthanc.web();
  settings.url = orthanc.url(QStringLiteral("/elsewhere"));
  const PacsResult elsewhere = WebPacs(settings).check();
  EXPECT_EQ(elsewhere.outcome, Outcome::TryAgain);
  EXPECT_TRUE(elsewhere.reason.startsWith(QStringLiteral("there is no DICOMweb service at this address")))
      << qPrintable(elsewhere.reason);
}

}  // namespace
}  // namespace bridge
