// SPDX-License-Identifier: LGPL-3.0-or-later
//
// The window that tells how far a batch export is, while it runs: what it shows, and how it stops.
#include <QTest>
#include "testing/files/Files.h"
#include "tests/unit/velmora/batch/BatchTesting.h"

using namespace velmora;
using namespace velmora::testkit;

namespace settings = velmora::settings;
using batch_testing::BatchExport;

namespace {

class BatchProgressWindow : public BatchExport {
 protected:
  void writeRecords() {
    for (const char* name : {"A", "B", "C", "D"}) write(name, 60);
  }
};

}  // namespace

TEST_F(BatchProgressWindow, TellsHowFarItIsAndWhichFileComesNext) {
  writeRecords();
  QStringList told;
  QStringList files;
  QList<int> done;
  betweenFiles([&] {
    ASSERT_TRUE(progressShown());
    told.append(progressText("statusField"));
    files.append(progressText("fileField"));
    const auto* bar = progress()->findChild<QProgressBar*>("progressBar");
    done.append(bar->value());
    EXPECT_EQ(bar->maximum(), 4);
    EXPECT_EQ(posted.size(), bar->value()) << "each file is named before it is opened";
  });
  exportDays("7");
  EXPECT_EQ(told,
            (QStringList{"Exporting 1 of 4", "Exporting 2 of 4", "Exporting 3 of 4", "Exporting 4 of 4"}));
  EXPECT_EQ(done, (QList<int>{0, 1, 2, 3}));
  QStringList names;
  for (const QString& path : posted) names.append(QFileInfo(path).fileName());
  EXPECT_EQ(files, names);
  EXPECT_FALSE(progressShown());
}

TEST_F(BatchProgressWindow, LetsNothingElseBeDoneMeanwhile) {
  RecordingDocument& document = application.newRecord();
  writeRecords();
  int turns = 0;
  betweenFiles([&] {
    ++turns;
    EXPECT_EQ(QApplication::activeModalWidget(), progress());
    EXPECT_EQ(progress()->windowModality(), Qt::ApplicationModal);
    EXPECT_EQ(stopButton()->text(), "Stop");
    user::type(user::field(document, "referenceIDField"), "typed behind");
  });
  exportDays("7");
  EXPECT_EQ(turns, 4);
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(BatchProgressWindow, ShortensALongNameAndKeepsItsSize) {
  write(QString(180, 'W'), 60);
  write("two\nlines", 60);
  QList<QSize> sizes;
  betweenFiles([&] {
    sizes.append(progress()->size());
    EXPECT_FALSE(progressText("fileField").contains('\n'));
    auto* label = progress()->findChild<QLabel*>("fileField");
    EXPECT_LE(label->fontMetrics().horizontalAdvance(label->text()), label->width());
    EXPECT_FALSE(label->text().isEmpty());
  });
  exportDays("7");
  ASSERT_EQ(sizes.size(), 2);
  EXPECT_EQ(sizes.first(), sizes.last());
  EXPECT_LT(sizes.first().width(), 600);
}

TEST_F(BatchProgressWindow, NamesItsControlsForThoseWhoDoNotSeeThem) {
  writeRecords();
  betweenFiles([&] {
    EXPECT_FALSE(progress()->findChild<QWidget*>("progressBar")->accessibleName().isEmpty());
    // A label's name is what it says; a name of its own would be read out in its place.
    for (const char* name : {"statusField", "fileField"}) {
      const auto* label = progress()->findChild<QLabel*>(QString::fromLatin1(name));
      EXPECT_TRUE(label->accessibleName().isEmpty()) << name;
      EXPECT_FALSE(label->accessibleDescription().isEmpty()) << name;
    }
  });
  exportDays("7");
}

// Stopping.

class StoppingABatchExport : public BatchProgressWindow, public testing::WithParamInterface<const char*> {
 protected:
  void stopIt() {
    ASSERT_TRUE(QTest::qWaitForWindowActive(progress()));
    const std::string way = GetParam();
    if (way == "Button") user::click(stopButton());
    if (way == "Keyboard") QTest::keyClick(stopButton(), Qt::Key_Space);
    if (way == "Escape") QTest::keyClick(progress(), Qt::Key_Escape);
    if (way == "CloseBox") progress()->close();
    if (way == "CloseKey") QTest::keyClick(progress(), Qt::Key_W, Qt::ControlModifier);
  }
};

TEST_P(StoppingABatchExport, EndsAfterTheCurrentFileAndLosesNothing) {
  writeRecords();
  int turn = 0;
  betweenFiles([&] {
    if (++turn == 3) stopIt();
  });
  exportDays("7");
  EXPECT_EQ(turn, 3);
  EXPECT_EQ(posted.size(), 2);
  EXPECT_EQ(charts().size(), 2) << "what was exported stays";
  EXPECT_FALSE(progressShown());
  EXPECT_EQ(application.controller.documents().size(), 2);
  application.pass(1);
  EXPECT_TRUE(application.controller.documents().isEmpty()) << "and is closed as ever";
  application.pass(60);
  EXPECT_EQ(posted.size(), 2);
  // The next one begins anew and goes to its end.
  betweenFiles({});
  for (const QString& chart : charts()) QFile::remove(application.exportFolder() + '/' + chart);
  batch().doBatchExport();
  EXPECT_EQ(charts().size(), 4);
}

TEST_P(StoppingABatchExport, BeforeTheFirstFileExportsNothing) {
  writeRecords();
  betweenFiles([&] { stopIt(); });
  exportDays("7");
  EXPECT_TRUE(posted.isEmpty());
  EXPECT_FALSE(progressShown());
}

TEST_P(StoppingABatchExport, LeavesWhatIsOnItsWayToOsirix) {
  application.turnOn(settings::ExportToOsiriX);
  writeRecords();
  int turn = 0;
  betweenFiles([&] {
    if (++turn == 3) stopIt();
  });
  exportDays("7");
  EXPECT_EQ(application.controller.exportToOsirixArray().size(), 2);
  EXPECT_TRUE(progressShown());
  EXPECT_EQ(progressText("statusField"), "2 charts wait to be sent to OsiriX");
  application.pass(5);
  EXPECT_EQ(application.replies().size(), 2);
}

INSTANTIATE_TEST_SUITE_P(EachWay, StoppingABatchExport,
                         testing::Values("Button", "Keyboard", "Escape", "CloseBox", "CloseKey"),
                         [](const auto& way) { return std::string(way.param); });

TEST_F(BatchProgressWindow, IsNotStoppedByAReturnPressedTwice) {
  writeRecords();
  betweenFiles([&] {
    QWidget* focus = progress()->focusWidget();
    QTest::keyClick(focus ? focus : progress(), Qt::Key_Return);
  });
  exportDays("7");
  EXPECT_EQ(posted.size(), 4);
}

// Alerts and ends in the middle.

TEST_F(BatchProgressWindow, GoesOnAfterTheQuestionOfOneExport) {
  writeRecords();
  writeFile(application.exportFolder() + "/B.jpg", "earlier");
  application.desktop.alerts.expect(
      {"A file with that name already exists", "Overwrite", "Skip", "",
       "A file named 'B.jpg' is already present in '" + application.exportFolder() + "/'."},
      platform::AlertAlternateReturn, [&] { EXPECT_TRUE(progressShown()); });
  exportDays("7");
  EXPECT_EQ(posted.size(), 4);
  EXPECT_EQ(charts(), (QStringList{"A.jpg", "B.jpg", "C.jpg", "D.jpg"}));
  EXPECT_EQ(readFile(application.exportFolder() + "/B.jpg"), "earlier");
  EXPECT_FALSE(progressShown());
}

TEST_F(BatchProgressWindow, EndsWhenTheSessionEndsAndTheQuestionsComeAfterwards) {
  RecordingDocument& edited = application.newRecord();
  edited.setIdentifier("new");
  edited.directUpdateDisplayAndSetDirty(nullptr);
  writeRecords();
  int turn = 0;
  betweenFiles([&] {
    if (++turn == 2) {
      EXPECT_FALSE(application.controller.sessionMayEnd(true));
    }
  });
  exportDays("7");
  EXPECT_EQ(posted.size(), 1);
  EXPECT_FALSE(progressShown());
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty());
  application.desktop.alerts.expect({"Save changes to document?", "Save As...", "Don't Save", "Cancel", ""},
                                    platform::AlertAlternateReturn);
  application.settle();
  EXPECT_EQ(application.desktop.application.stops, 1);
}

TEST_F(BatchProgressWindow, GoesOnWhenTheSessionEndsWithoutAnybodyToAsk) {
  RecordingDocument& edited = application.newRecord();
  edited.setIdentifier("new");
  edited.directUpdateDisplayAndSetDirty(nullptr);
  writeRecords();
  int turn = 0;
  betweenFiles([&] {
    if (++turn == 2) {
      EXPECT_TRUE(application.controller.sessionMayEnd(false));
    }
  });
  exportDays("7");
  EXPECT_EQ(application.rescueCopies().size(), 1);
  EXPECT_EQ(posted.size(), 4);
}

TEST_F(BatchProgressWindow, GoesWithTheApplicationWhileItWaits) {
  application.turnOn(settings::ExportToOsiriX);
  writeRecords();
  exportDays("7");
  ASSERT_TRUE(progressShown());
  application.controller.applicationWillTerminate();
  EXPECT_FALSE(progressShown());
  application.pass(60);
  EXPECT_TRUE(application.replies().isEmpty());
}
