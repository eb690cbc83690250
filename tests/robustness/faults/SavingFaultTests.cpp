// SPDX-License-Identifier: LGPL-3.0-or-later
//
// A save in which one system call fails, or in which the process is killed.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>
#include <csignal>

#include <QDir>
#include <QProcess>
#include <cerrno>

#include "orv/documents/OrvKeptCopies.h"
#include "testing/files/Files.h"
#include "tests/robustness/faults/GrowthDesk.h"
#include "tests/robustness/shim/SystemCalls.h"

using namespace velmora;

using faults::Fault;
using faults::firstWeight;
using faults::GrowthDesk;
using faults::recordIn;
using faults::SystemCalls;

namespace {

/// A record of patient A1 that weighs 10 kg on the disk, open in a window.
class SavingUnderFaults : public testing::Test {
 protected:
  SavingUnderFaults() : document(&desk.savedRecord(QStringLiteral("A1"))) { desk.alerts.shown.clear(); }

  QString file() const { return desk.pathOfRecord(QStringLiteral("A1")); }
  /// Each earlier version that is kept already is looked at when the next is: a save without any is the
  /// shortest.
  void forgetEarlierVersions() { QDir(desk.earlierVersionsFolder()).removeRecursively(); }

  GrowthDesk desk;
  GrowthDocument* document;
  testkit::LogRecorder log;
};

/// What a power cut leaves depends on the order in which things reach the disk, which no test can cut off.
TEST_F(SavingUnderFaults, HasTheContentsOnTheDiskBeforeTheNameAndTheNameBeforeItReturns) {
  desk.enterWeight(*document, QStringLiteral("12"));
  const SystemCalls calls(desk.saveFolder());
  document->saveDocument();
  QByteArrayList order = calls.names();
  order.removeIf([](const QByteArray& name) {
    return !QByteArrayList({"write", "fsync", "rename", "fsync folder"}).contains(name);
  });
  EXPECT_EQ(order, QByteArrayList({"write", "fsync", "rename", "fsync folder"}));
}

struct FailingCall {
  const char* name;
  Fault fault;
  int error;
};

void PrintTo(const FailingCall& failing, std::ostream* out) { *out << failing.name; }

class SavingWithAFailingCall : public SavingUnderFaults, public testing::WithParamInterface<FailingCall> {};

TEST_P(SavingWithAFailingCall, LeavesAWholeFileTellsTheUserAndCanBeRepeated) {
  int calls = 0;
  int failures = 0;
  QSet<QByteArray> names;
  QSet<QByteArray> ending;  // those whose failure ended a save
  for (int number = 1;; ++number) {
    desk.alerts.shown.clear();
    forgetEarlierVersions();
    const QString before = firstWeight(recordIn(desk, file()));
    const QString after = QString::number(20 + number);
    desk.enterWeight(*document, after);
    QByteArray met;
    bool saved = false;
    {
      const SystemCalls fault(desk.home.path(), number, GetParam().fault, GetParam().error);
      document->saveDocument([&saved](platform::Document*, bool didSave) { saved = didSave; });
      met = fault.met();
      if (fault.count() < number) break;
      calls = number;
    }
    SCOPED_TRACE(testing::Message() << "call " << number << " " << met.constData());
    if (!met.isEmpty()) names.insert(met);
    const QString onDisk = firstWeight(recordIn(desk, file()));
    if (saved) {
      EXPECT_EQ(onDisk, after);
      EXPECT_FALSE(document->isDocumentEdited());
    } else {
      ++failures;
      ending.insert(met);
      EXPECT_TRUE(onDisk == before || onDisk == after) << qPrintable(onDisk);
      EXPECT_TRUE(document->isDocumentEdited());
      ASSERT_GE(desk.alerts.shown.size(), 1);
      EXPECT_EQ(desk.alerts.shown.last().messageText,
                QStringLiteral("The record 'A1.growth' could not be saved."));
      EXPECT_GT(desk.alerts.shown.last().informativeText.size(), 10);
      // What could not be saved is saved the next time, and nobody else is blamed for what stands there.
      desk.alerts.shown.clear();
      document->saveDocument();
      EXPECT_FALSE(document->isDocumentEdited());
      EXPECT_EQ(firstWeight(recordIn(desk, file())), after);
      EXPECT_TRUE(desk.alerts.shown.isEmpty())
          << qPrintable(desk.alerts.shown.value(0).messageText + desk.alerts.shown.value(0).informativeText);
    }
    desk.letWritesGrowOld();
    desk.start();
    EXPECT_EQ(desk.strayFiles(), QStringList());
    if (HasFailure()) return;
  }
  EXPECT_GE(failures, 1);
  EXPECT_GT(calls, 20);
  std::printf("%d calls, %d of them end the save\n", calls, failures);
  if (GetParam().error == EIO || GetParam().error == ENOSPC) {
    for (const char* name : {"open", "write", "fsync", "rename", "fsync folder"}) {
      EXPECT_TRUE(ending.contains(name)) << name;
    }
  }
  if (GetParam().fault == Fault::Error) {
    for (const char* name : {"open", "write", "fsync", "rename", "fsync folder", "close"})
      EXPECT_TRUE(names.contains(name)) << name;
  }
}

INSTANTIATE_TEST_SUITE_P(Errors, SavingWithAFailingCall,
                         testing::Values(FailingCall{"EIO", Fault::Error, EIO},
                                         FailingCall{"ENOSPC", Fault::Error, ENOSPC},
                                         FailingCall{"EACCES", Fault::Error, EACCES},
                                         FailingCall{"EINTR", Fault::Error, EINTR},
                                         FailingCall{"ShortWrite", Fault::ShortWrite, 0}),
                         [](const auto& each) { return std::string(each.param.name); });

/// Runs `act` in a copy of this process that is killed at the given system call; false when it came to its
/// end alive.
bool killedWhile(const QString& folder, int number, Fault fault, const std::function<void()>& act) {
  const pid_t child = ::fork();
  if (child == 0) {
    const SystemCalls calls(folder, number, fault);
    act();
    ::_exit(0);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  if (!WIFSIGNALED(status)) return false;
  EXPECT_EQ(WTERMSIG(status), SIGKILL);
  return true;
}

class SavingInAProcessThatIsKilled : public SavingUnderFaults, public testing::WithParamInterface<Fault> {};

TEST_P(SavingInAProcessThatIsKilled, LeavesTheOldOrTheNewFileAndNothingElseAfterTheNextStart) {
  int kills = 0;
  int old = 0;
  for (int number = 1;; ++number) {
    SCOPED_TRACE(testing::Message() << "killed at call " << number);
    forgetEarlierVersions();
    const QString before = firstWeight(recordIn(desk, file()));
    const QString after = QString::number(20 + number);
    if (!killedWhile(desk.home.path(), number, GetParam(), [&] {
          desk.enterWeight(*document, after);
          document->saveDocument();
        })) {
      break;
    }
    ++kills;
    const QString onDisk = firstWeight(recordIn(desk, file()));
    EXPECT_TRUE(onDisk == before || onDisk == after) << qPrintable(onDisk);
    if (onDisk == before) ++old;
    desk.letWritesGrowOld();
    desk.start();
    OrvKeptCopies(desk.services.fileManager, desk.services.runLoop, QStringLiteral("org.velmora.growth"))
        .removeAbandonedCopies({QStringLiteral("growth")});
    EXPECT_EQ(desk.strayFiles(), QStringList());
    for (const QString& copy : desk.files()) {
      if (copy.contains(QStringLiteral("Earlier Versions"))) {
        EXPECT_NO_THROW(recordIn(desk, desk.home.path(copy))) << qPrintable(copy);
      }
    }
    // The parent's document knows nothing of what the child did; it goes on from what stands there.
    desk.closeAll();
    document = &desk.opened(file());
    if (HasFailure()) return;
  }
  EXPECT_GT(kills, 20);
  EXPECT_GT(old, 0);
  EXPECT_GT(kills, old);
  std::printf("killed at %d calls: %d times the old file, %d times the new one\n", kills, old, kills - old);
}

INSTANTIATE_TEST_SUITE_P(Kills, SavingInAProcessThatIsKilled,
                         testing::Values(Fault::Kill, Fault::KillHalfway), [](const auto& each) {
                           return each.param == Fault::Kill ? "BeforeACall" : "InAWrite";
                         });

TEST_F(SavingUnderFaults, OfANewRecordLeavesNoneOrAWholeOneWhenTheProcessIsKilled) {
  int number = 1;
  int whole = 0;
  for (;; ++number) {
    const QString identifier = QStringLiteral("N%1").arg(number);
    const bool killed = killedWhile(desk.home.path(), number, Fault::KillHalfway,
                                    [&] { desk.newRecord(identifier).saveDocument(); });
    if (QFile::exists(desk.pathOfRecord(identifier))) {
      ++whole;
      EXPECT_EQ(recordIn(desk, desk.pathOfRecord(identifier)).identifier, identifier);
    }
    desk.letWritesGrowOld();
    desk.start();
    EXPECT_EQ(desk.strayFiles(), QStringList()) << "killed at call " << number;
    if (!killed || HasFailure()) break;
  }
  EXPECT_GT(number, 10);
  EXPECT_GT(whole, 0);
}

/// Files that a person may well keep beside the records.
TEST_F(SavingUnderFaults, AtTheNextStartLeavesAPersonsOwnFilesAlone) {
  const QStringList own{
      QStringLiteral("A1.growth.backup"), QStringLiteral("A1.growth.before"),
      QStringLiteral(".hidden.growth"),   QStringLiteral("A1.growth~"),
      QStringLiteral("A1.unfinished"),    QStringLiteral(".0123456789abcdef.note.unfinished")};
  for (const QString& name : own) testkit::writeFile(desk.saveFolder() + QLatin1Char('/') + name, "mine");
  testkit::writeFile(desk.saveFolder() + QStringLiteral("/.0123456789abcdef.growth.unfinished"), "cut off");
  desk.letWritesGrowOld();
  desk.start();
  for (const QString& name : own)
    EXPECT_TRUE(QFile::exists(desk.saveFolder() + QLatin1Char('/') + name)) << qPrintable(name);
  EXPECT_FALSE(QFile::exists(desk.saveFolder() + QStringLiteral("/.0123456789abcdef.growth.unfinished")));
}

TEST_F(SavingUnderFaults, AtTheNextStartLeavesAloneWhatAnotherProcessIsWriting) {
  const QString unfinished = desk.saveFolder() + QStringLiteral("/.0123456789abcdef.growth.unfinished");
  testkit::writeFile(unfinished, "half");
  QProcess other;
  other.start(QStringLiteral("flock"), {QStringLiteral("-x"), unfinished, QStringLiteral("sh"),
                                        QStringLiteral("-c"), QStringLiteral("echo locked; read end")});
  ASSERT_TRUE(other.waitForReadyRead(30000)) << qPrintable(other.errorString());
  desk.letWritesGrowOld();
  desk.start();
  EXPECT_TRUE(QFile::exists(unfinished));
  other.closeWriteChannel();
  ASSERT_TRUE(other.waitForFinished(30000));
  desk.letWritesGrowOld();
  desk.start();
  EXPECT_FALSE(QFile::exists(unfinished));
}

/// Network file systems know no "rename, but only where nothing stands".
TEST_F(SavingUnderFaults, OfANewRecordDoesWithoutARenameThatReplacesNothing) {
  const auto save = [this](const QString& identifier) {
    GrowthDocument& made = desk.newRecord(identifier);
    return [&made](platform::Document::DidSave didSave) { made.saveDocument(std::move(didSave)); };
  };
  int number = 0;
  {
    const auto saveFirst = save(QStringLiteral("N1"));
    const SystemCalls calls(desk.saveFolder());
    saveFirst({});
    number = static_cast<int>(calls.names().indexOf("renameat2")) + 1;
  }
  ASSERT_GT(number, 0);
  bool saved = false;
  {
    const auto saveSecond = save(QStringLiteral("N2"));
    const SystemCalls calls(desk.saveFolder(), number, Fault::Error, EINVAL);
    saveSecond([&saved](platform::Document*, bool didSave) { saved = didSave; });
    EXPECT_EQ(calls.met(), "renameat2");
    EXPECT_TRUE(calls.names().contains("link"));
    EXPECT_FALSE(calls.names().contains("rename"));
  }
  EXPECT_TRUE(saved);
  EXPECT_EQ(recordIn(desk, desk.pathOfRecord(QStringLiteral("N2"))).identifier, QStringLiteral("N2"));
  EXPECT_EQ(desk.strayFiles(), QStringList());
}

TEST_F(SavingUnderFaults, AtTheNextStartLeavesAloneWhatAnotherMachineMayBeWriting) {
  const QString unfinished = desk.saveFolder() + QStringLiteral("/.0123456789abcdef.growth.unfinished");
  testkit::writeFile(unfinished, "half");  // and no lock that holds here
  desk.start();
  EXPECT_TRUE(QFile::exists(unfinished));
  desk.letWritesGrowOld();
  desk.start();
  EXPECT_FALSE(QFile::exists(unfinished));
}

TEST_F(SavingUnderFaults, AtTheNextStartClearsAFolderThatWasChosenInAPanel) {
  desk.home.makeFolder(QStringLiteral("Stick"));
  GrowthDocument& made = desk.newRecord(QString());  // without an identifier the panel comes up
  const QString chosen = desk.home.path(QStringLiteral("Stick/N1.growth"));
  desk.desktop.panels.expectSave(QUrl::fromLocalFile(chosen));
  int number = 0;
  {
    const SystemCalls calls(desk.home.path(QStringLiteral("Stick")));
    made.saveDocument();
    number = static_cast<int>(calls.names().indexOf("fsync")) + 1;
  }
  ASSERT_TRUE(QFile::exists(chosen));
  GrowthDocument& again = desk.newRecord(QString());
  ASSERT_TRUE(killedWhile(desk.home.path(QStringLiteral("Stick")), number, Fault::Kill, [&] {
    desk.desktop.panels.expectSave(QUrl::fromLocalFile(desk.home.path(QStringLiteral("Stick/N2.growth"))));
    again.saveDocument();
  }));
  const auto unfinished = [this] { return desk.files().filter(QStringLiteral("unfinished")).size(); };
  EXPECT_EQ(unfinished(), 1);
  desk.letWritesGrowOld();
  desk.start();
  EXPECT_EQ(unfinished(), 0);
  again.close();
}

}  // namespace
