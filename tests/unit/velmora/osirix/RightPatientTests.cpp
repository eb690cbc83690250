// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include "link/protocol/LinkProtocol.h"
#include "testing/application/RecordApplication.h"
#include "testing/files/Files.h"
#include "testing/standins/LogRecorder.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;
using namespace velmora::testkit;

namespace settings = velmora::settings;

namespace {

/// A patient with a data file, a cache that knows it, and the setting that lets it be found.
class RightPatient : public testing::Test {
 protected:
  RightPatient() {
    application.turnOn(settings::AutoSave);
    application.keepRecord("AB1", {"01/02/2023"});
  }
  static inline const QString Refusal = "The record of a chosen study is not open: nothing was added";
  RecordApplication application;
};

}  // namespace

TEST_F(RightPatient, WhoseRecordIsInFrontGetsTheExaminationInThatRecord) {
  application.openRecord("AB1");
  application.chooseStudy(study("AB1"));
  application.pass(0.1);
  ASSERT_EQ(application.controller.documents().size(), 1);
  EXPECT_EQ(application.front()->fileURL().toLocalFile(), application.pathOfRecord("AB1"));
  EXPECT_EQ(application.front()->exams, (QStringList{"01/02/2023", "29/04/2024"}));
  EXPECT_TRUE(application.rescueCopies().isEmpty());
}

TEST_F(RightPatient, WhoseRecordIsInFrontKeepsACopyOfUnsavedChanges) {
  RecordingDocument& document = application.openRecord("AB1");
  user::enter(user::field(document, "examDateField"), "05/02/2023");
  application.desktop.alerts.expect(closedWithChanges(application, "AB1"), platform::AlertDefaultReturn);
  application.chooseStudy(study("AB1"));
  application.pass(0.1);
  EXPECT_EQ(application.front()->exams, (QStringList{"01/02/2023", "29/04/2024"}));
  ASSERT_EQ(application.rescueCopies().size(), 1);
  EXPECT_TRUE(application.rescueCopies().first().startsWith("AB1 "));
  const QString copy = application.home.path(".local/share/org.velmora.recorder/Rescued/") +
                       application.rescueCopies().first();
  EXPECT_TRUE(readFile(copy).contains("05/02/2023"));
}

TEST_F(RightPatient, WhoseRecordIsOpenInTheBackComesForwardAndGetsTheExamination) {
  RecordingDocument& record = application.openRecord("AB1");
  application.newRecord();
  application.chooseStudy(study("AB1"));
  application.pass(0.1);
  EXPECT_EQ(application.controller.documents().size(), 1) << "the front document was closed";
  EXPECT_EQ(application.front(), &record);
  EXPECT_EQ(record.exams.size(), 2);
}

TEST_F(RightPatient, WhoseFileIsDamagedGetsAReasonAndNobodyElseTheExamination) {
  writeFile(application.pathOfRecord("AB1"), "");
  application.keepRecord("OTHER", {"09/09/2022"});
  RecordingDocument& other = application.openRecord("OTHER");
  application.newRecord();
  application.desktop.alerts.expect(
      {"The file 'AB1.rec' could not be opened.", "OK", "", "", "The file is empty."},
      platform::AlertDefaultReturn,
      [&] { EXPECT_EQ(application.front(), &other) << "told after the front document was closed"; });
  const LogRecorder log;
  application.chooseStudy(study("AB1"));
  application.pass(0.1);
  EXPECT_EQ(application.front(), &other);
  EXPECT_EQ(other.exams, QStringList{"09/09/2022"});
  EXPECT_FALSE(other.isDocumentEdited());
  EXPECT_EQ(log.lines(), QStringList{Refusal});
}

TEST_F(RightPatient, WhoseFileIsDamagedLeavesNoDocumentWhenThereWasNoOther) {
  writeFile(application.pathOfRecord("AB1"), "");
  application.newRecord();
  application.desktop.alerts.expect(
      {"The file 'AB1.rec' could not be opened.", "OK", "", "", "The file is empty."},
      platform::AlertDefaultReturn);
  application.chooseStudy(study("AB1"));
  application.pass(0.1);
  EXPECT_TRUE(application.controller.documents().isEmpty());
}

TEST_F(RightPatient, IsNotMixedUpWithAWindowThatComesForwardMeanwhile) {
  application.newRecord();
  application.chooseStudy(study("AB1"));
  RecordingDocument* record = application.front();
  application.pass(0.05);
  RecordingDocument& between = application.newRecord();
  application.pass(0.05);
  EXPECT_EQ(between.exams.size(), 1);
  EXPECT_EQ(between.patientName(), "");
  EXPECT_FALSE(between.isDocumentEdited());
  EXPECT_EQ(record->exams.size(), 2);
  EXPECT_EQ(application.front(), record) << "it comes forward again";
}

TEST_F(RightPatient, IsNotMixedUpWithAnotherPatientsRecordThatComesForwardMeanwhile) {
  application.keepRecord("OTHER", {"09/09/2022"});
  RecordingDocument& other = application.openRecord("OTHER");
  application.newRecord();
  application.chooseStudy(study("AB1"));
  user::bringToFront(other);
  application.pass(0.1);
  EXPECT_EQ(other.exams, QStringList{"09/09/2022"});
  EXPECT_FALSE(other.isDocumentEdited());
}

TEST_F(RightPatient, GetsNothingWhenTheOpenedRecordIsClosedAgainMeanwhile) {
  application.newRecord();
  application.chooseStudy(study("AB1"));
  application.front()->close();
  application.pass(0.1);
  EXPECT_TRUE(application.controller.documents().isEmpty());
}

TEST_F(RightPatient, FindsAnotherPatientsUnsavedRecordKeptAsACopy) {
  RecordingDocument& document = application.newRecord();
  user::enter(user::field(document, "referenceIDField"), "zz9");
  user::enter(user::field(document, "examDateField"), "05/02/2023");
  application.desktop.alerts.expect(closedWithChanges(application, "ZZ9"), platform::AlertDefaultReturn);
  application.chooseStudy(study("AB1"));
  application.pass(0.1);
  EXPECT_EQ(application.front()->identifier(), "AB1");
  ASSERT_EQ(application.rescueCopies().size(), 1);
  EXPECT_TRUE(application.rescueCopies().first().startsWith("ZZ9 "));
}

TEST_F(RightPatient, OfTwoRequestsAtOnceGetsWhatWasMeantForEach) {
  application.keepRecord("CD2", {"05/05/2022"});
  application.newRecord();
  const QString name = velmora::link::notificationName("org.velmora.recorder");
  application.desktop.distributedCenter.deliver(name, velmora::link::RequestObject, study("AB1"));
  application.desktop.distributedCenter.deliver(name, velmora::link::RequestObject, study("CD2"));
  application.pass(1);
  // The first record has gone to the back before its examination is added; it gets it all the same.
  ASSERT_EQ(application.controller.documents().size(), 2);
  EXPECT_EQ(application.front()->exams, (QStringList{"05/05/2022", "29/04/2024"}));
  auto* back = dynamic_cast<RecordingDocument*>(application.controller.orderedDocuments().last());
  EXPECT_EQ(back->identifier(), "AB1");
  EXPECT_EQ(back->exams, (QStringList{"01/02/2023", "29/04/2024"}));
}
