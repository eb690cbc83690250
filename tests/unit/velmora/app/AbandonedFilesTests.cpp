// SPDX-License-Identifier: LGPL-3.0-or-later
//
// What a save that was cut off has left is cleared away when the application starts.
#include <gtest/gtest.h>

#include <QFileInfo>

#include "orv/documents/OrvKeptCopies.h"
#include "orv/documents/OrvWrittenFolders.h"
#include "testing/application/RecordApplication.h"
#include "testing/files/Files.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora::testkit;

namespace {

/// A file that a write which was cut off has left, a day ago.
void leave(const QString& path) {
  writeFile(path, "half a record");
  setModified(path, QDateTime::currentDateTime().addDays(-1));
}

void launch(RecordApplication& application) {
  application.desktop.defaults.setInteger(31, velmora::settings::VersionCheckInterval);
  application.controller.applicationDidFinishLaunching();
}

/// Starts the application and lets the steps of its start-up run.
void start(RecordApplication& application) {
  launch(application);
  application.pass(1.5);
}

}  // namespace

TEST(Start, RemovesWhatSavesThatWereCutOffHaveLeft) {
  RecordApplication application;
  const OrvKeptCopies copies(application.desktop.fileManager, application.desktop.runLoop,
                             "org.velmora.recorder");
  const QString versions = copies.earlierVersionsFolder(application.pathOfRecord("AB1"));
  QDir().mkpath(versions);
  const QStringList abandoned{application.saveFolder() + "/.0123456789abcdef.rec.unfinished",
                              application.saveFolder() + "/.0123456789abcdef.unfinished",
                              application.home.path("Charts/.0123456789abcdef.jpg.unfinished"),
                              versions + "/.0123456789abcdef.rec.unfinished",
                              copies.rescueFolder() + "/../.0123456789abcdef.json.unfinished"};
  const QString kept = application.saveFolder() + "/AB1.rec.backup";
  QDir().mkpath(copies.rescueFolder());
  for (const QString& file : abandoned) leave(file);
  writeFile(kept, "a person's own");
  start(application);
  for (const QString& file : abandoned) EXPECT_FALSE(QFileInfo::exists(file)) << qPrintable(file);
  EXPECT_TRUE(QFileInfo::exists(kept));
}

TEST(Start, RemovesThemBehindTheSplashWhenTheCacheIsFilled) {
  RecordApplication application;
  application.turnOn(velmora::settings::AutoSave);
  application.writeRecord("AB1");
  const QString abandoned = application.saveFolder() + "/.0123456789abcdef.rec.unfinished";
  leave(abandoned);
  launch(application);
  application.pass(1.49);
  EXPECT_TRUE(QFileInfo::exists(abandoned)) << "a large folder must not hold up the first window";
  application.pass(0.01);
  EXPECT_FALSE(QFileInfo::exists(abandoned));
  EXPECT_EQ(application.controller.cachedDatabaseArray(), QStringList{"AB1"});
}

TEST(Start, LooksForThemAsDeepAsForDataFiles) {
  RecordApplication application;
  const QString below = application.saveFolder() + "/old/1999/.0123456789abcdef.rec.unfinished";
  leave(below);
  start(application);
  EXPECT_TRUE(QFileInfo::exists(below)) << "folders below belong to automatic saving";
  application.turnOn(velmora::settings::AutoSave);
  start(application);
  EXPECT_FALSE(QFileInfo::exists(below));
}

TEST(Start, LooksForThemWhereverFilesWereSaved) {
  RecordApplication application;
  OrvWrittenFolders folders(application.desktop.fileManager, "org.velmora.recorder");
  application.home.makeFolder("Stick");
  folders.add(application.home.path("Stick/AB1.rec"));
  const QString abandoned = application.home.path("Stick/.0123456789abcdef.rec.unfinished");
  leave(abandoned);
  start(application);
  EXPECT_FALSE(QFileInfo::exists(abandoned));
}

TEST(Start, RemovesCopiesThatHaveGrownTooOld) {
  RecordApplication application;
  OrvKeptCopies copies(application.desktop.fileManager, application.desktop.runLoop, "org.velmora.recorder");
  const QString old = copies.keepEarlierVersion(application.pathOfRecord("AB1"), "old").value();
  application.pass(1);
  const QString newest = copies.keepEarlierVersion(application.pathOfRecord("AB1"), "newest").value();
  const QString rescue = copies.keepRescueCopy("AB1.rec", "unsaved").value();
  for (const QString& copy : {old, newest, rescue}) {
    QFile file(copy);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.setFileTime(application.desktop.runLoop.now().addDays(-OrvKeptCopies::OldestDays - 1),
                                 QFileDevice::FileModificationTime));
  }
  start(application);
  EXPECT_FALSE(QFileInfo::exists(old));
  EXPECT_FALSE(QFileInfo::exists(rescue));
  EXPECT_TRUE(QFileInfo::exists(newest)) << "the last one before the record as it is";
}
