// SPDX-License-Identifier: LGPL-3.0-or-later
//
// The archive that the other tests lean on is itself what they take it for.
#include <gtest/gtest.h>

#include <QJsonArray>

#include "bridge/dicom/StudyReader.h"
#include "bridge/testing/Orthanc.h"
#include "bridge/testing/SyntheticStudy.h"

using namespace bridge_testing;

TEST(TestArchive, KeepsWhatWasPutIntoItOverItsEnd) {
  Orthanc orthanc;
  const bridge::Study study = inventedStudy();
  orthanc.put(syntheticStudy(study));
  EXPECT_EQ(orthanc.instances(), QStringList{syntheticUID(study)});
  orthanc.stop();
  EXPECT_THROW(orthanc.instances(), std::runtime_error);
  orthanc.start();
  EXPECT_EQ(orthanc.instancesOf(study.studyInstanceUID), QStringList{syntheticUID(study)});
  EXPECT_EQ(bridge::studyFromBytes(orthanc.fileOf(syntheticUID(study))).value(), study);
  orthanc.clear();
  EXPECT_TRUE(orthanc.instances().isEmpty());
}

TEST(TestArchive, LetsOnlyThoseInWhoSayWhoTheyAre) {
  OrthancOptions options;
  options.user = QStringLiteral("nurse");
  options.password = QStringLiteral("secret");
  options.dicomWeb = true;
  Orthanc orthanc(options);
  orthanc.put(syntheticStudy(inventedStudy()));
  EXPECT_EQ(orthanc.get(QStringLiteral("/dicom-web/studies")).array().size(), 1);
}
