// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include <QLabel>

#include "link/protocol/LinkProtocol.h"
#include "testing/application/RecordApplication.h"
#include "testing/standins/LogRecorder.h"
#include "velmora/about/AboutController.h"
#include "velmora/resources/Notifications.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;
using namespace velmora::testkit;

namespace settings = velmora::settings;

namespace {

void launch(RecordApplication& application) {
  application.desktop.defaults.setInteger(31, settings::VersionCheckInterval);
  application.controller.applicationDidFinishLaunching();
}

/// The application says where its newer versions would be announced.
void giveAFeed(RecordApplication& application) {
  QVariantMap information = recorderInformation();
  information.insert("SUFeedURL", "https://recorder.example/feed");
  application.desktop.mainBundle = platform::Bundle(information, {});
}

QString status(RecordApplication& application) {
  return application.controller.aboutController()->outlet<QLabel>("statusField")->text();
}

}  // namespace

TEST(Start, ShowsTheSplashAndClosesItAfterThreeSeconds) {
  RecordApplication application;
  launch(application);
  const QWidget* splash = application.controller.aboutController()->window();
  EXPECT_TRUE(splash->isVisible());
  application.pass(2.9);
  EXPECT_TRUE(splash->isVisible());
  application.pass(0.1);
  EXPECT_FALSE(splash->isVisible());
}

TEST(Start, FillsTheCacheOneAndAHalfSecondsAfterTheSplash) {
  RecordApplication application;
  application.writeRecord("AB1");
  application.turnOn(settings::AutoSave);
  launch(application);
  application.pass(1.49);
  EXPECT_EQ(status(application), "");
  EXPECT_TRUE(application.controller.cachedDatabaseArray().isEmpty());
  application.pass(0.01);
  EXPECT_EQ(status(application), "Caching database...");
  EXPECT_EQ(application.controller.cachedDatabaseArray(), QStringList{"AB1"});
  application.pass(0.9);
  EXPECT_EQ(status(application), "Caching database...");
  application.pass(0.1);
  EXPECT_EQ(status(application), "");
}

TEST(Start, RunsTheScriptHalfASecondAfterTheSplash) {
  RecordApplication application;
  application.desktop.defaults.setObject("echo hello", settings::LaunchScript);
  launch(application);
  application.pass(0.49);
  EXPECT_EQ(application.desktop.scripts.executed, QStringList());
  application.pass(0.01);
  EXPECT_EQ(application.desktop.scripts.executed, QStringList{"echo hello"});
  application.pass(60);
  EXPECT_EQ(application.desktop.scripts.executed.size(), 1);
}

TEST(Start, LooksForANewVersionTwoSecondsAfterTheSplash) {
  RecordApplication application;
  giveAFeed(application);
  application.turnOn(settings::AutomaticVersionCheck);
  launch(application);
  application.pass(1.99);
  EXPECT_TRUE(application.desktop.web.requests().isEmpty());
  application.pass(0.01);
  EXPECT_EQ(application.desktop.web.requests().size(), 1);
}

TEST(Start, AsksTheWebNothingBeforeTheUserHasAgreed) {
  RecordApplication application;
  giveAFeed(application);
  launch(application);
  application.pass(60);
  EXPECT_TRUE(application.desktop.web.requests().isEmpty());
}

TEST(Start, RunsScriptCacheAndCheckInThisOrder) {
  RecordApplication application;
  giveAFeed(application);
  application.writeRecord("AB1");
  application.turnOn(settings::AutoSave);
  application.turnOn(settings::AutomaticVersionCheck);
  application.desktop.defaults.setObject("echo hello", settings::LaunchScript);
  launch(application);
  const auto done = [&application] {
    return QList<qsizetype>{application.desktop.scripts.executed.size(),
                            application.controller.cachedDatabaseArray().size(),
                            application.desktop.web.requests().size()};
  };
  EXPECT_EQ(done(), (QList<qsizetype>{0, 0, 0}));
  application.pass(0.5);
  EXPECT_EQ(done(), (QList<qsizetype>{1, 0, 0}));
  EXPECT_EQ(status(application), "Running startup script...");
  application.pass(1);
  EXPECT_EQ(done(), (QList<qsizetype>{1, 1, 0}));
  EXPECT_EQ(status(application), "Caching database...");
  application.pass(0.5);
  EXPECT_EQ(done(), (QList<qsizetype>{1, 1, 1}));
  EXPECT_EQ(status(application), "Checking for new version...");
}

TEST(Start, WaitsWithTheCacheWhileAnAlertIsOpen) {
  RecordApplication application;
  application.writeRecord("AB1");
  application.turnOn(settings::AutoSave);
  launch(application);
  const platform::Alert notice{"Notice", "OK", "", "", ""};
  application.desktop.alerts.expect(notice, platform::AlertDefaultReturn, [&] {
    application.pass(5);
    EXPECT_TRUE(application.controller.cachedDatabaseArray().isEmpty());
  });
  application.desktop.alerts.runModal(notice);
  application.settle();
  EXPECT_EQ(application.controller.cachedDatabaseArray(), QStringList{"AB1"});
}

TEST(Start, OffersNoPluginWhileOsirixIsNotThere) {
  RecordApplication application;
  application.turnOn(settings::ExportToOsiriX);
  launch(application);
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty());
}

TEST(End, HearsNoRequestAnyMore) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  EXPECT_EQ(application.desktop.distributedCenter.observerCount(), 1);
  application.controller.applicationWillTerminate();
  EXPECT_EQ(application.desktop.distributedCenter.observerCount(), 0);
  application.chooseStudy(study("AB1"));
  EXPECT_EQ(document.identifier(), "");
}

TEST(End, HearsNoLocalNotificationAnyMore) {
  RecordApplication application;
  application.controller.applicationWillTerminate();
  application.desktop.notificationCenter.postNotificationName(velmora::notifications::BatchExport,
                                                              QVariantMap{{"Identifier", "A"}});
  application.desktop.notificationCenter.postNotificationName(velmora::notifications::BatchOpen,
                                                              QString("/nowhere"));
  EXPECT_TRUE(application.controller.exportToOsirixArray().isEmpty());
  EXPECT_TRUE(application.controller.batchArray().isEmpty());
}

TEST(End, HearsNoResultOfAVersionCheckAnyMore) {
  RecordApplication application;
  giveAFeed(application);
  application.turnOn(settings::AutomaticVersionCheck);
  launch(application);
  application.pass(2);
  ASSERT_EQ(application.desktop.web.requests().size(), 1);
  const QVariantMap stored = application.desktop.defaults.stored();
  application.controller.applicationWillTerminate();
  application.desktop.web.answer(QByteArray("<rss><channel/></rss>"));
  application.settle();
  EXPECT_EQ(application.desktop.defaults.stored(), stored);
  EXPECT_EQ(status(application), "Checking for new version...");
}

TEST(End, EmptiesTheListsAndLeavesDocumentsAndSettingsAlone) {
  RecordApplication application;
  application.keepRecord("AB1");
  application.newRecord();
  application.desktop.notificationCenter.postNotificationName(velmora::notifications::BatchExport,
                                                              QVariantMap{{"Identifier", "A"}});
  const QVariantMap stored = application.desktop.defaults.stored();
  application.controller.applicationWillTerminate();
  EXPECT_TRUE(application.controller.exportToOsirixArray().isEmpty());
  EXPECT_TRUE(application.controller.batchArray().isEmpty());
  EXPECT_TRUE(application.controller.cachedDatabaseArray().isEmpty());
  EXPECT_EQ(application.controller.documents().size(), 1);
  EXPECT_EQ(application.desktop.defaults.stored(), stored);

  const LogRecorder log;
  application.pass(1);
  EXPECT_TRUE(application.replies().isEmpty());
  EXPECT_EQ(log.lines(), (QStringList{"Delayed batch export", "Zero items in array, exiting"}));
}
