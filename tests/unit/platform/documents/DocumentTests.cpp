// SPDX-License-Identifier: LGPL-3.0-or-later
#include "platform/documents/Document.h"

#include <sys/stat.h>

#include "tests/unit/platform/documents/DocumentTesting.h"

using namespace velmora;

using testing_support::TextDocument;
using velmora::platform::Alert;
using velmora::platform::ChangeType;
using velmora::platform::Document;
using velmora::platform::SaveOperation;
using velmora::platform::SavePanel;

namespace {

class DocumentChanges : public testing_support::TextDocuments {};

TEST_F(DocumentChanges, AreCountedUpAndDown) {
  TextDocument* document = untitled();
  EXPECT_FALSE(document->isDocumentEdited());
  document->updateChangeCount(ChangeType::Done);
  document->updateChangeCount(ChangeType::Done);
  document->updateChangeCount(ChangeType::Undone);
  EXPECT_TRUE(document->isDocumentEdited());
  document->updateChangeCount(ChangeType::Undone);
  EXPECT_FALSE(document->isDocumentEdited());
  document->updateChangeCount(ChangeType::Undone);
  EXPECT_TRUE(document->isDocumentEdited()) << "undone beyond what was saved is a change as well";
  document->updateChangeCount(ChangeType::Cleared);
  EXPECT_FALSE(document->isDocumentEdited());
}

TEST_F(DocumentChanges, ShowInTheWindowsTitle) {
  TextDocument* document = untitled();
  EXPECT_EQ(document->window()->windowTitle(), "Untitled[*]");
  EXPECT_FALSE(document->window()->isWindowModified());
  document->edit("a");
  EXPECT_TRUE(document->window()->isWindowModified());
  document->setFileURL(url("12-345.text"));
  EXPECT_EQ(document->window()->windowTitle(), "12-345[*]");
}

class DocumentNames : public testing_support::TextDocuments {};

TEST_F(DocumentNames, AreTheFilesWithoutExtension) {
  TextDocument* document = untitled();
  document->setFileURL(url("Müller 12.5.text"));
  EXPECT_EQ(document->displayName(), "Müller 12.5");
}

TEST_F(DocumentNames, AreNumberedWhileThereIsNoFile) {
  TextDocument* first = untitled();
  EXPECT_EQ(first->displayName(), "Untitled");
  EXPECT_EQ(untitled()->displayName(), "Untitled 2");
  EXPECT_EQ(untitled()->displayName(), "Untitled 3");
  first->setFileURL(url("a.text"));
  EXPECT_EQ(untitled()->displayName(), "Untitled") << "a number that nobody bears is free again";
  first->close();
  EXPECT_EQ(untitled()->displayName(), "Untitled 4");
}

class DocumentSaving : public testing_support::TextDocuments {
 protected:
  /// Keeps the answer that a save gives.
  Document::DidSave keepAnswer() {
    return [this](Document*, bool didSave) { answers.append(didSave); };
  }
  QList<bool> answers;
};

TEST_F(DocumentSaving, WritesTheFileAndClearsTheChanges) {
  write("a.text", "old");
  TextDocument* document = open("a.text");
  document->edit("new");
  document->saveDocument(keepAnswer());
  EXPECT_EQ(answers, QList<bool>{true}) << "told before the operation returns";
  EXPECT_EQ(contents("a.text"), "new");
  EXPECT_FALSE(document->isDocumentEdited());
  EXPECT_EQ(document->typeWritten, "text") << "the type of the file that was read";
}

TEST_F(DocumentSaving, AsksForAFileWhereThereIsNone) {
  TextDocument* document = untitled();
  document->edit("new");
  desktop.panels.expectSave(url("b.text"));
  document->saveDocument(keepAnswer());
  EXPECT_EQ(answers, QList<bool>{true});
  EXPECT_EQ(contents("b.text"), "new");
  EXPECT_EQ(document->fileURL(), url("b.text"));
  EXPECT_EQ(document->window()->windowTitle(), "b[*]");
  EXPECT_FALSE(document->isDocumentEdited());
  const SavePanel& panel = desktop.panels.savePanels().first();
  EXPECT_EQ(panel.nameFieldStringValue, "Untitled");
  EXPECT_EQ(panel.requiredFileType, "text");
  document->edit("newer");
  document->saveDocument();
  EXPECT_EQ(contents("b.text"), "newer") << "the second save asks nothing";
}

TEST_F(DocumentSaving, AsTakesTheNewFileAndLeavesTheOldOne) {
  write("a.text", "old");
  TextDocument* document = open("a.text");
  document->edit("new");
  desktop.panels.expectSave(url("b.text"));
  document->saveDocumentAs(keepAnswer());
  EXPECT_EQ(answers, QList<bool>{true});
  EXPECT_EQ(contents("a.text"), "old");
  EXPECT_EQ(contents("b.text"), "new");
  EXPECT_EQ(document->fileURL(), url("b.text"));
  EXPECT_FALSE(document->isDocumentEdited());
  EXPECT_EQ(desktop.panels.savePanels().first().nameFieldStringValue, "a.text");
}

TEST_F(DocumentSaving, ToWritesACopyAndChangesNothingElse) {
  write("a.text", "old");
  TextDocument* document = open("a.text");
  document->edit("new");
  document->saveToURL(url("copy.text"), "text", SaveOperation::SaveTo, keepAnswer());
  EXPECT_EQ(answers, QList<bool>{true});
  EXPECT_EQ(contents("copy.text"), "new");
  EXPECT_EQ(document->fileURL(), url("a.text"));
  EXPECT_TRUE(document->isDocumentEdited());
}

TEST_F(DocumentSaving, LeavesADocumentAsItWasWhenThePanelIsCancelled) {
  TextDocument* document = untitled();
  document->edit("new");
  // The set-up of the panel proposes a name by setting the file.
  document->prepare = [&](SavePanel& panel) {
    panel.directoryURL = QUrl::fromLocalFile(folder.path());
    document->setFileURL(url("12-345"));
    return true;
  };
  desktop.panels.expectSave(QUrl());
  document->saveDocument(keepAnswer());
  EXPECT_EQ(answers, QList<bool>{false});
  EXPECT_EQ(desktop.panels.savePanels().first().nameFieldStringValue, "12-345");
  EXPECT_TRUE(document->fileURL().isEmpty());
  EXPECT_TRUE(document->isDocumentEdited());
  EXPECT_EQ(document->displayName(), "Untitled");
  EXPECT_EQ(document->window()->windowTitle(), "Untitled[*]");
  EXPECT_FALSE(QFile::exists(path("12-345")));
}

TEST_F(DocumentSaving, RunsNoPanelThatWasGivenUp) {
  TextDocument* document = untitled();
  document->edit("new");
  document->prepare = [&](SavePanel&) {
    document->setFileURL(url("12-345"));
    return false;
  };
  document->saveDocument(keepAnswer());
  EXPECT_EQ(answers, QList<bool>{false});
  EXPECT_TRUE(desktop.panels.savePanels().isEmpty());
  EXPECT_TRUE(document->fileURL().isEmpty());
}

TEST_F(DocumentSaving, TellsTheUserWhyItFailed) {
  TextDocument* document = untitled();
  document->edit("new");
  desktop.alerts.expect({"The document could not be saved as 'b.text'.", "OK", "", "",
                         desktop.fileManager.writeDurably(path("no/b.text"), "").error()},
                        platform::AlertDefaultReturn);
  document->saveToURL(url("no/b.text"), "text", SaveOperation::SaveAs, keepAnswer());
  EXPECT_EQ(answers, QList<bool>{false});
  EXPECT_TRUE(document->isDocumentEdited());
  EXPECT_TRUE(document->fileURL().isEmpty());
  EXPECT_TRUE(desktop.alerts.allCame());
}

TEST_F(DocumentSaving, FailsWhenThereIsNoContentToWrite) {
  write("a.text", "old");
  TextDocument* document = open("a.text");
  for (const char* text : {"!half a record", "?half a record"}) {
    document->edit(text);
    desktop.alerts.expect({"The document could not be saved as 'a.text'.", "OK", "", "", "half a record"},
                          platform::AlertDefaultReturn);
    document->saveDocument(keepAnswer());
  }
  EXPECT_EQ(answers, (QList<bool>{false, false})) << "refused and thrown alike";
  EXPECT_EQ(contents("a.text"), "old");
  EXPECT_TRUE(document->isDocumentEdited());
}

class DocumentReading : public testing_support::TextDocuments {};

TEST_F(DocumentReading, TakesContentAndFileAndHasNoChanges) {
  write("a.text", "hello");
  TextDocument document(desktop.services);
  document.updateChangeCount(ChangeType::Done);
  EXPECT_TRUE(document.readFromURL(url("a.text")).ok());
  EXPECT_EQ(document.text, "hello");
  EXPECT_EQ(document.fileURL(), url("a.text"));
  EXPECT_FALSE(document.isDocumentEdited());
}

TEST_F(DocumentReading, FailsWithTheReason) {
  write("damaged.text", "!cut short");
  write("hostile.text", "?out of memory");
  ASSERT_EQ(::mkfifo(QFile::encodeName(path("pipe.text")).constData(), 0600), 0);
  struct Case {
    const char* name;
    const char* reason;
  };
  const Case cases[] = {{"damaged.text", "cut short"},
                        {"hostile.text", "out of memory"},
                        {"pipe.text", "It is not a file."},
                        {"absent.text", "No such file or directory"}};
  for (const Case& each : cases) {
    TextDocument document(desktop.services);
    EXPECT_EQ(document.readFromURL(url(each.name)).error(), each.reason) << each.name;
    EXPECT_TRUE(document.fileURL().isEmpty());
  }
}

class DocumentPrinting : public testing_support::TextDocuments {};

TEST_F(DocumentPrinting, HasNothingToPrintInTheBaseAndSaysSo) {
  TextDocument* document = untitled();
  QList<bool> answers;
  document->printDocument({}, false, [&answers](Document*, bool didPrint) { answers.append(didPrint); });
  EXPECT_EQ(answers, QList<bool>{false});
  EXPECT_TRUE(desktop.printer.jobs.isEmpty());
}

}  // namespace
