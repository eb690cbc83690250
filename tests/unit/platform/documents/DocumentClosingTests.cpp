// SPDX-License-Identifier: LGPL-3.0-or-later
#include <QLineEdit>
#include <QPointer>
#include <QTest>

#include "platform/controls/TextFieldEditing.h"
#include "tests/unit/platform/documents/DocumentTesting.h"

using namespace velmora;

using testing_support::TextDocument;
using velmora::platform::Document;

namespace {

class DocumentClosing : public testing_support::TextDocuments {
 protected:
  /// What the document's question about its changes answers.
  bool canClose(Document* document) {
    QList<bool> answers;
    document->canCloseDocument([&answers](Document*, bool shouldClose) { answers.append(shouldClose); });
    EXPECT_EQ(answers.size(), 1) << "told once, before the operation returns";
    return answers.value(0);
  }
};

TEST_F(DocumentClosing, AsksNothingWithoutChanges) { EXPECT_TRUE(canClose(untitled())); }

TEST_F(DocumentClosing, SavesTheChangesWhenTheUserWantsIt) {
  write("a.text", "old");
  TextDocument* document = open("a.text");
  document->edit("new");
  desktop.alerts.expect(saveQuestion("a"), platform::AlertDefaultReturn);
  EXPECT_TRUE(canClose(document));
  EXPECT_EQ(contents("a.text"), "new");
}

TEST_F(DocumentClosing, DropsTheChangesWhenTheUserWantsIt) {
  write("a.text", "old");
  TextDocument* document = open("a.text");
  document->edit("new");
  desktop.alerts.expect(saveQuestion("a"), platform::AlertAlternateReturn);
  EXPECT_TRUE(canClose(document));
  EXPECT_EQ(contents("a.text"), "old");
}

TEST_F(DocumentClosing, IsRefusedWhenTheUserCancels) {
  TextDocument* document = untitled();
  document->edit("new");
  desktop.alerts.expect(saveQuestion("Untitled"), platform::AlertOtherReturn);
  EXPECT_FALSE(canClose(document));
  EXPECT_TRUE(document->isDocumentEdited());
}

TEST_F(DocumentClosing, IsRefusedWhenTheSavePanelIsCancelled) {
  TextDocument* document = untitled();
  document->edit("new");
  desktop.alerts.expect(saveQuestion("Untitled"), platform::AlertDefaultReturn);
  desktop.panels.expectSave(QUrl());
  EXPECT_FALSE(canClose(document));
}

TEST_F(DocumentClosing, IsRefusedWhenTheSaveFails) {
  TextDocument* document = untitled();
  document->edit("!no room");
  desktop.alerts.expect(saveQuestion("Untitled"), platform::AlertDefaultReturn);
  desktop.panels.expectSave(url("b.text"));
  desktop.alerts.expect({"The document could not be saved as 'b.text'.", "OK", "", "", "no room"},
                        platform::AlertDefaultReturn);
  EXPECT_FALSE(canClose(document));
}

TEST_F(DocumentClosing, DetachesAtOnceAndDestroysAfterTheEvent) {
  const QPointer<TextDocument> document = untitled();
  QWidget* window = document->window();
  EXPECT_TRUE(window->isVisible());
  document->close();
  EXPECT_TRUE(document->isClosed());
  EXPECT_FALSE(window->isVisible());
  EXPECT_TRUE(controller.documents().isEmpty());
  EXPECT_EQ(controller.currentDocument(), nullptr);
  ASSERT_FALSE(document.isNull()) << "its own code may be running";
  desktop.runLoop.settle();
  EXPECT_TRUE(document.isNull());
}

TEST_F(DocumentClosing, DoesNothingTheSecondTime) {
  int destroyed = 0;
  TextDocument* document = untitled();
  untitled();
  document->whenDestroyed = [&destroyed] { ++destroyed; };
  document->close();
  document->close();
  EXPECT_EQ(controller.documents().size(), 1);
  desktop.runLoop.settle();
  EXPECT_EQ(destroyed, 1);
}

TEST_F(DocumentClosing, IsSafeInTheMiddleOfTheDocumentsOwnOperation) {
  const QPointer<TextDocument> document = untitled();
  document->edit("new");
  desktop.panels.expectSave(url("b.text"));
  document->saveDocument([](Document* saved, bool) { saved->close(); });
  ASSERT_FALSE(document.isNull());
  EXPECT_EQ(document->text, "new");
  EXPECT_EQ(contents("b.text"), "new");
  desktop.runLoop.settle();
  EXPECT_TRUE(document.isNull());
}

TEST_F(DocumentClosing, WaitsWithTheDestructionForAnOpenAlert) {
  const QPointer<TextDocument> document = untitled();
  const platform::Alert notice{"Closed meanwhile", "OK", "", "", ""};
  desktop.alerts.expect(notice, platform::AlertDefaultReturn, [&] {
    document->close();
    desktop.runLoop.advance(10);
    EXPECT_FALSE(document.isNull()) << "whoever asks may still hold it";
  });
  desktop.alerts.runModal(notice);
  EXPECT_FALSE(document.isNull());
  desktop.runLoop.settle();
  EXPECT_TRUE(document.isNull());
}

TEST_F(DocumentClosing, DropsTheTimedCallsOfTheDocument) {
  TextDocument* document = untitled();
  bool ran = false;
  desktop.runLoop.performAfterDelay(document, 1, [&ran] { ran = true; });
  document->close();
  desktop.runLoop.advance(2);
  EXPECT_FALSE(ran);
}

TEST_F(DocumentClosing, ByTheUserAsksAfterTheCurrentEvent) {
  TextDocument* document = untitled();
  document->performClose();
  EXPECT_EQ(document->closeQuestions, 0);
  EXPECT_FALSE(document->isClosed());
  const QPointer<TextDocument> living(document);
  desktop.runLoop.settle();
  EXPECT_TRUE(living.isNull());
}

TEST_F(DocumentClosing, ByTheUserIsToldFromClosingByTheProgram) {
  TextDocument* document = untitled();
  EXPECT_FALSE(document->wasClosedByUser());
  bool duringTheQuestion = false;
  document->beforeCloseQuestion = [&] { duringTheQuestion = document->wasClosedByUser(); };
  document->edit("new");
  desktop.alerts.expect(saveQuestion("Untitled"), platform::AlertOtherReturn);
  document->performClose();
  desktop.runLoop.settle();
  EXPECT_TRUE(duringTheQuestion);
  EXPECT_FALSE(document->wasClosedByUser()) << "it stayed, so a later close may be the program's";
  EXPECT_FALSE(document->isClosed());
}

TEST_F(DocumentClosing, ByTheUserAsksNothingOfADocumentThatClosedMeanwhile) {
  TextDocument* document = untitled();
  document->edit("new");
  document->performClose();
  document->close();
  desktop.runLoop.settle();
  EXPECT_TRUE(desktop.alerts.shown().isEmpty());
  EXPECT_TRUE(controller.documents().isEmpty());
}

/// Notes the end of an edit as a change of the document.
class EditingDelegate : public platform::TextFieldDelegate {
 public:
  explicit EditingDelegate(TextDocument* document) : document_(document) {}
  void controlTextDidEndEditing(QLineEdit* field) override {
    ++ends;
    document_->edit(field->text());
  }
  int ends = 0;

 private:
  TextDocument* document_;
};

TEST_F(DocumentClosing, ByTheUserEndsTheEditFirst) {
  TextDocument* document = untitled();
  EditingDelegate delegate(document);
  auto* field = document->window()->findChild<QLineEdit*>("textField");
  ASSERT_NE(field, nullptr);
  new platform::TextFieldEditing(field, &delegate);
  platform::TextFieldEditing::selectText(field);
  QTest::keyClicks(field, "typed");
  EXPECT_FALSE(document->isDocumentEdited());

  desktop.alerts.expect(saveQuestion("Untitled"), platform::AlertAlternateReturn);
  document->performClose();
  EXPECT_EQ(delegate.ends, 1);
  EXPECT_EQ(document->text, "typed");
  desktop.runLoop.settle();
  EXPECT_TRUE(desktop.alerts.allCame());
  EXPECT_TRUE(controller.documents().isEmpty());
}

TEST_F(DocumentClosing, ByTheProgramTellsNoFieldOfIt) {
  TextDocument* document = untitled();
  EditingDelegate delegate(document);
  auto* field = document->window()->findChild<QLineEdit*>("textField");
  ASSERT_NE(field, nullptr);
  auto* editing = new platform::TextFieldEditing(field, &delegate);
  ASSERT_TRUE(QTest::qWaitForWindowActive(document->window()));
  QTest::mouseClick(field, Qt::LeftButton);
  ASSERT_TRUE(editing->isEditing());
  QWidget* window = document->window();
  document->close();
  EXPECT_FALSE(field->hasFocus()) << "the keyboard leaves the field with its window";
  platform::TextFieldEditing::endEditing(window);
  desktop.runLoop.settle();
  EXPECT_EQ(delegate.ends, 0);
}

TEST_F(DocumentClosing, IsWhatTheWindowsCloseButtonDoes) {
  TextDocument* document = untitled();
  document->edit("new");
  QWidget* window = document->window();
  desktop.alerts.expect(saveQuestion("Untitled"), platform::AlertOtherReturn);
  EXPECT_FALSE(window->close()) << "the window itself stays until the question is answered";
  desktop.runLoop.settle();
  EXPECT_TRUE(window->isVisible());
  EXPECT_TRUE(desktop.alerts.allCame());

  desktop.alerts.expect(saveQuestion("Untitled"), platform::AlertAlternateReturn);
  window->close();
  desktop.runLoop.settle();
  EXPECT_TRUE(controller.documents().isEmpty());
}

}  // namespace
