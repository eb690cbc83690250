// SPDX-License-Identifier: LGPL-3.0-or-later
//
// The progress window after a batch export: it counts down the charts that wait to be sent to OsiriX.
#include <QTest>
#include "tests/unit/velmora/batch/BatchTesting.h"
#include "velmora/resources/Notifications.h"

using namespace velmora::testkit;

namespace settings = velmora::settings;
using batch_testing::BatchExport;

namespace {

class WaitingCharts : public BatchExport {
 protected:
  void SetUp() override { application.turnOn(settings::ExportToOsiriX); }
  void exportRecords(const QStringList& names) {
    for (const QString& name : names) write(name, 60);
    exportDays("7");
  }
  /// A single chart, exported by the user.
  void exportOne() {
    application.desktop.notificationCenter.postNotificationName(velmora::notifications::BatchExport,
                                                                QVariantMap{{"Identifier", "single"}});
  }
  QString status() { return progressText("statusField"); }
  std::pair<int, int> bar() {
    const auto* bar = progress()->findChild<QProgressBar*>("progressBar");
    return {bar->value(), bar->maximum()};
  }
};

using Bar = std::pair<int, int>;

}  // namespace

TEST_F(WaitingCharts, AreCountedDownUntilTheLastHasBeenSent) {
  exportRecords({"A", "B", "C"});
  ASSERT_TRUE(progressShown());
  EXPECT_EQ(status(), "3 charts wait to be sent to OsiriX");
  EXPECT_EQ(bar(), Bar(0, 3));
  EXPECT_EQ(progressText("fileField"), "");
  application.pass(1);
  EXPECT_EQ(status(), "2 charts wait to be sent to OsiriX");
  EXPECT_EQ(bar(), Bar(1, 3));
  application.pass(4);
  EXPECT_EQ(status(), "One chart waits to be sent to OsiriX");
  EXPECT_EQ(bar(), Bar(2, 3));
  application.pass(3.999);
  EXPECT_TRUE(progressShown());
  application.pass(0.001);
  EXPECT_EQ(application.replies().size(), 3);
  EXPECT_FALSE(progressShown());
}

TEST_F(WaitingCharts, LeaveTheUserFreeToWork) {
  exportRecords({"A", "B"});
  ASSERT_TRUE(progressShown());
  EXPECT_EQ(progress()->windowModality(), Qt::NonModal);
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
  EXPECT_FALSE(application.desktop.runLoop.inModalSession());
  RecordingDocument& document = application.newRecord();
  user::enter(user::field(document, "referenceIDField"), "next");
  EXPECT_EQ(document.identifier(), "NEXT");
  EXPECT_TRUE(progressShown());
}

TEST_F(WaitingCharts, AreTakenToTheEndByTheWindowWhereItStood) {
  QPoint place;
  betweenFiles([&] {
    progress()->move(40, 60);
    place = progress()->pos();
  });
  exportRecords({"A", "B"});
  ASSERT_TRUE(progressShown());
  EXPECT_EQ(progress()->pos(), place);
}

TEST_F(WaitingCharts, IncludeThoseThatTheUserExportsMeanwhile) {
  exportRecords({"A", "B"});
  application.pass(1);
  EXPECT_EQ(bar(), Bar(1, 2));
  exportOne();
  EXPECT_EQ(status(), "2 charts wait to be sent to OsiriX");
  EXPECT_EQ(bar(), Bar(1, 3));
  application.pass(4);
  EXPECT_EQ(status(), "One chart waits to be sent to OsiriX");
  EXPECT_TRUE(progressShown());
  application.pass(4);
  EXPECT_FALSE(progressShown());
}

TEST_F(WaitingCharts, IncludeThoseThatWaitedBefore) {
  exportOne();
  exportOne();
  exportRecords({"A"});
  EXPECT_EQ(status(), "3 charts wait to be sent to OsiriX");
  EXPECT_EQ(bar(), Bar(0, 3));
  application.pass(9);
  EXPECT_FALSE(progressShown());
}

TEST_F(WaitingCharts, ThatWaitBeforeTheWindowIsFirstMadeCountToo) {
  exportOne();
  exportOne();
  open();
  EXPECT_FALSE(progressShown());
  user::click(cancel());
  EXPECT_FALSE(progressShown());
  exportRecords({"A"});
  EXPECT_EQ(status(), "3 charts wait to be sent to OsiriX");
}

TEST_F(WaitingCharts, ThatTheUserExportsSinglyShowNoWindow) {
  exportRecords({"A"});
  application.pass(1);
  ASSERT_FALSE(progressShown());
  exportOne();
  EXPECT_FALSE(progressShown());
  application.pass(10);
  EXPECT_FALSE(progressShown());
}

class ClosingWaitingCharts : public WaitingCharts, public testing::WithParamInterface<const char*> {};

TEST_P(ClosingWaitingCharts, KeepsTheWindowAwayUntilTheNextBatch) {
  exportRecords({"A", "B"});
  ASSERT_TRUE(progressShown());
  progress()->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(progress()));
  const std::string way = GetParam();
  if (way == "Button") {
    EXPECT_EQ(stopButton()->text(), "Close");
    user::click(stopButton());
  }
  if (way == "Escape") QTest::keyClick(progress(), Qt::Key_Escape);
  if (way == "CloseBox") progress()->close();
  if (way == "CloseKey") QTest::keyClick(progress(), Qt::Key_W, Qt::ControlModifier);
  EXPECT_FALSE(progressShown());
  exportOne();
  application.pass(1);
  EXPECT_FALSE(progressShown());
  EXPECT_EQ(application.replies().size(), 1) << "the charts are sent all the same";
  batch().doBatchExport();
  EXPECT_TRUE(progressShown());
  EXPECT_EQ(status(), "4 charts wait to be sent to OsiriX");
  EXPECT_EQ(stopButton()->text(), "Close");
  EXPECT_EQ(bar(), Bar(0, 4));
}

INSTANTIATE_TEST_SUITE_P(EachWay, ClosingWaitingCharts,
                         testing::Values("Button", "Escape", "CloseBox", "CloseKey"),
                         [](const auto& way) { return std::string(way.param); });

TEST_F(WaitingCharts, GiveWayToTheNextBatchAndComeBackAfterIt) {
  exportRecords({"A", "B"});
  ASSERT_TRUE(progressShown());
  int turns = 0;
  betweenFiles([&] {
    ++turns;
    EXPECT_EQ(progress()->windowModality(), Qt::ApplicationModal);
    EXPECT_EQ(status(), QString("Exporting %1 of 2").arg(turns));
    EXPECT_EQ(stopButton()->text(), "Stop");
  });
  exportDays("7");
  EXPECT_EQ(turns, 2);
  EXPECT_EQ(progress()->windowModality(), Qt::NonModal);
  EXPECT_EQ(status(), "4 charts wait to be sent to OsiriX");
}

TEST_F(WaitingCharts, ShowNoWindowWhereEachGoesToTheExportFolder) {
  store(settings::ExportToOsiriX, false);
  exportRecords({"A"});
  EXPECT_FALSE(progressShown());
}
