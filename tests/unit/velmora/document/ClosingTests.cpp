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

const platform::Alert saveQuestion{"Save changes to document?", "Save", "Don't Save", "Cancel", ""};
const platform::Alert saveAsQuestion{"Save changes to document?", "Save As...", "Don't Save", "Cancel", ""};

/// A new document, closed as a person closes it: with the window's close button.
class Closing : public testing::Test {
 protected:
  Closing() { document = &application.newRecord(); }
  void edit() {
    user::enter(user::field(*document, "referenceIDField"), "ab1");
    user::enter(user::field(*document, "examDateField"), "3/4/2020");
  }
  void closeWindow() {
    document->window()->close();
    application.settle();
  }
  bool isOpen() const { return application.controller.documents().contains(document); }
  RecordApplication application;
  RecordingDocument* document;
};

}  // namespace

TEST_F(Closing, AsksNothingOfAnUnchangedDocument) {
  closeWindow();
  EXPECT_FALSE(isOpen());
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty());
}

TEST_F(Closing, AnswersWithTheDocumentAndTheAnswer) {
  int answers = 0;
  document->canCloseDocument([&](platform::Document* asked, bool shouldClose) {
    EXPECT_EQ(asked, document);
    EXPECT_TRUE(shouldClose);
    ++answers;
  });
  edit();
  application.desktop.alerts.expect(saveAsQuestion, AlertOtherReturn);
  document->canCloseDocument([&](platform::Document* asked, bool shouldClose) {
    EXPECT_EQ(asked, document);
    EXPECT_FALSE(shouldClose);
    ++answers;
  });
  EXPECT_EQ(answers, 2);
}

TEST_F(Closing, WithAutoSaveSavesWithoutAPanelAndDoesNotOpenAgain) {
  application.turnOn(settings::AutoSave);
  edit();
  application.desktop.alerts.expect(saveQuestion, AlertDefaultReturn);
  closeWindow();
  EXPECT_TRUE(application.controller.documents().isEmpty());
  EXPECT_TRUE(readFile(application.pathOfRecord("AB1")).contains("03/04/2020"));
  EXPECT_TRUE(application.controller.fileIsInCachedDatabaseFiles("AB1"));
}

TEST_F(Closing, WithAutoSaveDropsTheChangesWhenTheUserSaysSo) {
  application.turnOn(settings::AutoSave);
  edit();
  application.desktop.alerts.expect(saveQuestion, AlertAlternateReturn);
  closeWindow();
  EXPECT_FALSE(isOpen());
  EXPECT_FALSE(QFile::exists(application.pathOfRecord("AB1")));
}

TEST_F(Closing, WithAutoSaveKeepsTheDocumentWhenTheUserCancels) {
  application.turnOn(settings::AutoSave);
  edit();
  for (const int answer : {+AlertOtherReturn, +platform::AlertStopped, 7}) {
    application.desktop.alerts.expect(saveQuestion, answer);
    closeWindow();
    ASSERT_TRUE(isOpen());
    EXPECT_TRUE(document->isDocumentEdited());
    EXPECT_TRUE(document->window()->isVisible());
  }
  EXPECT_FALSE(QFile::exists(application.pathOfRecord("AB1")));
}

TEST_F(Closing, AfterACancelledQuestionASaveOpensTheRecordAgain) {
  application.turnOn(settings::AutoSave);
  edit();
  application.desktop.alerts.expect(saveQuestion, AlertOtherReturn);
  closeWindow();
  document->saveDocument();
  application.settle();
  EXPECT_EQ(application.controller.documents().size(), 1) << "nobody has agreed to close";
}

TEST_F(Closing, OnceAgreedToKeepsTheRecordClosedAfterASave) {
  document->canCloseDocument([](platform::Document*, bool) {});
  application.turnOn(settings::AutoSave);
  edit();
  document->saveDocument();
  application.settle();
  EXPECT_TRUE(QFile::exists(application.pathOfRecord("AB1")));
  EXPECT_TRUE(application.controller.documents().isEmpty());
}

TEST_F(Closing, OfASavedRecordWithAutoSaveSavesItInPlace) {
  application.turnOn(settings::AutoSave);
  application.writeRecord("AB1", {"01/01/2021"});
  RecordingDocument& record = application.openRecord("AB1");
  user::enter(user::field(record, "examDateField"), "02/02/2022");
  application.desktop.alerts.expect(saveQuestion, AlertDefaultReturn);
  record.window()->close();
  application.settle();
  EXPECT_FALSE(application.controller.documents().contains(&record));
  EXPECT_TRUE(readFile(application.pathOfRecord("AB1")).contains("02/02/2022"));
}

TEST_F(Closing, WithoutAutoSaveOffersSaveAs) {
  edit();
  application.desktop.alerts.expect(saveAsQuestion, AlertDefaultReturn);
  application.desktop.panels.expectSave(QUrl::fromLocalFile(application.home.path("chosen.rec")));
  closeWindow();
  EXPECT_FALSE(isOpen());
  EXPECT_TRUE(QFile::exists(application.home.path("chosen.rec")));
}

TEST_F(Closing, IsRefusedWhenSaveAsIsCancelledInThePanel) {
  edit();
  application.desktop.alerts.expect(saveAsQuestion, AlertDefaultReturn);
  application.desktop.panels.expectSave({});
  closeWindow();
  EXPECT_TRUE(isOpen());
  EXPECT_TRUE(document->isDocumentEdited());
}

TEST_F(Closing, WithoutAutoSaveDropsTheChangesWhenTheUserSaysSo) {
  edit();
  application.desktop.alerts.expect(saveAsQuestion, AlertAlternateReturn);
  closeWindow();
  EXPECT_FALSE(isOpen());
  EXPECT_TRUE(application.desktop.panels.savePanels().isEmpty());
}

TEST_F(Closing, WithoutAutoSaveKeepsTheDocumentWhenTheUserCancels) {
  edit();
  for (const int answer : {+AlertOtherReturn, +platform::AlertStopped}) {
    application.desktop.alerts.expect(saveAsQuestion, answer);
    closeWindow();
    ASSERT_TRUE(isOpen());
  }
}

TEST_F(Closing, WithoutAnIdentifierOffersSaveAsDespiteAutoSave) {
  application.turnOn(settings::AutoSave);
  user::enter(user::field(*document, "examDateField"), "3/4/2020");
  application.desktop.alerts.expect(saveAsQuestion, AlertOtherReturn);
  closeWindow();
  EXPECT_TRUE(isOpen());
}

TEST_F(Closing, WithSaveAsDoesNotCountAsAgreedToClose) {
  edit();
  application.desktop.alerts.expect(saveAsQuestion, AlertDefaultReturn);
  application.desktop.panels.expectSave({});
  closeWindow();
  application.turnOn(settings::AutoSave);
  document->saveDocument();
  application.settle();
  EXPECT_EQ(application.controller.documents().size(), 1) << "an automatic save opens the record again";
}

TEST_F(Closing, EndsTheEditInProgressBeforeTheQuestion) {
  application.turnOn(settings::AutoSave);
  user::type(user::field(*document, "referenceIDField"), "ab/1");
  application.desktop.alerts.expect(saveQuestion, AlertDefaultReturn);
  closeWindow();
  EXPECT_TRUE(QFile::exists(application.pathOfRecord("AB-1")));
}

TEST_F(Closing, ClosesTheDocumentThatTheAnswerIsAbout) {
  RecordingDocument& other = application.newRecord();
  document->documentShouldClose(&other, false);
  EXPECT_FALSE(other.isClosed());
  document->documentShouldClose(&other, true);
  EXPECT_TRUE(other.isClosed());
  EXPECT_FALSE(document->isClosed());
}

TEST_F(Closing, OfAllDocumentsStopsAtTheFirstThatStays) {
  application.turnOn(settings::AutoSave);
  edit();
  RecordingDocument& front = application.newRecord();
  front.setIdentifier("CD2");
  front.updateChangeCount(platform::ChangeType::Done);
  application.desktop.alerts.expect(saveQuestion, AlertDefaultReturn);
  application.desktop.alerts.expect(saveQuestion, AlertOtherReturn);
  bool all = true;
  application.controller.closeAllDocuments([&](bool didCloseAll) { all = didCloseAll; });
  application.settle();
  EXPECT_FALSE(all);
  EXPECT_EQ(application.controller.documents(), QList<platform::Document*>{document});
  EXPECT_TRUE(QFile::exists(application.pathOfRecord("CD2")));
}
