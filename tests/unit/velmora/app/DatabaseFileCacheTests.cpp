// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include <QLabel>

#include "testing/application/RecordApplication.h"
#include "testing/files/Files.h"
#include "velmora/about/AboutController.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora::testkit;

namespace settings = velmora::settings;

namespace {

/// An application whose records are saved automatically and whose about window, with the status line, exists.
class DatabaseFileCache : public testing::Test {
 protected:
  DatabaseFileCache() {
    application.turnOn(settings::AutoSave);
    application.controller.doSplashAboutBox(nullptr);
  }
  QString status() { return application.controller.aboutController()->outlet<QLabel>("statusField")->text(); }
  QStringList names() {
    QStringList sorted = application.controller.cachedDatabaseArray();
    sorted.sort();
    return sorted;
  }
  RecordApplication application;
};

}  // namespace

TEST_F(DatabaseFileCache, IsNotFilledWhileAutoSaveIsOff) {
  application.writeRecord("AB1");
  application.desktop.defaults.setObject(false, settings::AutoSave);
  application.controller.cacheDatabaseFiles();
  EXPECT_EQ(status(), "");
  application.turnOn(settings::AutoSave);
  application.pass(60);
  EXPECT_TRUE(names().isEmpty()) << "a scan that did not run repeats nothing";
}

TEST_F(DatabaseFileCache, TakesSavesWhileAutoSaveIsOff) {
  application.desktop.defaults.setObject(false, settings::AutoSave);
  application.controller.addToCachedDatabaseFiles("AB1.rec");
  EXPECT_EQ(names(), QStringList{"AB1"});
}

TEST_F(DatabaseFileCache, HoldsPathsRelativeToTheFolder) {
  writeFile(application.saveFolder() + "/Smith.rec", "x");
  writeFile(application.saveFolder() + "/old/Jones.rec", "x");
  writeFile(application.saveFolder() + "/Brown.txt", "x");
  application.controller.cacheDatabaseFiles();
  EXPECT_EQ(names(), (QStringList{"Smith", "old/Jones"}));
  EXPECT_TRUE(application.controller.fileIsInCachedDatabaseFiles("Smith"));
  EXPECT_TRUE(application.controller.fileIsInCachedDatabaseFiles("old/Jones"));
  EXPECT_FALSE(application.controller.fileIsInCachedDatabaseFiles("Jones"));
  EXPECT_FALSE(application.controller.fileIsInCachedDatabaseFiles("smith"));
}

TEST_F(DatabaseFileCache, ListsHiddenEntriesAndFoldersToo) {
  writeFile(application.saveFolder() + "/.hidden/AB1.rec", "x");
  writeFile(application.saveFolder() + "/.AB2.rec", "x");
  application.home.makeFolder("Records/AB3.rec");
  writeFile(application.saveFolder() + "/rec", "no extension");
  writeFile(application.saveFolder() + "/.rec", "no extension either");
  application.controller.cacheDatabaseFiles();
  EXPECT_EQ(names(), (QStringList{".AB2", ".hidden/AB1", "AB3"}));
}

TEST_F(DatabaseFileCache, TakesOnlyTheExactExtension) {
  writeFile(application.saveFolder() + "/AB1.REC", "x");
  writeFile(application.saveFolder() + "/AB2.records", "x");
  writeFile(application.saveFolder() + "/AB3.v2.rec", "x");
  application.controller.cacheDatabaseFiles();
  EXPECT_EQ(names(), QStringList{"AB3.v2"});
}

TEST_F(DatabaseFileCache, FindsNothingWithoutAnExtensionInTheSettings) {
  writeFile(application.saveFolder() + "/AB1.rec", "x");
  writeFile(application.saveFolder() + "/AB2", "x");
  writeFile(application.saveFolder() + "/AB3.", "x");
  application.desktop.defaults.registerDefaults({{settings::DataFileExtension, QVariant()}});
  application.controller.cacheDatabaseFiles();
  EXPECT_TRUE(names().isEmpty());
}

TEST_F(DatabaseFileCache, LooksAgainEveryTenSecondsWhileTheFolderIsEmpty) {
  application.controller.cacheDatabaseFiles();
  for (int round = 0; round < 3; ++round) {
    EXPECT_EQ(status(), "Caching database...");
    application.pass(0.9);
    EXPECT_EQ(status(), "Caching database...");
    application.pass(0.1);
    EXPECT_EQ(status(), "");
    application.pass(8.9);
    EXPECT_EQ(status(), "");
    application.pass(0.1);
  }
  EXPECT_EQ(status(), "Caching database...");
}

TEST_F(DatabaseFileCache, LooksAgainWhileTheFolderIsMissing) {
  QDir(application.saveFolder()).removeRecursively();
  application.controller.cacheDatabaseFiles();
  application.pass(9);
  application.writeRecord("AB1");
  EXPECT_TRUE(names().isEmpty());
  application.pass(1);
  EXPECT_EQ(names(), QStringList{"AB1"});
}

TEST_F(DatabaseFileCache, StopsLookingOnceAScanHasFoundSomething) {
  application.writeRecord("AB1");
  application.controller.cacheDatabaseFiles();
  application.pass(1);
  application.writeRecord("AB2");
  application.pass(60);
  EXPECT_EQ(names(), QStringList{"AB1"});
  EXPECT_EQ(status(), "");
}

TEST_F(DatabaseFileCache, EndsItsRetriesWhenADocumentHasBeenSaved) {
  application.controller.cacheDatabaseFiles();
  application.controller.addToCachedDatabaseFiles("AB1.rec");
  // The retry that is under way still runs, and is the last one.
  application.pass(10);
  EXPECT_EQ(status(), "Caching database...");
  application.pass(1);
  EXPECT_EQ(status(), "");
  application.pass(9);
  EXPECT_EQ(status(), "");
}

TEST_F(DatabaseFileCache, EndsItsRetriesWhenAutoSaveIsTurnedOff) {
  application.controller.cacheDatabaseFiles();
  application.pass(5);
  application.desktop.defaults.setObject(false, settings::AutoSave);
  application.pass(5);
  EXPECT_EQ(status(), "");
  application.turnOn(settings::AutoSave);
  application.writeRecord("AB1");
  application.pass(60);
  EXPECT_TRUE(names().isEmpty());
}

TEST_F(DatabaseFileCache, HoldsANameThatIsSavedTwiceOnce) {
  application.controller.addToCachedDatabaseFiles("AB1.rec");
  application.controller.addToCachedDatabaseFiles("/elsewhere/AB1.rec");
  EXPECT_EQ(names(), QStringList{"AB1"});
}

TEST_F(DatabaseFileCache, TakesTheLastComponentOfASavedPathWithoutWhateverExtension) {
  application.controller.addToCachedDatabaseFiles("/a/b.c/AB1.rec");
  application.controller.addToCachedDatabaseFiles("AB2.txt");
  application.controller.addToCachedDatabaseFiles("AB3");
  EXPECT_EQ(names(), (QStringList{"AB1", "AB2", "AB3"}));
}

TEST_F(DatabaseFileCache, AddsWhatAScanFindsToWhatItHolds) {
  application.writeRecord("AB1");
  application.controller.addToCachedDatabaseFiles("AB1.rec");
  application.controller.cacheDatabaseFiles();
  EXPECT_EQ(names(), (QStringList{"AB1", "AB1"}));
}
