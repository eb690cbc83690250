// SPDX-License-Identifier: LGPL-3.0-or-later
#include "orv/OrvDocument.h"
#include "tests/orv/documents/NoteDocument.h"

using platform::SaveOperation;
using testing_support::NoteDocument;

namespace {

class SavingRecords : public testing_support::NoteDocuments {
 protected:
  /// Saves, and gives what the delegate was told by the time the operation returned.
  QList<bool> save(const QString& name = "record.note", SaveOperation operation = SaveOperation::SaveAs) {
    QList<bool> answers;
    document.saveToURL(url(name), "note", operation,
                       [&answers](platform::Document*, bool didSave) { answers.append(didSave); });
    desktop.runLoop.advance(1);  // copies are named by the time
    return answers;
  }
  QString earlierVersions(const QString& name = "record.note") {
    return OrvKeptCopies(desktop.fileManager, desktop.runLoop, "org.velmora.tests")
        .earlierVersionsFolder(path(name));
  }
  /// The note in a record's bytes.
  QString noteIn(const QByteArray& data) {
    NoteDocument read(desktop.services);
    const auto result = read.readFromData(data, "note");
    return result.ok() ? read.note : result.error;
  }
  QString rescued() const { return kept() + "/Rescued"; }

  NoteDocument document{desktop.services};
};

TEST_F(SavingRecords, TellsTheDelegateBeforeItReturns) {
  document.edit("first");
  EXPECT_EQ(save(), QList<bool>{true});
  EXPECT_EQ(noteIn(contentsOf(path("record.note"))), "first");
  EXPECT_FALSE(document.isDocumentEdited());
}

TEST_F(SavingRecords, KeepsNothingOfAFirstSave) {
  save();
  EXPECT_FALSE(QDir(kept()).exists());
}

TEST_F(SavingRecords, KeepsWhatItReplacesOutsideTheSaveFolder) {
  for (const char* note : {"first", "second", "third"}) {
    document.edit(note);
    save("record.note", SaveOperation::Save);
  }
  const QStringList versions = names(earlierVersions());
  ASSERT_EQ(versions.size(), 2);
  EXPECT_EQ(noteIn(contentsOf(earlierVersions() + '/' + versions.at(0))), "first");
  EXPECT_EQ(noteIn(contentsOf(earlierVersions() + '/' + versions.at(1))), "second");
  EXPECT_TRUE(versions.at(0).endsWith(".note")) << "an earlier version opens like any record";
  EXPECT_EQ(names(folder.path()), QStringList{"record.note"});
}

TEST_F(SavingRecords, LeavesAnEarlierVersionThatOpens) {
  document.edit("first");
  save();
  document.edit("second");
  save();
  NoteDocument earlier(desktop.services);
  const QString version = earlierVersions() + '/' + names(earlierVersions()).value(0);
  EXPECT_TRUE(earlier.readFromURL(QUrl::fromLocalFile(version)).ok());
  EXPECT_EQ(earlier.note, "first");
}

TEST_F(SavingRecords, TellsTheUserThatItFailedAndWhereTheCopyIs) {
  document.edit("precious");
  QDir().mkpath(path("taken.note"));
  const QString reason = desktop.fileManager.writeDurably(path("taken.note"), "x").error;
  const QString copy =
      rescued() + "/taken " + desktop.runLoop.now().toUTC().toString("yyyyMMdd-HHmmss-zzz") + ".note";
  desktop.alerts.expect({"The record 'taken.note' could not be saved.", "OK", "", "",
                         reason + "\n\nA copy was kept as '" + copy + "'."},
                        platform::AlertDefaultReturn, [&] { EXPECT_TRUE(QFile::exists(copy)); });
  const platform::testing::LogRecorder log;  // a folder has no earlier version to keep
  EXPECT_EQ(save("taken.note"), QList<bool>{false});
  EXPECT_TRUE(desktop.alerts.allCame());
  EXPECT_EQ(noteIn(contentsOf(copy)), "precious");
  EXPECT_TRUE(document.isDocumentEdited());
  EXPECT_TRUE(document.fileURL().isEmpty());
  EXPECT_EQ(rights(copy), 0600u);
}

TEST_F(SavingRecords, TellsTheUserWhenNotEvenACopyCouldBeKept) {
  document.edit("precious");
  write(kept(), "a file where the folder of copies would be");
  const QString reason = desktop.fileManager.writeDurably(path("no/record.note"), "x").error;
  desktop.alerts.expect({"The record 'record.note' could not be saved.", "Save Elsewhere...", "Don't Save",
                         "", reason + "\n\nNo copy could be kept either."},
                        platform::AlertDefaultReturn);
  desktop.panels.expectSave(url("elsewhere.note"));
  const platform::testing::LogRecorder log;
  EXPECT_EQ(save("no/record.note"), QList<bool>{false});
  EXPECT_TRUE(desktop.alerts.allCame());
  EXPECT_TRUE(document.isDocumentEdited());
  EXPECT_EQ(noteIn(contentsOf(path("elsewhere.note"))), "precious");
}

TEST_F(SavingRecords, LeavesTheOldFileWhenItFails) {
  /// Cannot write where records are kept, and can write elsewhere.
  class NoRoomForRecords : public platform::FileManager {
   public:
    QString folder;
    platform::FileResult writeDurably(const QString& file, const QByteArray& contents) override {
      if (file.startsWith(folder)) return platform::FileResult::failure("No space left on device");
      return FileManager::writeDurably(file, contents);
    }
  };
  document.edit("old");
  save();
  NoRoomForRecords files;
  files.folder = folder.path();
  platform::Services full{desktop.defaults,
                          desktop.notificationCenter,
                          desktop.distributedCenter,
                          desktop.alerts,
                          desktop.panels,
                          desktop.workspace,
                          files,
                          desktop.runLoop,
                          desktop.mainBundle,
                          desktop.printer,
                          desktop.sharedPrintInfo,
                          desktop.effects,
                          desktop.graphics,
                          desktop.interfaceFiles,
                          desktop.application,
                          nullptr};
  NoteDocument onFullDisk(full);
  ASSERT_TRUE(onFullDisk.readFromURL(url("record.note")).ok());
  onFullDisk.edit("new");
  const QString copy =
      rescued() + "/record " + desktop.runLoop.now().toUTC().toString("yyyyMMdd-HHmmss-zzz") + ".note";
  desktop.alerts.expect({"The record 'record.note' could not be saved.", "OK", "", "",
                         "No space left on device\n\nA copy was kept as '" + copy + "'."},
                        platform::AlertDefaultReturn);
  onFullDisk.saveDocument();
  EXPECT_EQ(noteIn(contentsOf(path("record.note"))), "old");
  EXPECT_EQ(noteIn(contentsOf(copy)), "new");
  EXPECT_TRUE(onFullDisk.isDocumentEdited());
}

TEST_F(SavingRecords, KeepsACopyOfWhatIsAboutToBeDropped) {
  document.name = "12/345";
  document.edit("precious");
  const platform::testing::LogRecorder log;
  const QString copy = document.keepRescueCopy();
  EXPECT_TRUE(copy.startsWith(rescued() + "/12-345 ")) << qPrintable(copy);
  EXPECT_EQ(noteIn(contentsOf(copy)), "precious");
  EXPECT_EQ(log.lines(), QStringList{"Unsaved changes were kept as " + copy});
  EXPECT_TRUE(document.isDocumentEdited()) << "a copy is no save";
}

}  // namespace
