// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include "testing/application/RecordApplication.h"
#include "testing/files/Files.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;
using namespace velmora::testkit;

namespace settings = velmora::settings;
using velmora::platform::AlertAlternateReturn;
using velmora::platform::AlertDefaultReturn;
using velmora::platform::AlertOtherReturn;

namespace {

platform::Alert found(const QString& identifier) {
  return {"Patient Data Found", "Open", "Cancel", "",
          "A previously saved data file is available for patient '" + identifier +
              "'.  Would you like to open it?"};
}

/// Records are saved automatically, ABC123 has a data file, and a new document is in front.
class LookUp : public testing::Test {
 protected:
  LookUp() {
    application.turnOn(settings::AutoSave);
    application.keepRecord("ABC123");
    document = &application.newRecord();
  }
  void typeIdentifier(const QString& text) {
    document->setLookUpRequired(true);
    user::enter(user::field(*document, "referenceIDField"), text);
  }
  /// The identifiers of the open documents, front to back.
  QStringList open() const {
    QStringList all;
    for (platform::Document* each : application.controller.orderedDocuments()) {
      all.append(dynamic_cast<RecordingDocument*>(each)->identifier());
    }
    return all;
  }
  RecordApplication application;
  RecordingDocument* document;
};

}  // namespace

TEST_F(LookUp, NamesThePatientAndOpensTheFileInPlaceOfTheDocument) {
  application.desktop.alerts.expect(found("ABC123"), AlertDefaultReturn);
  typeIdentifier("ABC123");
  application.settle();
  EXPECT_EQ(open(), QStringList{"ABC123"});
  EXPECT_EQ(application.front()->fileURL().toLocalFile(), application.pathOfRecord("ABC123"));
  EXPECT_TRUE(application.front()->window()->isVisible());
}

TEST_F(LookUp, KeepsTheDocumentWhenTheUserCancels) {
  for (const int answer : {+AlertAlternateReturn, +AlertOtherReturn}) {
    application.desktop.alerts.expect(found("ABC123"), answer);
    EXPECT_FALSE(document->lookUp("ABC123", true));
    application.settle();
    EXPECT_EQ(application.front(), document);
    EXPECT_TRUE(document->fileURL().isEmpty());
  }
  application.desktop.alerts.expect(found("ABC123"), AlertAlternateReturn);
  typeIdentifier("abc123");
  application.settle();
  EXPECT_EQ(open(), QStringList{"ABC123"});
  EXPECT_TRUE(application.front()->fileURL().isEmpty());
}

TEST_F(LookUp, OfALowerCaseIdentifierInABlankDocumentFindsTheUpperCaseFile) {
  application.desktop.alerts.expect(found("ABC123"), AlertDefaultReturn);
  typeIdentifier("abc123");
  application.settle();
  EXPECT_EQ(application.front()->fileURL().toLocalFile(), application.pathOfRecord("ABC123"));
}

TEST_F(LookUp, DoesNotMatchANameThatWasKeptInLowerCase) {
  application.keepRecord("xyz9");
  typeIdentifier("xyz9");
  application.settle();
  EXPECT_EQ(application.delegate.asked, QStringList{"XYZ9"});
  EXPECT_EQ(application.front(), document);
}

TEST_F(LookUp, NamesThePatientInUpperCase) {
  application.keepRecord("xyz9");
  application.desktop.alerts.expect(found("XYZ9"), AlertAlternateReturn);
  EXPECT_FALSE(document->lookUp("xyz9", true));
}

TEST_F(LookUp, DoesNotFindAFileInASubFolder) {
  writeFile(application.saveFolder() + "/old/JONES.rec", readFile(application.pathOfRecord("ABC123")));
  application.controller.cacheDatabaseFiles();
  ASSERT_TRUE(application.controller.fileIsInCachedDatabaseFiles("old/JONES"));
  EXPECT_FALSE(document->lookUp("JONES", false));
}

TEST_F(LookUp, AsksNothingForTheViewer) {
  EXPECT_TRUE(document->lookUp("ABC123", false));
  application.settle();
  EXPECT_EQ(open(), QStringList{"ABC123"});
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty());
}

TEST_F(LookUp, OpensAndClosesOnlyAfterTheCurrentEvent) {
  EXPECT_TRUE(document->lookUp("ABC123", false));
  EXPECT_EQ(application.front(), document);
  EXPECT_FALSE(document->isClosed());
  application.settle();
  EXPECT_NE(application.front(), document);
}

TEST_F(LookUp, IsOffWithoutAutoSave) {
  application.desktop.defaults.setObject(false, settings::AutoSave);
  EXPECT_FALSE(document->lookUp("ABC123", false));
  EXPECT_TRUE(application.delegate.asked.isEmpty());
}

TEST_F(LookUp, DoesNotFindAFileThatTheCacheDoesNotKnow) {
  application.writeRecord("NEW1");
  EXPECT_FALSE(document->lookUp("NEW1", false));
}

TEST_F(LookUp, DoesNotFindAFileThatIsGone) {
  QFile::remove(application.pathOfRecord("ABC123"));
  EXPECT_FALSE(document->lookUp("ABC123", true));
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty());
}

TEST_F(LookUp, WithoutAnExtensionLooksForTheBareName) {
  document->setDataFileExtension(QString());
  EXPECT_FALSE(document->lookUp("ABC123", false));
  QFile::rename(application.pathOfRecord("ABC123"), application.saveFolder() + "/ABC123");
  EXPECT_TRUE(document->lookUp("ABC123", false));
  application.settle();
  EXPECT_EQ(application.front()->fileURL().toLocalFile(), application.saveFolder() + "/ABC123");
}

TEST_F(LookUp, ClosesTheDocumentWithoutAQuestionWhateverWasTyped) {
  user::enter(user::field(*document, "examDateField"), "3/4/2020");
  application.desktop.alerts.expect(found("ABC123"), AlertDefaultReturn);
  typeIdentifier("abc123");
  application.settle();
  EXPECT_EQ(application.controller.documents().size(), 1);
  EXPECT_EQ(application.desktop.alerts.shown().size(), 1);
  EXPECT_EQ(application.rescueCopies().size(), 1)
      << "more than an identifier was typed: it is kept as a copy";
}

TEST_F(LookUp, KeepsNoCopyOfADocumentThatHeldOnlyTheIdentifier) {
  application.desktop.alerts.expect(found("ABC123"), AlertDefaultReturn);
  typeIdentifier("abc123");
  application.settle();
  EXPECT_TRUE(application.rescueCopies().isEmpty());
}

TEST_F(LookUp, GivesBackAFileThatIsOpenAlready) {
  RecordingDocument& record = application.openRecord("ABC123");
  user::bringToFront(*document);
  application.desktop.alerts.expect(found("ABC123"), AlertDefaultReturn);
  typeIdentifier("abc123");
  application.settle();
  ASSERT_EQ(application.controller.documents().size(), 1);
  EXPECT_EQ(application.front(), &record);
}

TEST_F(LookUp, ClosesTheDocumentEvenWhenTheFileDoesNotOpenAndThenSaysWhy) {
  writeFile(application.pathOfRecord("ABC123"), "");
  application.desktop.alerts.expect(
      {"The file 'ABC123.rec' could not be opened.", "OK", "", "", "The file is empty."}, AlertDefaultReturn,
      [&] { EXPECT_TRUE(application.controller.documents().isEmpty()); });
  EXPECT_TRUE(document->lookUp("ABC123", false));
  application.settle();
  EXPECT_TRUE(application.controller.documents().isEmpty());
}

TEST_F(LookUp, KeepsACopyOfUnsavedChangesToAnotherPatientsSavedRecord) {
  application.keepRecord("OTHER", {"01/01/2020"});
  RecordingDocument& other = application.openRecord("OTHER");
  user::enter(user::field(other, "examDateField"), "02/02/2022");
  application.desktop.alerts.expect(closedWithChanges(application, "OTHER"), AlertDefaultReturn);
  EXPECT_TRUE(other.lookUp("ABC123", false));
  application.settle();
  EXPECT_EQ(open(), (QStringList{"ABC123", ""}));
  ASSERT_EQ(application.rescueCopies().size(), 1);
  EXPECT_TRUE(application.rescueCopies().first().startsWith("OTHER "));
  EXPECT_TRUE(readFile(application.pathOfRecord("OTHER")).contains("01/01/2020"))
      << "the file itself stays as it was";
}

TEST_F(LookUp, KeepsNoCopyOfARecordWithoutChanges) {
  application.keepRecord("OTHER");
  RecordingDocument& other = application.openRecord("OTHER");
  EXPECT_TRUE(other.lookUp("ABC123", false));
  application.settle();
  EXPECT_TRUE(application.rescueCopies().isEmpty());
}

TEST_F(LookUp, RunsOnceForOneEdit) {
  application.desktop.alerts.expect(found("ABC123"), AlertAlternateReturn);
  typeIdentifier("abc123");
  EXPECT_FALSE(document->lookUpRequired());
  user::enter(user::field(*document, "examDateField"), "3/4/2020");
  application.settle();
  EXPECT_EQ(application.desktop.alerts.shown().size(), 1);
}

TEST_F(LookUp, SaysWhoseRecordItOpensWhenTheFileHoldsAnotherPatient) {
  QFile::remove(application.pathOfRecord("ABC123"));
  application.writeRecord("CD2");
  QFile::rename(application.pathOfRecord("CD2"), application.pathOfRecord("ABC123"));
  application.desktop.alerts.expect(found("ABC123"), AlertDefaultReturn);
  application.desktop.alerts.expect(
      {"'ABC123' is the record of another patient", "OK", "", "",
       "The file was saved for patient 'ABC123', but the identifier in it reads 'CD2'."},
      AlertDefaultReturn, [&] { EXPECT_EQ(open(), QStringList{"CD2"}); });
  typeIdentifier("abc123");
  application.settle();
  EXPECT_TRUE(application.desktop.alerts.allCame());
  EXPECT_EQ(open(), QStringList{"CD2"}) << "and never is it put under the identifier that was typed";
}

TEST_F(LookUp, TakesUpperAndLowerCaseOfTheIdentifierInsideForOnePatient) {
  application.writeRecord("abc123");
  QFile::remove(application.pathOfRecord("ABC123"));
  QFile::rename(application.pathOfRecord("abc123"), application.pathOfRecord("ABC123"));
  application.desktop.alerts.expect(found("ABC123"), AlertDefaultReturn);
  typeIdentifier("abc123");
  application.settle();
  EXPECT_EQ(open(), QStringList{"abc123"});
}

TEST_F(LookUp, OfTheRecordInFrontKeepsItOpenWhenItsFileHasBeenDamaged) {
  RecordingDocument& record = application.openRecord("ABC123");
  document->close();
  writeFile(application.pathOfRecord("ABC123"), "");
  application.desktop.alerts.expect(
      {"The file 'ABC123.rec' could not be opened.", "OK", "", "", "The file is empty."}, AlertDefaultReturn);
  EXPECT_TRUE(record.lookUp("ABC123", false));
  application.settle();
  ASSERT_EQ(application.front(), &record) << "the only good copy is the one in this window";
  EXPECT_EQ(record.exams, QStringList{"01/02/2023"});
  EXPECT_EQ(record.fileURL().toLocalFile(), application.pathOfRecord("ABC123"));
}

TEST_F(LookUp, OfTheRecordInFrontOpensItAnew) {
  RecordingDocument& record = application.openRecord("ABC123");
  document->close();
  application.writeRecord("ABC123", {"04/04/2024"});
  EXPECT_TRUE(record.lookUp("ABC123", false));
  application.settle();
  ASSERT_EQ(application.controller.documents().size(), 1);
  EXPECT_EQ(application.front()->exams, QStringList{"04/04/2024"});
  EXPECT_TRUE(application.front()->window()->isVisible());
}

TEST_F(LookUp, OfTheRecordInFrontLeavesWhatCannotBeKeptWithoutAFile) {
  RecordingDocument& record = application.openRecord("ABC123");
  document->close();
  user::enter(user::field(record, "examDateField"), "02/02/2022");
  writeFile(application.home.path(".local/share/org.velmora.recorder"), "no folder");
  application.desktop.alerts.expect(
      {"Unsaved changes to 'ABC123' are about to be dropped.", "Save Elsewhere...", "Don't Save", "Cancel",
       "No copy of them could be kept."},
      AlertOtherReturn);
  EXPECT_TRUE(record.lookUp("ABC123", false));
  application.settle();
  ASSERT_EQ(application.controller.documents().size(), 2);
  EXPECT_EQ(application.front()->exams, QStringList{"01/02/2023"});
  EXPECT_EQ(record.exams, QStringList{"02/02/2022"});
  EXPECT_TRUE(record.fileURL().isEmpty());
}
