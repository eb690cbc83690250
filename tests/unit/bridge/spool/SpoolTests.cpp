// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include <QFile>

#include <QTemporaryDir>

#include "bridge/spool/Spool.h"
#include "bridge/testing/Replies.h"
#include "testing/files/Files.h"
#include "testing/files/UnreadableFile.h"
#include "testing/main/Shown.h"

using namespace bridge_testing;
using namespace velmora::testkit;
using namespace bridge;

namespace {

const QDateTime Now(QDate(2024, 5, 2), QTime(10, 0), Qt::UTC);

QDateTime atNow() { return Now; }

SpooledReply someReply(const char* identifier = "P-1") {
  return *spooledReply(replyTo(study("1.2.3", identifier)), Growth, Now);
}

EntryState stateOf(SpoolState which, const QDateTime& changed = Now) {
  EntryState state;
  state.state = which;
  state.changed = changed;
  state.reason = text("a reason");
  state.sopInstanceUID = text("2.25.7");
  state.studyInstanceUID = text("1.2.3");
  state.arrival = Now;
  return state;
}

}  // namespace

class SpoolTest : public ::testing::Test {
 protected:
  QString folder() const { return temporary_.filePath(text("state/spool")); }
  QString inFolder(const QString& name) const { return folder() + QLatin1Char('/') + name; }
  QString added(Spool& spool, const SpooledReply& reply = someReply()) {
    const QString name = spool.newName();
    EXPECT_EQ(spool.add(name, reply).error(), QString());
    return name;
  }
  SpoolItem listed(const QString& name) const {
    for (const SpoolItem& item : Spool::list(folder()).valueOr({})) {
      if (item.name == name) return item;
    }
    ADD_FAILURE() << "not listed";
    return {};
  }

  QTemporaryDir temporary_;
};

TEST_F(SpoolTest, KeepsAReplyAcrossARestart) {
  const SpooledReply reply = someReply();
  QString name;
  {
    Spool spool(folder(), atNow);
    ASSERT_EQ(spool.open().error(), QString());
    name = added(spool, reply);
  }
  Spool spool(folder(), atNow);
  ASSERT_EQ(spool.open().error(), QString());
  ASSERT_EQ(spool.waiting().size(), 1);
  EXPECT_EQ(spool.waiting().first().name, name);
  EXPECT_EQ(spool.waiting().first().sopInstanceUID, reply.sopInstanceUID);
  EXPECT_EQ(*spool.read(name), reply);
  EXPECT_LT(name, spool.newName());
  EXPECT_TRUE(name.endsWith(text("-20240502")));
}

TEST_F(SpoolTest, IsForItsOwnerOnlyWhateverTheUmask) {
  for (const unsigned mask : {0u, 0777u}) {
    const mode_t before = ::umask(mask);
    QTemporaryDir place;
    ::chmod(QFile::encodeName(place.path()).constData(), 0700);
    Spool spool(place.filePath(text("spool")));
    const QString error = spool.open().error();
    const QString name = spool.newName();
    const QString added = spool.add(name, someReply()).error();
    const QString changed = spool.change(name, stateOf(SpoolState::Aside)).error();
    ::umask(before);
    EXPECT_EQ(error, QString());
    EXPECT_EQ(added, QString());
    EXPECT_EQ(changed, QString());
    EXPECT_EQ(permissionsOf(spool.folder()), 0700u);
    EXPECT_EQ(permissionsOf(spool.folder() + text("/replies")), 0700u);
    EXPECT_EQ(permissionsOf(spool.folder() + text("/replies/") + name + text(".reply")), 0600u);
    EXPECT_EQ(permissionsOf(spool.folder() + text("/replies/") + name + text(".state")), 0600u);
  }
}

TEST_F(SpoolTest, MakesAnOpenFolderPrivate) {
  QDir().mkpath(folder());
  ::chmod(QFile::encodeName(folder()).constData(), 0755);
  Spool spool(folder(), atNow);
  ASSERT_EQ(spool.open().error(), QString());
  EXPECT_EQ(permissionsOf(folder()), 0700u);
}

TEST_F(SpoolTest, LetsOneServerIn) {
  EXPECT_FALSE(Spool::isServed(folder()));
  {
    Spool first(folder());
    ASSERT_EQ(first.open().error(), QString());
    EXPECT_TRUE(Spool::isServed(folder()));
    Spool second(folder());
    EXPECT_TRUE(second.open().error().startsWith(text("another server works in ")));
  }
  EXPECT_FALSE(Spool::isServed(folder()));
}

TEST_F(SpoolTest, DropsTheImageOfWhatIsStoredAndKeepsARecord) {
  Spool spool(folder(), atNow);
  ASSERT_EQ(spool.open().error(), QString());
  const QString name = added(spool);
  ASSERT_EQ(spool.change(name, stateOf(SpoolState::Stored)).error(), QString());
  EXPECT_EQ(fileNames(inFolder(text("replies"))), QStringList{name + text(".state")});
  EXPECT_TRUE(spool.waiting().isEmpty());
  const SpoolItem item = listed(name);
  EXPECT_EQ(item.state, SpoolState::Stored);
  EXPECT_EQ(item.sopInstanceUID, text("2.25.7"));
  EXPECT_EQ(item.studyInstanceUID, text("1.2.3"));
  EXPECT_EQ(item.changed, Now);
  EXPECT_EQ(item.identifier, QString());
  EXPECT_FALSE(readFile(inFolder(text("replies/") + name + text(".state"))).contains("Muster"));
}

TEST_F(SpoolTest, ClearsAwayWhatAKilledServerLeft) {
  QString stored;
  {
    Spool spool(folder(), atNow);
    ASSERT_EQ(spool.open().error(), QString());
    stored = added(spool);
    const QByteArray reply = readFile(inFolder(text("replies/") + stored + text(".reply")));
    ASSERT_EQ(spool.change(stored, stateOf(SpoolState::Stored)).error(), QString());
    // Killed between the record and the end of the image, and in the middle of two files.
    writeFile(inFolder(text("replies/") + stored + text(".reply")), reply);
    writeFile(inFolder(text("replies/.0123456789abcdef.reply.unfinished")), reply.left(100));
    writeFile(inFolder(text("series/.0123456789abcdef.1.unfinished")), "x");
  }
  Spool spool(folder(), atNow);
  ASSERT_EQ(spool.open().error(), QString());
  EXPECT_EQ(fileNames(inFolder(text("replies"))), QStringList{stored + text(".state")});
  EXPECT_EQ(fileNames(inFolder(text("series"))), QStringList());
  EXPECT_TRUE(spool.waiting().isEmpty());
  EXPECT_TRUE(spool.warnings().isEmpty());
}

TEST_F(SpoolTest, SetsADamagedReplyAsideAndGoesOnWithTheRest) {
  const QByteArray noise("velmora-link reply 1 nonsense\n{\n");
  QString damaged, whole;
  {
    Spool spool(folder(), atNow);
    ASSERT_EQ(spool.open().error(), QString());
    damaged = added(spool);
    whole = added(spool);
    writeFile(inFolder(text("replies/") + damaged + text(".reply")), noise);
  }
  Spool spool(folder(), atNow);
  ASSERT_EQ(spool.open().error(), QString());
  ASSERT_EQ(spool.waiting().size(), 1);
  EXPECT_EQ(spool.waiting().first().name, whole);
  EXPECT_EQ(spool.warnings().size(), 1);
  EXPECT_EQ(readFile(inFolder(text("damaged/") + damaged + text(".reply"))), noise);
  EXPECT_EQ(listed(damaged).state, SpoolState::Aside);
  EXPECT_EQ(listed(damaged).changed, Now);
  EXPECT_TRUE(listed(damaged).reason.endsWith(text("is damaged")));
  EXPECT_FALSE(Spool::requestRetry(folder(), damaged).ok());
}

TEST_F(SpoolTest, SetsAReplyAsideWhoseStateIsDamaged) {
  QString name;
  {
    Spool spool(folder(), atNow);
    ASSERT_EQ(spool.open().error(), QString());
    name = added(spool);
    writeFile(inFolder(text("replies/") + name + text(".state")), "noise");
  }
  Spool spool(folder(), atNow);
  ASSERT_EQ(spool.open().error(), QString());
  EXPECT_TRUE(spool.waiting().isEmpty());
  EXPECT_EQ(readFile(inFolder(text("damaged/") + name + text(".state"))), QByteArray("noise"));
  EXPECT_EQ(Spool::requestRetry(folder(), name).error(), QString());
  EXPECT_EQ(spool.takeRetryRequests(), QStringList{name});
  EXPECT_EQ(spool.waiting().size(), 1);
}

TEST_F(SpoolTest, TakesWhatTheDiskDoesNotGiveForNothingElse) {
  for (const char* ending : {".state", ".reply"}) {
    QString name;
    {
      Spool spool(folder(), atNow);
      ASSERT_EQ(spool.open().error(), QString());
      name = added(spool);
      ASSERT_EQ(spool.change(name, stateOf(SpoolState::Aside)).error(), QString());
      ASSERT_EQ(Spool::requestRetry(folder(), name).error(), QString());
    }
    Spool spool(folder(), atNow);
    {
      const UnreadableFile unreadable(inFolder(text("replies/") + name + text(ending)));
      ASSERT_EQ(spool.open().error(), QString());
      EXPECT_EQ(spool.warnings().size(), 1);
      EXPECT_FALSE(listed(name).isReadable);
      EXPECT_TRUE(listed(name).reason.startsWith(text("cannot read its file ") + name + text(ending)));
      EXPECT_FALSE(spool.loadEntry(name).ok());
      EXPECT_EQ(spool.takeRetryRequests(), QStringList()) << "nobody knows whether it was set aside";
      EXPECT_TRUE(unreadable.isUntouched());
    }
    EXPECT_EQ(spool.loadEntry(name).valueOr({text("failed")}), QStringList());
    EXPECT_EQ(spool.state(name), stateOf(SpoolState::Aside));
    EXPECT_EQ(spool.takeRetryRequests(), QStringList{name}) << "the request has stayed";
  }
}

TEST_F(SpoolTest, GivesNamesThatItFindsAgainWhateverStandsInIt) {
  ASSERT_TRUE(Spool(folder()).open().ok());
  writeFile(inFolder(text("damaged/99999999-20240502.reply")), "noise");
  QString name;
  {
    Spool spool(folder(), atNow);
    ASSERT_EQ(spool.open().error(), QString());
    name = added(spool);
  }
  Spool spool(folder(), atNow);
  ASSERT_EQ(spool.open().error(), QString());
  ASSERT_EQ(spool.waiting().size(), 1);
  EXPECT_EQ(spool.waiting().first().name, name);
}

TEST_F(SpoolTest, LeavesForeignFilesAlone) {
  QDir().mkpath(inFolder(text("replies/a-folder.reply")));
  writeFile(inFolder(text("replies/notes.txt")), "hello");
  Spool spool(folder(), atNow);
  ASSERT_EQ(spool.open().error(), QString());
  EXPECT_TRUE(Spool::list(folder())->isEmpty());
  EXPECT_EQ(readFile(inFolder(text("replies/notes.txt"))), QByteArray("hello"));
}

TEST_F(SpoolTest, PutsBackWhatWasSetAside) {
  Spool spool(folder(), atNow);
  ASSERT_EQ(spool.open().error(), QString());
  const QString aside = added(spool);
  const QString waiting = added(spool);
  const QString stored = added(spool);
  EntryState state = stateOf(SpoolState::Aside);
  state.decision = Decision{study("1.2.3", "P-1"), text("2.25.9"), 9000, 3};
  ASSERT_EQ(spool.change(aside, state).error(), QString());
  ASSERT_EQ(spool.change(stored, stateOf(SpoolState::Stored)).error(), QString());

  EXPECT_TRUE(Spool::requestRetry(folder(), waiting).error().endsWith(text("waits already")));
  EXPECT_TRUE(Spool::requestRetry(folder(), stored).error().endsWith(text("is stored")));
  EXPECT_TRUE(Spool::requestRetry(folder(), text("../lock")).error().startsWith(text("there is no ")));
  EXPECT_EQ(Spool::requestRetry(folder(), aside).error(), QString());
  EXPECT_EQ(listed(aside).state, SpoolState::Waiting);
  EXPECT_EQ(spool.takeRetryRequests(), QStringList{aside});
  EXPECT_EQ(spool.takeRetryRequests(), QStringList());
  ASSERT_EQ(spool.waiting().size(), 2);
  EXPECT_EQ(spool.waiting().first().name, aside);
  EXPECT_EQ(spool.state(aside).decision, state.decision);
}

TEST_F(SpoolTest, TakesBackAcrossARestartAndNeverWhatIsStored) {
  QString aside, stored;
  {
    Spool spool(folder(), atNow);
    ASSERT_EQ(spool.open().error(), QString());
    aside = added(spool);
    stored = added(spool);
    ASSERT_EQ(spool.change(aside, stateOf(SpoolState::Aside)).error(), QString());
    ASSERT_EQ(spool.change(stored, stateOf(SpoolState::Stored)).error(), QString());
  }
  ASSERT_EQ(Spool::requestRetry(folder(), aside).error(), QString());
  writeFile(inFolder(text("again/") + stored), "");
  Spool spool(folder(), atNow);
  ASSERT_EQ(spool.open().error(), QString());
  EXPECT_EQ(spool.takeRetryRequests(), QStringList{aside});
  EXPECT_EQ(listed(stored).state, SpoolState::Stored);
  EXPECT_TRUE(fileNames(inFolder(text("again"))).isEmpty());
}

TEST_F(SpoolTest, ForgetsOldRecordsButNothingElse) {
  Spool spool(folder(), atNow);
  ASSERT_EQ(spool.open().error(), QString());
  const QString old = added(spool);
  const QString aside = added(spool);
  const QString young = added(spool);
  ASSERT_EQ(spool.change(old, stateOf(SpoolState::Stored, Now.addDays(-91))).error(), QString());
  ASSERT_EQ(spool.change(aside, stateOf(SpoolState::Aside, Now.addDays(-900))).error(), QString());
  ASSERT_EQ(spool.change(young, stateOf(SpoolState::Stored, Now.addDays(-89))).error(), QString());
  spool.forgetOldRecords();
  QStringList names;
  for (const SpoolItem& item : Spool::list(folder()).valueOr({})) names.append(item.name);
  EXPECT_EQ(names, (QStringList{aside, young}));
}

TEST_F(SpoolTest, SaysWhyItCannotBeOpened) {
  writeFile(temporary_.filePath(text("state")), "a file");
  Spool spool(folder(), atNow);
  EXPECT_TRUE(spool.open().error().startsWith(text("cannot make the folder ")));
}

TEST(SpoolList, IsEmptyForASpoolThatDoesNotExistYet) {
  const auto listing = Spool::list(text("/nowhere/at/all"));
  ASSERT_TRUE(listing.ok());
  EXPECT_TRUE(listing->isEmpty());
}
