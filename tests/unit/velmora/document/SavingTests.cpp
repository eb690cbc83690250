// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include "orv/documents/OrvKeptCopies.h"
#include "testing/application/RecordApplication.h"
#include "testing/files/Files.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;
using namespace velmora::testkit;

namespace settings = velmora::settings;

namespace {

/// A new document with the identifier 12/345 and an examination date.
class Saving : public testing::Test {
 protected:
  Saving() {
    document = &application.newRecord();
    document->setIdentifier("12/345");
    user::enter(user::field(*document, "examDateField"), "3/4/2020");
    document->forgetCalls();
  }
  QString path() const { return application.pathOfRecord("12-345"); }
  /// The notice that something else stood where the record was saved.
  platform::Alert anotherVersionKept() {
    const OrvKeptCopies copies(application.desktop.fileManager, application.desktop.runLoop,
                               "org.velmora.recorder");
    const QString copy = copies.earlierVersionsFolder(path()) + '/' +
                         application.desktop.runLoop.now().toUTC().toString("yyyyMMdd-HHmmss-zzz") +
                         " another.rec";
    return {"Another version of the record '12-345.rec' was in its place.", "OK", "", "",
            "Yours has been saved. The other one, which somebody else may have written, was kept as '" +
                copy + "'."};
  }
  QList<platform::SavePanel> panels() const { return application.desktop.panels.savePanels(); }
  RecordApplication application;
  RecordingDocument* document;
};

}  // namespace

TEST_F(Saving, NamesTheFileAfterTheIdentifierWithDashes) {
  EXPECT_EQ(document->preferredFileName(false), "12-345");
  EXPECT_EQ(document->preferredFileName(true), "12-345");
  document->setIdentifier("");
  EXPECT_EQ(document->preferredFileName(false), "");
  EXPECT_FALSE(document->preferredFileName(false).isNull());
}

TEST_F(Saving, AutomaticallyWritesToTheSaveFolderWithoutAPanel) {
  application.turnOn(settings::AutoSave);
  document->saveDocument();
  EXPECT_EQ(fileNames(application.saveFolder()), QStringList{"12-345.rec"});
  EXPECT_TRUE(readFile(path()).contains("03/04/2020"));
  EXPECT_TRUE(panels().isEmpty());
}

TEST_F(Saving, AutomaticallyOpensTheRecordAgainFromItsFile) {
  application.turnOn(settings::AutoSave);
  QPointer<RecordingDocument> before(document);
  document->saveDocument();
  application.settle();
  EXPECT_TRUE(before.isNull());
  ASSERT_EQ(application.controller.documents().size(), 1);
  EXPECT_EQ(application.front()->fileURL().toLocalFile(), path());
  EXPECT_FALSE(application.front()->isDocumentEdited());
  EXPECT_TRUE(application.front()->window()->isVisible());
  EXPECT_EQ(application.front()->exams, QStringList{"03/04/2020"});
}

TEST_F(Saving, AutomaticallyOverwritesAFileOfThatName) {
  application.turnOn(settings::AutoSave);
  application.writeRecord("12-345", {"01/01/2001"});
  application.desktop.alerts.expect(anotherVersionKept(), platform::AlertDefaultReturn);
  document->saveDocument();
  EXPECT_FALSE(readFile(path()).contains("01/01/2001"));
}

TEST_F(Saving, AutomaticallyTellsTheCallersCallback) {
  application.turnOn(settings::AutoSave);
  int told = 0;
  document->saveDocument([&](platform::Document* saved, bool didSave) {
    EXPECT_EQ(saved, document);
    EXPECT_TRUE(didSave);
    ++told;
  });
  EXPECT_EQ(told, 1);
}

TEST_F(Saving, AgainGoesToTheSameFileAndStaysOpen) {
  application.turnOn(settings::AutoSave);
  document->saveDocument();
  application.settle();
  RecordingDocument* record = application.front();
  user::enter(user::field(*record, "examDateField"), "4/4/2020");
  record->saveDocument();
  application.settle();
  EXPECT_EQ(application.front(), record);
  EXPECT_FALSE(record->isDocumentEdited());
  EXPECT_TRUE(readFile(path()).contains("04/04/2020"));
}

TEST_F(Saving, StoresTheFieldsAndDropsTheLookUpBeforeItWrites) {
  application.turnOn(settings::AutoSave);
  document->setLookUpRequired(true);
  QStringList order;
  application.delegate.whenAdded = [&] {
    order = document->calls;
    EXPECT_FALSE(document->lookUpRequired());
    EXPECT_TRUE(QFile::exists(path())) << "the name is reported after the write";
    EXPECT_FALSE(document->isClosed()) << "and before the document closes";
  };
  document->saveDocument();
  EXPECT_EQ(order, QStringList{"synchronizeToData 0"});
  EXPECT_EQ(application.delegate.added, QStringList{"12-345.rec"});
  EXPECT_TRUE(application.controller.fileIsInCachedDatabaseFiles("12-345"));
}

TEST_F(Saving, ReportsTheNameWhateverAutoSaveSaysAndWhereverTheFileIs) {
  const QString elsewhere = application.home.makeFolder("Elsewhere") + "/odd name#1.rec";
  document->saveToURL(QUrl::fromLocalFile(elsewhere), "rec", platform::SaveOperation::SaveAs, {});
  EXPECT_EQ(application.delegate.added, QStringList{"odd name#1.rec"});
  EXPECT_TRUE(application.controller.fileIsInCachedDatabaseFiles("odd name#1"));
}

TEST_F(Saving, ReportsNoNameWithoutALocation) {
  application.desktop.alerts.expect(
      {"The record '' could not be saved.", "OK", "", "",
       base::FileManager().writeDurably(QString(), "x").error() + "\n\nA copy was kept as '" +
           application.home.path(".local/share/org.velmora.recorder/Rescued/ ") +
           application.desktop.runLoop.now().toUTC().toString("yyyyMMdd-HHmmss-zzz") + "'."},
      platform::AlertDefaultReturn);
  document->saveToURL(QUrl(), "rec", platform::SaveOperation::SaveAs, {});
  EXPECT_TRUE(application.delegate.added.isEmpty());
}

TEST_F(Saving, WithoutAutoSaveRunsThePanelWithTheNameInTheSaveFolder) {
  application.desktop.panels.expectSave({});
  document->saveDocument();
  ASSERT_EQ(panels().size(), 1);
  EXPECT_EQ(panels().first().directoryURL.toLocalFile(), application.saveFolder());
  EXPECT_EQ(panels().first().nameFieldStringValue, "12-345");
  EXPECT_EQ(panels().first().requiredFileType, "rec");
}

TEST_F(Saving, WithoutAnIdentifierRunsThePanelDespiteAutoSave) {
  application.turnOn(settings::AutoSave);
  document->setIdentifier("");
  application.desktop.panels.expectSave({});
  document->saveDocument();
  ASSERT_EQ(panels().size(), 1);
  EXPECT_EQ(panels().first().directoryURL.toLocalFile(), application.saveFolder());
  EXPECT_TRUE(document->fileURL().isEmpty());
}

TEST_F(Saving, WithoutTheSaveFolderRunsThePanelDespiteAutoSave) {
  application.turnOn(settings::AutoSave);
  QDir(application.saveFolder()).removeRecursively();
  application.desktop.panels.expectSave({});
  document->saveDocument();
  EXPECT_EQ(panels().size(), 1);
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty());
}

TEST_F(Saving, ThroughAPanelThatIsCancelledChangesNothing) {
  application.desktop.panels.expectSave({});
  document->saveDocument();
  application.settle();
  EXPECT_EQ(application.front(), document);
  EXPECT_TRUE(document->isDocumentEdited());
  EXPECT_TRUE(document->fileURL().isEmpty());
  EXPECT_FALSE(document->isClosed());
  EXPECT_TRUE(application.delegate.added.isEmpty());
}

TEST_F(Saving, ThroughThePanelClosesTheDocument) {
  application.desktop.panels.expectSave(QUrl::fromLocalFile(path()));
  document->saveDocument();
  EXPECT_TRUE(QFile::exists(path()));
  EXPECT_TRUE(document->isClosed());
  EXPECT_TRUE(document->toldOfSave);
  application.settle();
  EXPECT_TRUE(application.controller.documents().isEmpty());
  EXPECT_EQ(application.delegate.added, QStringList{"12-345.rec"});
}

TEST_F(Saving, ThroughThePanelDropsTheCallersCallback) {
  application.desktop.panels.expectSave({});
  bool told = false;
  document->saveDocument([&told](platform::Document*, bool) { told = true; });
  EXPECT_FALSE(told);
  EXPECT_TRUE(document->toldOfSave) << "the document is its own delegate";
  application.desktop.panels.expectSave(QUrl::fromLocalFile(path()));
  document->saveDocument([&told](platform::Document*, bool) { told = true; });
  EXPECT_FALSE(told);
}

TEST_F(Saving, AlwaysWritesTheTypeOfADataFile) {
  EXPECT_EQ(document->fileTypeFromLastRunSavePanel(), "rec");
  document->setDataFileExtension("other");
  EXPECT_EQ(document->fileTypeFromLastRunSavePanel(), "other");
}

TEST_F(Saving, ProposesTheNameOnlyForADocumentWithoutAFile) {
  const QUrl own = QUrl::fromLocalFile(application.home.path("own.rec"));
  document->setFileURL(own);
  platform::SavePanel panel;
  EXPECT_TRUE(document->prepareSavePanel(panel));
  EXPECT_EQ(document->fileURL(), own);
  document->setFileURL(QUrl());
  EXPECT_TRUE(document->prepareSavePanel(panel));
  EXPECT_EQ(document->fileURL().toLocalFile(), application.saveFolder() + "/12-345");
}

TEST_F(Saving, OnceDoneThroughThePanelClosesTheDocumentAfterEveryLaterSave) {
  document->documentDidSave(document, true);
  document->saveToURL(QUrl::fromLocalFile(path()), "rec", platform::SaveOperation::SaveAs, {});
  EXPECT_TRUE(document->isClosed());
}

TEST_F(Saving, ThatFailedThroughThePanelKeepsTheDocumentOpen) {
  document->documentDidSave(document, false);
  document->saveToURL(QUrl::fromLocalFile(path()), "rec", platform::SaveOperation::SaveAs, {});
  EXPECT_FALSE(document->isClosed());
}

TEST_F(Saving, ThatFailsTellsTheUserLeavesACopyAndClosesAllTheSame) {
  application.turnOn(settings::AutoSave);
  application.home.makeFolder("Records/12-345.rec");  // a folder stands where the file should go
  const QString reason = base::FileManager().writeDurably(path(), "x").error();
  const QString copy = application.home.path(".local/share/org.velmora.recorder/Rescued/12-345 ") +
                       application.desktop.runLoop.now().toUTC().toString("yyyyMMdd-HHmmss-zzz") + ".rec";
  application.desktop.alerts.expect({"The record '12-345.rec' could not be saved.", "OK", "", "",
                                     reason + "\n\nA copy was kept as '" + copy + "'."},
                                    platform::AlertDefaultReturn);
  document->saveDocument();
  application.settle();
  EXPECT_TRUE(readFile(copy).contains("03/04/2020"));
  EXPECT_TRUE(application.controller.documents().isEmpty()) << "that it does not open again is passed over";
  EXPECT_EQ(application.delegate.added, QStringList{"12-345.rec"}) << "the name is reported all the same";
}

TEST_F(Saving, KeepsWhatItReplacesAsAnEarlierVersion) {
  application.turnOn(settings::AutoSave);
  application.writeRecord("12-345", {"01/01/2001"});
  const QByteArray before = readFile(path());
  application.desktop.alerts.expect(anotherVersionKept(), platform::AlertDefaultReturn);
  document->saveDocument();
  const QDir versions(application.home.path(".local/share/org.velmora.recorder/Earlier Versions"));
  const QStringList folders = versions.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
  ASSERT_EQ(folders.size(), 1);
  const QDir folder(versions.filePath(folders.first()));
  const QStringList names = fileNames(folder.path());
  ASSERT_EQ(names.size(), 1);
  EXPECT_EQ(readFile(folder.filePath(names.first())), before);
}

TEST_F(Saving, LetsTheNextRequestFindTheRecord) {
  application.turnOn(settings::AutoSave);
  document->saveDocument();
  application.settle();
  application.front()->close();
  application.newRecord();
  application.chooseStudy(study("12/345"));
  application.pass(0.1);
  EXPECT_EQ(application.front()->fileURL().toLocalFile(), path());
  EXPECT_EQ(application.front()->exams, (QStringList{"03/04/2020", "29/04/2024"}));
}
