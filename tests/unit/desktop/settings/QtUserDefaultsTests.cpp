// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/settings/QtUserDefaults.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimeZone>

#include "testing/files/EnvironmentVariable.h"
#include "testing/files/Files.h"
#include "testing/main/Shown.h"
#include "testing/standins/LogRecorder.h"
#include "testing/standins/VirtualRunLoop.h"

using velmora::desktop::QtUserDefaults;
using velmora::platform::distantPast;

namespace {

/// Settings in a configuration folder of each test's own.
class StoredUserDefaults : public testing::Test {
 protected:
  QString file() const { return folder.path() + "/org.velmora.tests.conf"; }
  QByteArray stored() const { return velmora::testkit::readFile(file()); }

  QTemporaryDir folder;
  velmora::testkit::VirtualRunLoop clock;

 private:
  velmora::testkit::EnvironmentVariable configuration_{"XDG_CONFIG_HOME", QFile::encodeName(folder.path())};
};

TEST_F(StoredUserDefaults, SurviveTheObjectThatStoredThem) {
  const QDateTime date(QDate(2024, 5, 2), QTime(8, 30, 15, 250), QTimeZone::utc());
  {
    QtUserDefaults defaults("org.velmora.tests", clock);
    defaults.setObject(true, "Auto Save");
    defaults.setObject(false, "Auto Delete");
    defaults.setInteger(31, "Version Check Interval");
    defaults.setObject(QStringLiteral("~/Documents/Größe & Gewicht, 100% \"neu\""), "Save Directory");
    defaults.setObject(date, "Last Version Check Date");
  }
  const QtUserDefaults defaults("org.velmora.tests", clock);
  EXPECT_TRUE(defaults.boolForKey("Auto Save"));
  EXPECT_FALSE(defaults.boolForKey("Auto Delete"));
  EXPECT_EQ(defaults.integerForKey("Version Check Interval"), 31);
  EXPECT_EQ(defaults.stringForKey("Version Check Interval"), "31");
  EXPECT_EQ(defaults.stringForKey("Save Directory"),
            QStringLiteral("~/Documents/Größe & Gewicht, 100% \"neu\""));
  EXPECT_EQ(defaults.dateForKey("Last Version Check Date"), date);
}

TEST_F(StoredUserDefaults, GiveEveryTextBackAsItWas) {
  const QStringList texts{"",
                          " ",
                          "a, b; c",
                          "first\nsecond\r\n\tthird",
                          "@ByteArray(x)",
                          "@Date",
                          "\"quoted\"",
                          "C:\\back\\slash",
                          "#comment = [section]",
                          QStringLiteral("身長 µ 😀"),
                          "%1 %20",
                          "~/Desktop/",
                          "true",
                          "7"};
  for (const QString& text : texts) {
    QtUserDefaults("org.velmora.tests", clock).setObject(text, "Launch Script");
    const QString read = QtUserDefaults("org.velmora.tests", clock).stringForKey("Launch Script");
    EXPECT_EQ(read, text);
    EXPECT_FALSE(read.isNull());
  }
}

TEST_F(StoredUserDefaults, GiveTheSameThroughTheObjectThatStoredThem) {
  QtUserDefaults defaults("org.velmora.tests", clock);
  defaults.setObject(distantPast(), "Last Version Check Date");
  defaults.setObject(true, "Auto Save");
  defaults.setInteger(7, "Batch Export Days");
  EXPECT_EQ(defaults.dateForKey("Last Version Check Date"), distantPast());
  EXPECT_TRUE(defaults.boolForKey("Auto Save"));
  EXPECT_EQ(defaults.integerForKey("Batch Export Days"), 7);
}

TEST_F(StoredUserDefaults, TellTheStoredDistantPastByEquality) {
  QtUserDefaults("org.velmora.tests", clock).setObject(distantPast(), "Last Version Check Date");
  EXPECT_EQ(QtUserDefaults("org.velmora.tests", clock).dateForKey("Last Version Check Date"), distantPast());
}

TEST_F(StoredUserDefaults, StoreAPointInTimeWhateverTheTimeZone) {
  const QDateTime inBerlin(QDate(2024, 7, 1), QTime(0, 30), QTimeZone("Europe/Berlin"));
  QtUserDefaults("org.velmora.tests", clock).setObject(inBerlin, "Last Version Check Date");
  EXPECT_TRUE(stored().contains("2024-06-30T22:30:00.000Z")) << stored().constData();
  EXPECT_EQ(QtUserDefaults("org.velmora.tests", clock).dateForKey("Last Version Check Date"), inBerlin);
}

TEST_F(StoredUserDefaults, HoldNothingThatWasOnlyRegistered) {
  QtUserDefaults defaults("org.velmora.tests", clock);
  defaults.registerDefaults({{"Export Directory", "~/Desktop/"}, {"Batch Export Days", "7"}});
  EXPECT_EQ(defaults.integerForKey("Batch Export Days"), 7);
  defaults.setObject(true, "Auto Save");
  EXPECT_TRUE(stored().contains("Auto")) << stored().constData();
  EXPECT_FALSE(stored().contains("Export")) << stored().constData();
  EXPECT_FALSE(QtUserDefaults("org.velmora.tests", clock).objectForKey("Batch Export Days").isValid());
}

TEST_F(StoredUserDefaults, OverrideWhatIsRegistered) {
  QtUserDefaults("org.velmora.tests", clock).setObject(QStringLiteral(""), "Launch Script");
  QtUserDefaults defaults("org.velmora.tests", clock);
  defaults.registerDefaults({{"Launch Script", "beep"}});
  EXPECT_EQ(defaults.stringForKey("Launch Script"), "");
}

TEST_F(StoredUserDefaults, OverrideWhatIsRegisteredWithAnEmptyTextNullOrNot) {
  const auto saveFolder = [](QtUserDefaults& defaults) {
    defaults.registerDefaults({{"Save Directory", "~/Desktop/"}});
    return defaults.stringForKey("Save Directory");
  };
  for (const QString& empty : {QString(), QString("")}) {
    QtUserDefaults first("org.velmora.tests", clock);
    QtUserDefaults second("org.velmora.tests", clock);
    first.setObject("/records", "Save Directory");
    EXPECT_EQ(saveFolder(second), "/records");
    first.setObject(empty, "Save Directory");
    QtUserDefaults third("org.velmora.tests", clock);
    for (QtUserDefaults* each : {&first, &second, &third}) EXPECT_EQ(saveFolder(*each), "");
  }
}

TEST_F(StoredUserDefaults, OverrideWhatIsRegisteredWithAKeyThatAPersonHasEmptied) {
  QFile settings(file());
  ASSERT_TRUE(settings.open(QIODevice::WriteOnly));
  settings.write("[General]\nSave%20Directory=\n");
  settings.close();
  QtUserDefaults defaults("org.velmora.tests", clock);
  defaults.registerDefaults({{"Save Directory", "~/Desktop/"}});
  EXPECT_EQ(defaults.stringForKey("Save Directory"), "");
}

TEST_F(StoredUserDefaults, ShowWhatAnotherProcessWrites) {
  QtUserDefaults defaults("org.velmora.tests", clock);
  defaults.registerDefaults({{"Save Directory", "~/Desktop/"}});
  EXPECT_EQ(defaults.stringForKey("Save Directory"), "~/Desktop/");
  const auto writeElsewhere = [this](const QString& folderName) {
    return QProcess::execute("/bin/sh", {"-c", R"(printf '[General]\nSave%%20Directory=%s\n' "$1" > "$2")",
                                         "sh", folderName, file()});
  };
  ASSERT_EQ(writeElsewhere("/records"), 0);
  EXPECT_EQ(defaults.stringForKey("Save Directory"), "/records");
  ASSERT_EQ(writeElsewhere("/other/records"), 0);
  EXPECT_EQ(defaults.stringForKey("Save Directory"), "/other/records");
}

TEST_F(StoredUserDefaults, KeepWhatAnotherProcessWroteWhenTheyStore) {
  QtUserDefaults defaults("org.velmora.tests", clock);
  defaults.setObject(true, "Auto Save");
  ASSERT_EQ(QProcess::execute("/bin/sh", {"-c", R"(printf 'Auto%%20Delete=true\n' >> "$1")", "sh", file()}),
            0);
  defaults.setInteger(7, "Batch Export Days");
  const QtUserDefaults again("org.velmora.tests", clock);
  EXPECT_TRUE(again.boolForKey("Auto Delete"));
  EXPECT_TRUE(again.boolForKey("Auto Save"));
  EXPECT_EQ(again.integerForKey("Batch Export Days"), 7);
}

TEST_F(StoredUserDefaults, OfTwoApplicationsAreKeptApart) {
  QtUserDefaults("org.velmora.tests", clock).setObject(true, "Auto Save");
  EXPECT_FALSE(QtUserDefaults("org.velmora.other", clock).boolForKey("Auto Save"));
}

TEST_F(StoredUserDefaults, AreTheUsersAlone) {
  QtUserDefaults("org.velmora.tests", clock).setObject(true, "Auto Save");
  EXPECT_EQ(velmora::testkit::permissionsOf(file()), 0600u);
}

TEST_F(StoredUserDefaults, AreTheUsersAloneInAFileThatWasOpenToOthers) {
  QFile settings(file());
  ASSERT_TRUE(settings.open(QIODevice::WriteOnly));
  settings.close();
  ASSERT_TRUE(settings.setPermissions(settings.permissions() | QFile::ReadGroup | QFile::ReadOther));
  QtUserDefaults("org.velmora.tests", clock).setObject("[\"/records/12.growth\"]", "Recent Documents");
  EXPECT_EQ(velmora::testkit::permissionsOf(file()), 0600u);
}

TEST_F(StoredUserDefaults, LeaveNothingInTheFileOfAValueThatWasReplaced) {
  QtUserDefaults defaults("org.velmora.tests", clock);
  defaults.setObject("[\"/records/12-345.growth\"]", "Recent Documents");
  defaults.setObject("", "Recent Documents");
  EXPECT_FALSE(stored().isEmpty());
  EXPECT_FALSE(stored().contains("12-345"));
}

TEST_F(StoredUserDefaults, ReadADamagedFileAsNothing) {
  QFile settings(file());
  ASSERT_TRUE(settings.open(QIODevice::WriteOnly));
  settings.write(QByteArray("\0\xff\xfe[[[=\n@@@\n", 12));
  settings.close();
  QtUserDefaults defaults("org.velmora.tests", clock);
  EXPECT_FALSE(defaults.boolForKey("Auto Save"));
  defaults.setObject(true, "Auto Save");
  EXPECT_TRUE(QtUserDefaults("org.velmora.tests", clock).boolForKey("Auto Save"));
}

TEST_F(StoredUserDefaults, NameTheCopyOfADamagedFileByTheTimeOfTheRunLoop) {
  const velmora::testkit::LogRecorder log;
  velmora::testkit::writeFile(file(), "[General]\nno sign here\n");
  clock.advance(3600);
  const QtUserDefaults defaults("org.velmora.tests", clock);
  const QString copy = file() + ".damaged-" + clock.now().toUTC().toString("yyyyMMdd-HHmmss");
  EXPECT_EQ(velmora::testkit::readFile(copy), "[General]\nno sign here\n");
}

}  // namespace
