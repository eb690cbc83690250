// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Records that cannot be saved, and questions that the user walks away from: what is in the window stays
// there until it is safe somewhere, or the user gives it up.
#include <gtest/gtest.h>

#include <QAction>
#include <QPointer>
#include <stdexcept>

#include "testing/application/RecordApplication.h"
#include "testing/files/Files.h"
#include "testing/standins/LogRecorder.h"
#include "velmora/resources/Notifications.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;
using namespace velmora::testkit;

namespace settings = velmora::settings;
using velmora::platform::Alert;
using velmora::platform::AlertAlternateReturn;
using velmora::platform::AlertDefaultReturn;
using velmora::platform::AlertOtherReturn;

namespace {

const Alert saveQuestion{"Save changes to document?", "Save", "Don't Save", "Cancel", ""};
const Alert identifierChanged{
    "The identifier of this record has changed", "New File", "Same File", "Cancel",
    "It was 'AB1' and is now 'CD2'. With a new file the record of 'AB1' stays as it was last "
    "saved."};

/// A record whose hooks can fail, as an application's may.
class FailingDocument : public RecordingDocument {
 public:
  using RecordingDocument::RecordingDocument;
  bool failsToStore = false;
  bool failsToWrite = false;
  bool failsToKeep = false;

  void synchronizeToData() override {
    if (failsToStore) throw std::runtime_error("no number");
    RecordingDocument::synchronizeToData();
  }
  void keepUnsavedChanges() override {
    if (failsToKeep) throw std::runtime_error("no idea");
    RecordingDocument::keepUnsavedChanges();
  }
  base::Result<QByteArray> dataOfType(const QString& typeName) override {
    if (failsToWrite) throw std::runtime_error("no memory");
    return RecordingDocument::dataOfType(typeName);
  }
};

class UnsavableRecord : public testing::Test {
 protected:
  UnsavableRecord() {
    application.turnOn(settings::AutoSave);
    application.controller.setDocumentFactory([this] {
      return std::make_unique<FailingDocument>(application.desktop.services, application.delegate);
    });
  }
  /// The record of AB1, read from its file and edited since.
  RecordingDocument& editedRecord() {
    application.keepRecord("AB1", {"01/01/2020"});
    RecordingDocument& record = application.openRecord("AB1");
    user::enter(user::field(record, "examDateField"), "2/2/2021");
    return record;
  }
  /// A record of AB1 that has no file yet.
  RecordingDocument& newRecord() {
    RecordingDocument& record = application.newRecord();
    record.setIdentifier("AB1");
    user::enter(user::field(record, "examDateField"), "2/2/2021");
    return record;
  }
  /// From here on the record cannot be written (a folder stands in its place), nor a copy of anything.
  void fillTheDisk() {
    QFile::remove(file());
    QDir().mkpath(file());
    fillTheDiskOfCopies();
  }
  void fillTheDiskOfCopies() {
    QDir(copies()).removeRecursively();
    writeFile(copies(), "a file where the folder of copies would be");
  }
  void emptyTheDisk() {
    QDir().rmdir(file());
    QFile::remove(copies());
  }
  QString file() const { return application.pathOfRecord("AB1"); }
  QString copies() const { return application.home.path(".local/share/org.velmora.recorder"); }
  Alert notSaved() {
    const QString reason = application.desktop.fileManager.writeDurably(file(), "x").error();
    return {"The record 'AB1.rec' could not be saved.", "Save Elsewhere...", "Don't Save", "Cancel",
            reason + "\n\nNo copy could be kept either."};
  }
  Alert aboutToBeDropped() const {
    return {"Unsaved changes to 'AB1' are about to be dropped.", "Save Elsewhere...", "Don't Save", "Cancel",
            "No copy of them could be kept."};
  }
  void expect(const Alert& alert, int answer) { application.desktop.alerts.expect(alert, answer); }
  bool hears(RecordingDocument& record) {
    bool saved = true;
    record.saveDocument([&saved](platform::Document*, bool didSave) { saved = didSave; });
    return saved;
  }

  RecordApplication application;
  LogRecorder log;  // every copy that cannot be kept leaves a line
};

}  // namespace

// The question about another identifier.

TEST_F(UnsavableRecord, IsNotWrittenAnywhereWhenTheQuestionOfItsIdentifierIsCancelled) {
  RecordingDocument& record = editedRecord();
  const QByteArray before = readFile(file());
  record.setIdentifier("CD2");
  for (const int answer : {+AlertOtherReturn, +platform::AlertStopped}) {
    expect(identifierChanged, answer);
    EXPECT_FALSE(hears(record));
    EXPECT_EQ(readFile(file()), before);
    EXPECT_FALSE(QFile::exists(application.pathOfRecord("CD2")));
  }
  EXPECT_TRUE(record.isDocumentEdited());
  EXPECT_FALSE(record.isClosed());
}

TEST_F(UnsavableRecord, StaysOpenWhenTheQuestionOfItsIdentifierIsCancelledAtClosing) {
  RecordingDocument& record = editedRecord();
  record.setIdentifier("CD2");
  expect(saveQuestion, AlertDefaultReturn);
  expect(identifierChanged, AlertOtherReturn);
  record.performClose();
  application.settle();
  ASSERT_EQ(application.front(), &record);
  EXPECT_TRUE(record.isDocumentEdited());
  EXPECT_TRUE(application.rescueCopies().isEmpty());
}

TEST_F(UnsavableRecord, IsOpenedAgainByASaveAfterAClosingThatWasCancelled) {
  RecordingDocument& record = editedRecord();
  record.setIdentifier("CD2");
  expect(saveQuestion, AlertDefaultReturn);
  expect(identifierChanged, AlertOtherReturn);
  record.performClose();
  application.settle();
  expect(identifierChanged, AlertDefaultReturn);
  record.saveDocument();
  application.settle();
  ASSERT_EQ(application.controller.documents().size(), 1) << "nobody has agreed to close";
  EXPECT_EQ(application.front()->fileURL().toLocalFile(), application.pathOfRecord("CD2"));
}

// A disk that is full everywhere.

TEST_F(UnsavableRecord, StaysOpenWhenItWasToBeClosedAndThePanelIsCancelled) {
  RecordingDocument& record = editedRecord();
  fillTheDisk();
  expect(saveQuestion, AlertDefaultReturn);
  expect(notSaved(), AlertDefaultReturn);
  application.desktop.panels.expectSave({});
  record.performClose();
  application.settle();
  ASSERT_EQ(application.front(), &record) << "the record was in this window only";
  EXPECT_EQ(user::textOf(record, "examDateField"), "02/02/2021");
  EXPECT_TRUE(record.isDocumentEdited());
}

TEST_F(UnsavableRecord, StaysOpenWhenItWasToBeClosedAndEscapeIsPressed) {
  RecordingDocument& record = editedRecord();
  fillTheDisk();
  expect(saveQuestion, AlertDefaultReturn);
  expect(notSaved(), AlertOtherReturn);
  record.performClose();
  application.settle();
  EXPECT_EQ(application.front(), &record);
}

TEST_F(UnsavableRecord, IsClosedWhenTheUserGivesItUp) {
  RecordingDocument& record = editedRecord();
  fillTheDisk();
  expect(saveQuestion, AlertDefaultReturn);
  expect(notSaved(), AlertAlternateReturn);
  record.performClose();
  application.settle();
  EXPECT_TRUE(application.controller.documents().isEmpty());
}

TEST_F(UnsavableRecord, IsClosedWhenItIsSafeElsewhere) {
  RecordingDocument& record = editedRecord();
  fillTheDisk();
  const QString stick = application.home.makeFolder("Stick") + "/AB1.rec";
  expect(saveQuestion, AlertDefaultReturn);
  expect(notSaved(), AlertDefaultReturn);
  application.desktop.panels.expectSave(QUrl::fromLocalFile(stick));
  record.performClose();
  application.settle();
  EXPECT_TRUE(application.controller.documents().isEmpty());
  EXPECT_TRUE(readFile(stick).contains("02/02/2021"));
}

TEST_F(UnsavableRecord, WithoutAFileOfItsOwnStaysOpenAndCanBeSavedLater) {
  RecordingDocument& record = newRecord();
  fillTheDisk();
  expect(notSaved(), AlertDefaultReturn);
  application.desktop.panels.expectSave({});
  EXPECT_FALSE(hears(record));
  application.settle();
  ASSERT_EQ(application.front(), &record);
  // To say no to a save is not to say that the window may go.
  expect(notSaved(), AlertAlternateReturn);
  EXPECT_FALSE(hears(record));
  application.settle();
  ASSERT_EQ(application.front(), &record);
  emptyTheDisk();
  EXPECT_TRUE(hears(record));
  application.settle();
  ASSERT_EQ(application.controller.documents().size(), 1);
  EXPECT_EQ(application.front()->fileURL().toLocalFile(), file());
  EXPECT_EQ(application.front()->exams, QStringList{"02/02/2021"});
}

TEST_F(UnsavableRecord, SavedThroughAPanelBeforeStaysOpenToo) {
  application.desktop.defaults.setObject(false, settings::AutoSave);
  RecordingDocument& record = newRecord();
  application.desktop.panels.expectSave(QUrl::fromLocalFile(file()));
  // The panel was used once: from then on every save closes the document.
  record.documentDidSave(&record, true);
  fillTheDisk();
  expect(notSaved(), AlertOtherReturn);
  record.saveDocument();
  application.settle();
  EXPECT_EQ(application.front(), &record);
}

TEST_F(UnsavableRecord, IsNotClosedByABatchExport) {
  RecordingDocument& record = editedRecord();
  application.keepRecord("CD2", {"05/05/2022"});
  fillTheDiskOfCopies();
  application.desktop.notificationCenter.postNotificationName(velmora::notifications::BatchOpen, file());
  application.desktop.notificationCenter.postNotificationName(velmora::notifications::BatchOpen,
                                                              application.pathOfRecord("CD2"));
  expect(aboutToBeDropped(), AlertOtherReturn);
  application.pass(2.0);
  EXPECT_EQ(application.controller.documents(), QList<platform::Document*>{&record}) << "the batch went on";
  EXPECT_TRUE(record.isDocumentEdited());
}

TEST_F(UnsavableRecord, IsNotClosedByAPrintFromTheDesktop) {
  RecordingDocument& record = editedRecord();
  fillTheDiskOfCopies();
  expect(aboutToBeDropped(), AlertOtherReturn);
  EXPECT_TRUE(application.controller.applicationPrintFile(file()));
  application.settle();
  EXPECT_EQ(application.desktop.printer.jobs.size(), 1);
  ASSERT_EQ(application.front(), &record) << "the changes were in this window only";
  EXPECT_TRUE(record.isDocumentEdited());
}

TEST_F(UnsavableRecord, StaysOpenBehindTheRecordThatTheViewerAskedFor) {
  RecordingDocument& record = editedRecord();
  application.keepRecord("CD2", {"05/05/2022"});
  fillTheDiskOfCopies();
  expect(aboutToBeDropped(), AlertOtherReturn);
  application.chooseStudy(study("CD2"));
  application.pass(0.1);
  ASSERT_EQ(application.controller.documents().size(), 2);
  EXPECT_EQ(application.front()->exams, (QStringList{"05/05/2022", "29/04/2024"}));
  EXPECT_FALSE(record.isClosed());
  EXPECT_EQ(record.exams, QStringList{"02/02/2021"});
}

TEST_F(UnsavableRecord, WhoseFileAnotherWindowHasWrittenStaysOpenWithoutAFile) {
  RecordingDocument& older = editedRecord();
  RecordingDocument& newer = application.newRecord();
  newer.setIdentifier("AB1");
  user::enter(user::field(newer, "examDateField"), "3/3/2022");
  QFile::remove(file());  // nothing stands there that would have to be kept
  fillTheDiskOfCopies();
  expect(aboutToBeDropped(), AlertOtherReturn);
  newer.saveDocument();
  application.settle();
  ASSERT_EQ(application.controller.documents().size(), 2);
  EXPECT_FALSE(older.isClosed());
  EXPECT_TRUE(older.isDocumentEdited());
  EXPECT_TRUE(older.fileURL().isEmpty()) << "two windows on one file would each write over the other's";
  EXPECT_EQ(application.front()->exams, QStringList{"03/03/2022"});
}

// Whether a save succeeded.

TEST_F(UnsavableRecord, WithoutChangesGivesNothingToWhatStandsInItsPlace) {
  application.newRecord();
  application.chooseStudy(study("AB1"));
  application.front()->saveDocument();
  application.settle();
  RecordingDocument* record = application.front();
  ASSERT_EQ(record->patientName(), "Doe^Jane");
  ASSERT_FALSE(record->isDocumentEdited());
  // Somebody else's version stands there, of which no copy can be kept: so the save is refused.
  application.writeRecord("AB1", {"somebody else's"});
  fillTheDiskOfCopies();
  const QString stick = application.home.makeFolder("Stick") + "/AB1.rec";
  expect({"The record 'AB1.rec' could not be saved.", "Save Elsewhere...", "Don't Save", "Cancel",
          "Another record stands there under this name, and no copy of it could be kept.\n\nNo copy could "
          "be kept either."},
         AlertDefaultReturn);
  application.desktop.panels.expectSave(QUrl::fromLocalFile(stick));
  record->saveDocumentAs();
  application.settle();
  ASSERT_EQ(application.front()->exams, QStringList{"somebody else's"});
  EXPECT_EQ(application.front()->patientName(), "") << "it knows nothing of the study of the other one";
}

TEST_F(UnsavableRecord, WithoutChangesStillAsksAboutItsIdentifierAfterTheFailure) {
  RecordingDocument& record = editedRecord();
  record.updateChangeCount(platform::ChangeType::Cleared);
  record.setIdentifier("CD2");
  fillTheDisk();
  expect(identifierChanged, AlertAlternateReturn);
  expect(notSaved(), AlertOtherReturn);
  EXPECT_FALSE(hears(record));
  emptyTheDisk();
  expect(identifierChanged, AlertOtherReturn);
  EXPECT_FALSE(hears(record)) << "nothing of CD2 has been saved in the file of AB1";
}

// What fails before anything is written.

TEST_F(UnsavableRecord, WhoseFieldsCannotBeStoredIsReportedAndStaysAsItIs) {
  RecordingDocument& record = editedRecord();
  const QByteArray before = readFile(file());
  dynamic_cast<FailingDocument&>(record).failsToStore = true;
  expect({"The record 'AB1.rec' could not be saved.", "OK", "", "", "no number"}, AlertDefaultReturn);
  record.window()->findChild<QAction*>("doSave")->trigger();
  application.settle();
  EXPECT_TRUE(application.desktop.alerts.allCame());
  EXPECT_TRUE(record.isDocumentEdited());
  EXPECT_EQ(readFile(file()), before);
  EXPECT_EQ(log.lines(), QStringList());
}

TEST_F(UnsavableRecord, WhoseFieldsCannotBeStoredIsNotClosed) {
  for (RecordingDocument* record : {&editedRecord(), &newRecord()}) {
    dynamic_cast<FailingDocument&>(*record).failsToStore = true;
    expect(saveQuestion, AlertDefaultReturn);
    expect({"The record 'AB1.rec' could not be saved.", "OK", "", "", "no number"}, AlertDefaultReturn);
    record->performClose();
    application.settle();
    EXPECT_FALSE(record->isClosed());
    EXPECT_TRUE(record->isDocumentEdited());
  }
}

TEST_F(UnsavableRecord, WhoseContentCannotBeTakenIsNotOfferedToBeWrittenEmpty) {
  RecordingDocument& record = editedRecord();
  const QByteArray before = readFile(file());
  dynamic_cast<FailingDocument&>(record).failsToWrite = true;
  expect({"The record 'AB1.rec' could not be saved.", "OK", "", "", "no memory"}, AlertDefaultReturn);
  EXPECT_FALSE(hears(record));
  EXPECT_EQ(readFile(file()), before);
  EXPECT_TRUE(application.rescueCopies().isEmpty()) << "there is nothing to rescue";
}

TEST_F(UnsavableRecord, WhoseContentCannotBeTakenIsNotDroppedForAnother) {
  RecordingDocument& record = editedRecord();
  application.keepRecord("CD2", {"05/05/2022"});
  dynamic_cast<FailingDocument&>(record).failsToStore = true;
  expect({"Unsaved changes to 'AB1' could not be kept.", "OK", "", "", "no number"}, AlertDefaultReturn);
  application.chooseStudy(study("CD2"));
  EXPECT_FALSE(record.isClosed());
  EXPECT_EQ(application.front()->identifier(), "CD2");
}

// The end of the session.

TEST_F(UnsavableRecord, AtTheEndOfTheSessionIsKeptBeforeAnythingIsAsked) {
  application.keepRecord("AB1", {"01/01/2020"});
  RecordingDocument& record = application.newRecord();
  user::enter(user::field(record, "examDateField"), "2/2/2021");
  user::type(user::field(record, "referenceIDField"), "ab1");
  record.setLookUpRequired(true);
  EXPECT_TRUE(application.controller.sessionMayEnd(false));
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty()) << "nobody is there to answer";
  EXPECT_EQ(application.rescueCopies().size(), 1);
}

TEST_F(UnsavableRecord, AtTheEndOfTheSessionTakesNoOtherWithIt) {
  RecordingDocument& first = newRecord();
  RecordingDocument& second = newRecord();
  user::enter(user::field(application.newRecord(), "examDateField"), "3/3/2022");
  dynamic_cast<FailingDocument&>(first).failsToStore = true;
  dynamic_cast<FailingDocument&>(second).failsToKeep = true;
  EXPECT_TRUE(application.controller.sessionMayEnd(false));
  EXPECT_EQ(application.rescueCopies().size(), 1);
  EXPECT_EQ(log.lines().filter("no number").size(), 1);
  EXPECT_EQ(log.lines().filter("no idea").size(), 1);
}
