// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include "testing/application/RecordApplication.h"
#include "testing/standins/LogRecorder.h"
#include "velmora/resources/Notifications.h"

using namespace velmora;
using namespace velmora::testkit;

namespace {

class ExportQueue : public testing::Test {
 protected:
  void request(const QString& identifier) {
    application.desktop.notificationCenter.postNotificationName(velmora::notifications::BatchExport,
                                                                QVariantMap{{"Identifier", identifier}});
  }
  /// When each reply left, in seconds from the beginning of the test, and for whom.
  QList<std::pair<double, QString>> sent() const {
    QList<std::pair<double, QString>> all;
    for (const auto& reply : application.replies()) {
      all.append(
          {qRound((reply.time - start) * 1000) / 1000.0, reply.userInfo.value("Identifier").toString()});
    }
    return all;
  }
  RecordApplication application;
  const double start = application.desktop.runLoop.uptime();
  LogRecorder log;
};

using Sent = QList<std::pair<double, QString>>;

const QStringList Arrival{"Batch export to osirix", "Initialise delayed batch export"};
const QStringList Sending{"Delayed batch export", "Sending notification to OsiriX plugin",
                          "Queue next delayed batch export"};
const QStringList Ending{"Delayed batch export", "Zero items in array, exiting"};

}  // namespace

TEST_F(ExportQueue, SendsALoneExportAfterOneSecondAndNeverAtOnce) {
  request("A");
  application.settle();
  EXPECT_TRUE(sent().isEmpty());
  application.pass(0.999);
  EXPECT_TRUE(sent().isEmpty());
  application.pass(0.001);
  EXPECT_EQ(sent(), (Sent{{1, "A"}}));
  application.pass(60);
  EXPECT_EQ(sent().size(), 1);
}

TEST_F(ExportQueue, WritesTheLogOfALoneExport) {
  request("A");
  EXPECT_EQ(log.lines(), Arrival);
  application.pass(0.999);
  EXPECT_EQ(log.lines(), Arrival);
  application.pass(0.001);
  EXPECT_EQ(log.lines(), Arrival + Sending);
  application.pass(3.999);
  EXPECT_EQ(log.lines(), Arrival + Sending);
  application.pass(0.001);
  EXPECT_EQ(log.lines(), Arrival + Sending + Ending);
  application.pass(600);
  EXPECT_EQ(log.lines(), Arrival + Sending + Ending);
}

TEST_F(ExportQueue, SendsFiveExportsFourSecondsApart) {
  for (const char* identifier : {"A", "B", "C", "D", "E"}) request(identifier);
  EXPECT_EQ(application.controller.exportToOsirixArray().size(), 5);
  application.pass(20.999);
  EXPECT_EQ(sent(), (Sent{{1, "A"}, {5, "B"}, {9, "C"}, {13, "D"}, {17, "E"}}));
  const QStringList again{"Batch export to osirix"};
  const QStringList untilLast =
      Arrival + again + again + again + again + Sending + Sending + Sending + Sending + Sending;
  EXPECT_EQ(log.lines(), untilLast);
  application.pass(0.001);
  EXPECT_EQ(log.lines(), untilLast + Ending) << "the chain ends at 21 seconds";
  EXPECT_TRUE(application.controller.exportToOsirixArray().isEmpty());
}

TEST_F(ExportQueue, KeepsToTheSpacingForAnArrivalWhileOthersWait) {
  request("A");
  request("B");
  application.pass(2);
  request("C");
  EXPECT_FALSE(log.lines().endsWith("Initialise delayed batch export"));
  application.pass(30);
  EXPECT_EQ(sent(), (Sent{{1, "A"}, {5, "B"}, {9, "C"}}));
}

TEST_F(ExportQueue, StartsASecondChainForAnArrivalAtAnEmptyQueue) {
  request("A");
  application.pass(4.5);  // sent at 1; the step that would end the chain comes at 5
  log.clear();
  request("B");
  request("C");
  request("D");
  EXPECT_EQ(log.lines(), Arrival + QStringList({"Batch export to osirix", "Batch export to osirix"}));
  application.pass(30);
  EXPECT_EQ(sent(), (Sent{{1, "A"}, {5, "B"}, {5.5, "C"}, {9, "D"}})) << "both chains send";
  EXPECT_EQ(log.lines().count("Zero items in array, exiting"), 2) << "and both end";
}

TEST_F(ExportQueue, StartsAfreshAfterTheChainHasEnded) {
  request("A");
  application.pass(5);
  log.clear();
  request("B");
  EXPECT_EQ(log.lines(), Arrival);
  application.pass(10);
  EXPECT_EQ(sent(), (Sent{{1, "A"}, {6, "B"}}));
}

TEST_F(ExportQueue, SendsThePayloadAsItCameUnderTheNameOfTheApplication) {
  const QVariantMap payload{{"Identifier", "A"}, {"JPEG", QByteArray("picture")}, {"OsiriXStudyID", 17}};
  application.desktop.notificationCenter.postNotificationName(velmora::notifications::BatchExport, payload);
  application.pass(1);
  ASSERT_EQ(application.replies().size(), 1);
  EXPECT_EQ(application.replies().first().name, "org.velmora.recorder.osirixLink");
  EXPECT_EQ(application.replies().first().object, "OsirixLinkReturn");
  EXPECT_EQ(application.replies().first().userInfo, payload);
}

TEST_F(ExportQueue, RemovesWhatItHasSentWhetherOrNotAnybodyListens) {
  request("A");
  request("B");
  application.pass(1);
  ASSERT_EQ(application.controller.exportToOsirixArray().size(), 1);
  EXPECT_EQ(application.controller.exportToOsirixArray().first().value("Identifier"), QVariant("B"));
}

TEST_F(ExportQueue, WaitsWhileAnAlertIsOpen) {
  request("A");
  const platform::Alert notice{"Notice", "OK", "", "", ""};
  application.desktop.alerts.expect(notice, platform::AlertDefaultReturn, [&] { application.pass(10); });
  application.desktop.alerts.runModal(notice);
  EXPECT_TRUE(sent().isEmpty());
  application.settle();
  EXPECT_EQ(sent(), (Sent{{10, "A"}}));
}

TEST_F(ExportQueue, SaysAtTheEndHowManyChartsAreNotSent) {
  for (const char* identifier : {"A", "B", "C"}) request(identifier);
  application.pass(1);
  log.clear();
  application.controller.applicationWillTerminate();
  EXPECT_EQ(log.lines(), QStringList{"Charts that waited for OsiriX and are not sent: 2"});
  log.clear();
  application.controller.applicationWillTerminate();
  EXPECT_EQ(log.lines(), QStringList()) << "none wait any more";
}
