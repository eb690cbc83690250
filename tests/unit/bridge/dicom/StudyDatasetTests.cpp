// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include <dcmtk/config/osconfig.h>
#include <dcmtk/dcmdata/dcdeftag.h>
#include <dcmtk/dcmdata/dcitem.h>
#include <dcmtk/dcmdata/dcvrobow.h>

#include "bridge/dicom/StudyDataset.h"
#include "tests/unit/bridge/dicom/DicomTesting.h"

using bridge::Study;
using bridge::studyFrom;

namespace {

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

/// A data set like a PACS's answer to a query.
struct Answer {
  DcmItem item;
  Answer& with(const DcmTagKey& key, const char* value) {
    EXPECT_TRUE(item.putAndInsertString(key, value).good());
    return *this;
  }
  Study study() { return studyFrom(item); }
};

}  // namespace

TEST(StudyDataset, TellsAllAboutAStudy) {
  Answer answer;
  answer.with(DCM_SpecificCharacterSet, "ISO_IR 100")
      .with(DCM_StudyDate, "20240502")
      .with(DCM_StudyTime, "101530.25")
      .with(DCM_AccessionNumber, "A-77 ")
      .with(DCM_ReferringPhysicianName, "H\xe4user^Gregor")
      .with(DCM_StudyDescription,
            "Sch\xe4"
            "del ")
      .with(DCM_PatientName, "M\xfcller^J\xf6rg")
      .with(DCM_PatientID, " 12/345/6 ")
      .with(DCM_IssuerOfPatientID, "Klinikum K\xf6ln")
      .with(DCM_PatientBirthDate, "20190314")
      .with(DCM_PatientSex, "F ")
      .with(DCM_StudyInstanceUID, "1.2.3")
      .with(DCM_StudyID, "S1");
  Study expected;
  expected.studyInstanceUID = text("1.2.3");
  expected.patientID = text("12/345/6");
  expected.issuerOfPatientID = text("Klinikum Köln");
  expected.patientName = text("Müller^Jörg");
  expected.birthDate = QDate(2019, 3, 14);
  expected.sex = text("F");
  expected.studyDate = QDate(2024, 5, 2);
  expected.studyTime = text("101530.25");
  expected.studyID = text("S1");
  expected.accessionNumber = text("A-77");
  expected.referringPhysician = text("Häuser^Gregor");
  expected.description = text("Schädel");
  EXPECT_EQ(answer.study(), expected);
}

TEST(StudyDataset, IsEmptyWhereNothingIsSaid) {
  EXPECT_EQ(Answer().study(), Study());
  EXPECT_EQ(Answer().with(DCM_PatientName, "").with(DCM_StudyDate, "").study(), Study());
}

TEST(StudyDataset, KeepsTheGroupsOfAName) {
  Answer answer;
  answer.with(DCM_SpecificCharacterSet, "\\ISO 2022 IR 87")
      .with(DCM_PatientName,
            "Yamada^Tarou=\033$B;3ED\033(B^\033$BB@O:\033(B=\033$B$d$^$@\033(B^\033$B$?$m$&\033(B");
  EXPECT_EQ(answer.study().patientName, text("Yamada^Tarou=山田^太郎=やまだ^たろう"));
}

TEST(StudyDataset, ReadsDates) {
  const struct {
    const char* dicom;
    QDate expected;
  } rows[] = {{"20240229", QDate(2024, 2, 29)},
              {"2024.02.29", QDate(2024, 2, 29)},
              {" 20240229 ", QDate(2024, 2, 29)},
              {"20230229", QDate()},
              {"20241301", QDate()},
              {"2024-02-29", QDate()},
              {"2024", QDate()},
              {"+2024022", QDate()},
              {"00000000", QDate()},
              {"20240229\\x", QDate(2024, 2, 29)},
              {"yesterday", QDate()},
              {"202402290", QDate()}};
  for (const auto& row : rows) {
    EXPECT_EQ(Answer().with(DCM_StudyDate, row.dicom).study().studyDate, row.expected) << row.dicom;
    EXPECT_EQ(Answer().with(DCM_PatientBirthDate, row.dicom).study().birthDate, row.expected) << row.dicom;
  }
}

TEST(StudyDataset, KnowsThreeSexes) {
  for (const char* sex : {"M", "F", "O"})
    EXPECT_EQ(Answer().with(DCM_PatientSex, sex).study().sex, text(sex));
  for (const char* other : {"m", "X", "MALE", "M^", "?"}) {
    EXPECT_EQ(Answer().with(DCM_PatientSex, other).study().sex, QString()) << other;
  }
}

TEST(StudyDataset, TakesTheFirstValueWithoutWhatNoTextHas) {
  EXPECT_EQ(Answer().with(DCM_PatientID, "1\\2").study().patientID, text("1"));
  EXPECT_EQ(Answer().with(DCM_PatientID, "1\n2\x1b\x7f").study().patientID, text("12"));
  EXPECT_EQ(Answer().with(DCM_StudyInstanceUID, "1.2\\1.3").study().studyInstanceUID, text("1.2"));
}

TEST(StudyDataset, CutsWhatIsTooLong) {
  const std::string endless(1000000, 'a');
  EXPECT_EQ(Answer().with(DCM_StudyDescription, endless.c_str()).study().description,
            QString(bridge::LongestText, QLatin1Char('a')));
}

TEST(StudyDataset, ReadsAttributesOfUnknownKind) {
  Answer answer;
  auto* unknown = new DcmOtherByteOtherWord(DcmTag(DCM_PatientID, DcmVR(EVR_UN)));
  unknown->putUint8Array(reinterpret_cast<const Uint8*>("77 "), 3);
  answer.item.insert(unknown);
  EXPECT_EQ(answer.study().patientID, text("77"));
}

TEST(StudyDataset, LooksNotIntoSequences) {
  Answer answer;
  DcmItem* item = nullptr;
  ASSERT_TRUE(answer.item.findOrCreateSequenceItem(DCM_ReferencedStudySequence, item).good());
  item->putAndInsertString(DCM_PatientID, "other");
  EXPECT_EQ(answer.study().patientID, QString());
}
