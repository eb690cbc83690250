// SPDX-License-Identifier: LGPL-3.0-or-later
#include "orv/documents/OrvDocument.h"

#include <functional>
#include <utility>

#include "tests/unit/orv/documents/NoteDocument.h"

using namespace velmora;

using testing_support::NoteDocument;
using velmora::platform::SaveOperation;

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
    return result.ok() ? read.note : result.error();
  }
  QString rescued() const { return kept() + "/Rescued"; }
  /// The note in every earlier version, the oldest first.
  QStringList notesKept() {
    QStringList notes;
    for (const QString& version : testkit::fileNames(earlierVersions()))
      notes.append(noteIn(testkit::readFile(earlierVersions() + '/' + version)));
    return notes;
  }
  /// Somebody else saves the record, from another desk.
  void writeFromAnotherDesk(const QString& note) {
    NoteDocument another(desktop.services);
    another.note = note;
    testkit::writeFile(path("record.note"), another.dataOfType("note").value());
  }
  void expectToHearOfAnother() {
    OrvKeptCopies copies(desktop.fileManager, desktop.runLoop, "org.velmora.tests");
    const QString copy = copies.earlierVersionsFolder(path("record.note")) + '/' +
                         desktop.runLoop.now().toUTC().toString("yyyyMMdd-HHmmss-zzz") + " another.note";
    desktop.alerts.expect(
        {"Another version of the record 'record.note' was in its place.", "OK", "", "",
         "Yours has been saved. The other one, which somebody else may have written, was kept "
         "as '" +
             copy + "'."},
        platform::AlertDefaultReturn);
  }

  NoteDocument document{desktop.services};
};

TEST_F(SavingRecords, TellsTheDelegateBeforeItReturns) {
  document.edit("first");
  EXPECT_EQ(save(), QList<bool>{true});
  EXPECT_EQ(noteIn(testkit::readFile(path("record.note"))), "first");
  EXPECT_FALSE(document.isDocumentEdited());
}

TEST_F(SavingRecords, KeepsNothingOfAFirstSave) {
  save();
  EXPECT_EQ(testkit::fileNames(kept()), QStringList{"Written Folders.json"});
  EXPECT_EQ(QDir(kept()).entryList(QDir::Dirs | QDir::NoDotAndDotDot), QStringList());
}

TEST_F(SavingRecords, KeepsWhatItReplacesOutsideTheSaveFolder) {
  for (const char* note : {"first", "second", "third"}) {
    document.edit(note);
    save("record.note", SaveOperation::Save);
  }
  const QStringList versions = testkit::fileNames(earlierVersions());
  ASSERT_EQ(versions.size(), 2);
  EXPECT_EQ(noteIn(testkit::readFile(earlierVersions() + '/' + versions.at(0))), "first");
  EXPECT_EQ(noteIn(testkit::readFile(earlierVersions() + '/' + versions.at(1))), "second");
  EXPECT_TRUE(versions.at(0).endsWith(".note")) << "an earlier version opens like any record";
  EXPECT_EQ(testkit::fileNames(folder.path()), QStringList{"record.note"});
}

TEST_F(SavingRecords, LeavesAnEarlierVersionThatOpens) {
  document.edit("first");
  save();
  document.edit("second");
  save();
  NoteDocument earlier(desktop.services);
  const QString version = earlierVersions() + '/' + testkit::fileNames(earlierVersions()).value(0);
  EXPECT_TRUE(earlier.readFromURL(QUrl::fromLocalFile(version)).ok());
  EXPECT_EQ(earlier.note, "first");
}

TEST_F(SavingRecords, TellsTheUserThatItFailedAndWhereTheCopyIs) {
  document.edit("precious");
  QDir().mkpath(path("taken.note"));
  const QString reason = desktop.fileManager.writeDurably(path("taken.note"), "x").error();
  const QString copy =
      rescued() + "/taken " + desktop.runLoop.now().toUTC().toString("yyyyMMdd-HHmmss-zzz") + ".note";
  desktop.alerts.expect({"The record 'taken.note' could not be saved.", "OK", "", "",
                         reason + "\n\nA copy was kept as '" + copy + "'."},
                        platform::AlertDefaultReturn, [&] { EXPECT_TRUE(QFile::exists(copy)); });
  const testkit::LogRecorder log;  // a folder has no earlier version to keep
  EXPECT_EQ(save("taken.note"), QList<bool>{false});
  EXPECT_TRUE(desktop.alerts.allCame());
  EXPECT_EQ(noteIn(testkit::readFile(copy)), "precious");
  EXPECT_TRUE(document.isDocumentEdited());
  EXPECT_TRUE(document.fileURL().isEmpty());
  EXPECT_EQ(testkit::permissionsOf(copy), 0600u);
}

TEST_F(SavingRecords, TellsTheUserWhenNotEvenACopyCouldBeKept) {
  document.edit("precious");
  testkit::writeFile(kept(), "a file where the folder of copies would be");
  const QString reason = desktop.fileManager.writeDurably(path("no/record.note"), "x").error();
  desktop.alerts.expect({"The record 'record.note' could not be saved.", "Save Elsewhere...", "Don't Save",
                         "Cancel", reason + "\n\nNo copy could be kept either."},
                        platform::AlertDefaultReturn);
  desktop.panels.expectSave(url("elsewhere.note"));
  const testkit::LogRecorder log;
  EXPECT_EQ(save("no/record.note"), QList<bool>{false});
  EXPECT_TRUE(desktop.alerts.allCame());
  EXPECT_TRUE(document.isDocumentEdited());
  EXPECT_EQ(noteIn(testkit::readFile(path("elsewhere.note"))), "precious");
}

TEST_F(SavingRecords, LeavesTheOldFileWhenItFails) {
  /// Cannot write where records are kept, and can write elsewhere.
  class NoRoomForRecords : public base::FileManager {
   public:
    QString folder;
    base::Result<> writeDurably(const QString& file, const QByteArray& contents,
                                const FinalCheck& check) override {
      if (file.startsWith(folder)) return base::Failure{"No space left on device"};
      return FileManager::writeDurably(file, contents, check);
    }
  };
  document.edit("old");
  save();
  NoRoomForRecords files;
  files.folder = folder.path();
  platform::Services full = testkit::with(desktop.services, files);
  NoteDocument onFullDisk(full);
  ASSERT_TRUE(onFullDisk.readFromURL(url("record.note")).ok());
  onFullDisk.edit("new");
  const QString copy =
      rescued() + "/record " + desktop.runLoop.now().toUTC().toString("yyyyMMdd-HHmmss-zzz") + ".note";
  desktop.alerts.expect({"The record 'record.note' could not be saved.", "OK", "", "",
                         "No space left on device\n\nA copy was kept as '" + copy + "'."},
                        platform::AlertDefaultReturn);
  onFullDisk.saveDocument();
  EXPECT_EQ(noteIn(testkit::readFile(path("record.note"))), "old");
  EXPECT_EQ(noteIn(testkit::readFile(copy)), "new");
  EXPECT_TRUE(onFullDisk.isDocumentEdited());
}

TEST_F(SavingRecords, DoesNotNameTheRecordInTheLogWhenItsEarlierVersionIsNotKept) {
  document.edit("old");
  save("12-345.note");
  ASSERT_TRUE(base::FileManager().removeItem(kept()).ok());
  QDir().mkpath(kept());
  testkit::writeFile(kept() + "/Earlier Versions", "a file where the folder would be");
  document.edit("new");
  const testkit::LogRecorder log;
  EXPECT_EQ(save("12-345.note"), QList<bool>{true});
  EXPECT_EQ(log.lines(), (QStringList{"No folder for copies could be made in " + kept(),
                                      "No earlier version was kept of a record in " + folder.path()}));
}

TEST_F(SavingRecords, TakesAnAlertThatEndsWithTheProgramForNeitherSavedNorGivenUp) {
  document.edit("precious");
  testkit::writeFile(kept(), "a file where the folder of copies would be");
  const testkit::LogRecorder log;
  desktop.alerts.expect({"Unsaved changes to 'record' are about to be dropped.", "Save Elsewhere...",
                         "Don't Save", "Cancel", "No copy of them could be kept."},
                        platform::AlertStopped);
  document.name = "record";
  EXPECT_EQ(document.keepRescueCopy().outcome, platform::SaveOutcome::Unsaved);
  EXPECT_TRUE(document.isDocumentEdited());
}

TEST_F(SavingRecords, KeepsACopyOfWhatIsAboutToBeDropped) {
  document.name = "12/345";
  document.edit("precious");
  const testkit::LogRecorder log;
  const QString copy = document.keepRescueCopy().copy.value();
  EXPECT_TRUE(copy.startsWith(rescued() + "/12-345 ")) << qPrintable(copy);
  EXPECT_EQ(noteIn(testkit::readFile(copy)), "precious");
  EXPECT_EQ(log.lines(), QStringList{"Unsaved changes were kept in " + rescued()});
  EXPECT_TRUE(document.isDocumentEdited()) << "a copy is no save";
}

TEST_F(SavingRecords, OverAndOverWithoutAChangePushesNoEarlierVersionOut) {
  for (const char* note : {"first", "second"}) {
    document.edit(note);
    save();
  }
  for (int i = 0; i < 2 * OrvKeptCopies::MostVersions; ++i) save();
  EXPECT_EQ(notesKept(), (QStringList{"first", "second"}));
}

TEST_F(SavingRecords, OftenPushesNobodyElsesVersionOut) {
  document.edit("mine");
  save();
  writeFromAnotherDesk("theirs");
  expectToHearOfAnother();
  document.edit("mine 0");
  save();
  for (int i = 1; i < 3 * OrvKeptCopies::MostVersions; ++i) {
    document.edit("mine " + QString::number(i));
    save();
  }
  EXPECT_EQ(notesKept().size(), OrvKeptCopies::MostVersions + 1);
  EXPECT_EQ(notesKept().first(), "theirs");
  EXPECT_EQ(notesKept().last(), "mine 58");
}

/// Somebody else saves while this process is between its last steps.
class MeetingAnother : public base::FileManager {
 public:
  std::function<void()> beforeTheFinalCheck;
  std::function<void()> afterTheFinalCheck;
  base::Result<> writeDurably(const QString& file, const QByteArray& contents,
                              const FinalCheck& check) override {
    if (!check) return FileManager::writeDurably(file, contents, check);
    return FileManager::writeDurably(file, contents, [&] {
      if (const auto act = std::exchange(beforeTheFinalCheck, nullptr)) act();
      const base::Result<> looked = check();
      if (const auto act = std::exchange(afterTheFinalCheck, nullptr)) act();
      return looked;
    });
  }
};

class SavingAtTheSameTime : public SavingRecords {
 protected:
  MeetingAnother files;
  platform::Services services = testkit::with(desktop.services, files);
  NoteDocument mine{services};
  bool saveMine() {
    bool saved = false;
    mine.saveToURL(url("record.note"), "note", SaveOperation::SaveAs,
                   [&saved](platform::Document*, bool didSave) { saved = didSave; });
    return saved;
  }
};

TEST_F(SavingAtTheSameTime, KeepsWhatSomebodyElseSavedInTheMeantimeAndTells) {
  mine.edit("old");
  ASSERT_TRUE(saveMine());
  desktop.runLoop.advance(1);
  mine.edit("mine");
  files.beforeTheFinalCheck = [this] {
    writeFromAnotherDesk("theirs");
    desktop.runLoop.advance(1);
    expectToHearOfAnother();
  };
  EXPECT_TRUE(saveMine());
  EXPECT_TRUE(desktop.alerts.allCame());
  EXPECT_EQ(noteIn(testkit::readFile(path("record.note"))), "mine");
  EXPECT_EQ(notesKept(), (QStringList{"old", "theirs"}));
}

TEST_F(SavingAtTheSameTime, KeepsWhatAppearsWhereNothingStoodAndTells) {
  mine.edit("mine");
  files.afterTheFinalCheck = [this] {
    writeFromAnotherDesk("theirs");
    expectToHearOfAnother();
  };
  EXPECT_TRUE(saveMine());
  EXPECT_TRUE(desktop.alerts.allCame());
  EXPECT_EQ(noteIn(testkit::readFile(path("record.note"))), "mine");
  EXPECT_EQ(notesKept(), QStringList{"theirs"});
}

TEST_F(SavingAtTheSameTime, IsGivenUpWhenWhatSomebodyElseSavedCannotBeKept) {
  mine.edit("mine");
  const testkit::LogRecorder log;
  files.afterTheFinalCheck = [this] {
    writeFromAnotherDesk("theirs");
    testkit::writeFile(kept() + "/Earlier Versions", "a file where the folder would be");
    desktop.alerts.expect({"The record 'record.note' could not be saved.", "OK", "", "",
                           "Another record stands there under this name, and no copy of it could be "
                           "kept.\n\nA copy was kept as '" +
                               rescued() + "/record " +
                               desktop.runLoop.now().toUTC().toString("yyyyMMdd-HHmmss-zzz") + ".note'."},
                          platform::AlertDefaultReturn);
  };
  EXPECT_FALSE(saveMine());
  EXPECT_TRUE(desktop.alerts.allCame());
  EXPECT_EQ(noteIn(testkit::readFile(path("record.note"))), "theirs");
  EXPECT_EQ(testkit::fileNames(folder.path()), QStringList{"record.note"});
  EXPECT_TRUE(mine.isDocumentEdited());
}

TEST_F(SavingAtTheSameTime, OfTheSameContentIsNobodysLoss) {
  mine.edit("mine");
  files.afterTheFinalCheck = [this] { writeFromAnotherDesk("mine"); };
  EXPECT_TRUE(saveMine());
  EXPECT_EQ(noteIn(testkit::readFile(path("record.note"))), "mine");
}

// A kept copy that is opened.

class OpeningACopy : public SavingRecords {
 protected:
  QString copyOf(const QString& note) {
    document.edit(note);
    const testkit::LogRecorder log;
    return OrvKeptCopies(desktop.fileManager, desktop.runLoop, "org.velmora.tests")
        .keepRescueCopy("record.note", dataOf(document))
        .value();
  }
  static QByteArray dataOf(NoteDocument& of) { return of.dataOfType("note").value(); }
};

TEST_F(OpeningACopy, GivesADocumentWithoutAFileAndWithChanges) {
  const QString copy = copyOf("precious");
  NoteDocument opened(desktop.services);
  opened.name = "record";
  ASSERT_TRUE(opened.readFromURL(QUrl::fromLocalFile(copy)).ok());
  EXPECT_EQ(opened.note, "precious");
  EXPECT_TRUE(opened.fileURL().isEmpty());
  EXPECT_TRUE(opened.isDocumentEdited());
  EXPECT_EQ(opened.displayName(), "record");
}

TEST_F(OpeningACopy, LeavesTheCopyAloneWhenItIsSaved) {
  const QString copy = copyOf("precious");
  NoteDocument opened(desktop.services);
  ASSERT_TRUE(opened.readFromURL(QUrl::fromLocalFile(copy)).ok());
  opened.edit("more");
  desktop.panels.expectSave(url("record.note"));
  opened.saveDocument();
  EXPECT_EQ(noteIn(testkit::readFile(path("record.note"))), "more");
  EXPECT_EQ(noteIn(testkit::readFile(copy)), "precious");
}

TEST_F(OpeningACopy, IsTheSameThroughALink) {
  const QString copy = copyOf("precious");
  ASSERT_TRUE(QFile::link(kept(), path("copies")));
  NoteDocument opened(desktop.services);
  ASSERT_TRUE(opened.readFromURL(url("copies/Rescued/" + QFileInfo(copy).fileName())).ok());
  EXPECT_TRUE(opened.fileURL().isEmpty());
}

TEST_F(OpeningACopy, IsNotWhatOpeningARecordIs) {
  document.edit("note");
  save();
  NoteDocument opened(desktop.services);
  ASSERT_TRUE(opened.readFromURL(url("record.note")).ok());
  EXPECT_EQ(opened.fileURL(), url("record.note"));
  EXPECT_FALSE(opened.isDocumentEdited());
}

}  // namespace
