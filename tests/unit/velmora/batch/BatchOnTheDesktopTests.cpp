// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Batch exports with the real run loop and the real alerts.
#include <QMessageBox>
#include <QPointer>
#include <QTest>

#include "testing/desktop/DesktopApplication.h"
#include "testing/files/Files.h"
#include "testing/waiting/Waiting.h"
#include "testing/window/DialogAnswers.h"
#include "tests/unit/velmora/batch/BatchTesting.h"
#include "velmora/resources/Notifications.h"

using namespace velmora;
using namespace velmora::testkit;

namespace settings = velmora::settings;

namespace {

class BatchOnTheDesktop : public testing::Test {
 protected:
  BatchOnTheDesktop() {
    application.desktop.notificationCenter.addObserver(&observer_, velmora::notifications::BatchOpen,
                                                       [this](const platform::Notification&) {
                                                         ++posts;
                                                         if (whenPosted) whenPosted();
                                                       });
  }
  void writeRecords(const QStringList& names) {
    for (const QString& name : names) application.keepRecord(name);
  }
  void open() {
    application.controller.doBatchExport(nullptr);
    ASSERT_TRUE(QTest::qWaitForWindowActive(batch().window()));
  }
  void exportAll() {
    auto* buttons = batch().window()->findChild<QDialogButtonBox*>();
    user::click(buttons->button(QDialogButtonBox::Ok));
  }
  BatchExportController& batch() { return *application.controller.batchExportController(); }
  QWidget* progress() { return batch().progress().window(); }
  QStringList charts() { return fileNames(application.home.path("Charts")); }

  DesktopApplication application;
  DialogAnswers answers;
  int posts = 0;
  std::function<void()> whenPosted;

 private:
  QObject observer_;
};

/// Counts what a widget is told to paint.
class PaintCounter : public QObject {
 public:
  int paints = 0;

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Paint) ++paints;
    return false;
  }
};

}  // namespace

TEST_F(BatchOnTheDesktop, DrawsHowFarItIsBeforeEachFile) {
  writeRecords({"A", "B", "C"});
  open();
  PaintCounter counter;
  progress()->findChild<QProgressBar*>()->installEventFilter(&counter);
  int before = 0;
  whenPosted = [&] {
    EXPECT_GT(counter.paints, before) << posts;
    before = counter.paints;
  };
  exportAll();
  EXPECT_EQ(posts, 3);
  EXPECT_FALSE(progress()->isVisible());
}

TEST_F(BatchOnTheDesktop, HearsAClickThatComesWhileAFileIsExported) {
  writeRecords({"A", "B", "C", "D"});
  open();
  auto* stop = progress()->findChild<QPushButton*>("stopButton");
  whenPosted = [&] {
    if (posts == 2)
      QMetaObject::invokeMethod(
          stop, [stop] { user::click(stop); }, Qt::QueuedConnection);
  };
  exportAll();
  EXPECT_EQ(posts, 2);
  EXPECT_EQ(charts().size(), 2);
}

TEST_F(BatchOnTheDesktop, LetsNoTimedCallRunBetweenTheFiles) {
  writeRecords({"A", "B", "C"});
  open();
  int ran = 0;
  whenPosted = [&] {
    EXPECT_EQ(ran, 0);
    application.desktop.runLoop.performAfterDelay(&application.controller, 0, [&] { ++ran; });
  };
  exportAll();
  EXPECT_EQ(posts, 3);
  EXPECT_EQ(ran, 0);
  waitUntil([&] { return ran == 3; });
}

TEST_F(BatchOnTheDesktop, ClosesEveryRecordAfterwards) {
  writeRecords({"A", "B", "C"});
  open();
  exportAll();
  EXPECT_EQ(application.controller.documents().size(), 3);
  waitUntil([&] { return application.controller.documents().isEmpty(); });
}

TEST_F(BatchOnTheDesktop, AsksAboveItsProgressAndGoesOn) {
  writeRecords({"A", "B", "C"});
  writeFile(application.home.path("Charts/B.jpg"), "earlier");
  open();
  answers.expect(
      "A file with that name already exists",
      [&] {
        QWidget* alert = QApplication::activeModalWidget();
        EXPECT_NE(dynamic_cast<QMessageBox*>(alert), nullptr);
        EXPECT_TRUE(progress()->isVisible());
        EXPECT_EQ(alert->parentWidget(), progress());
        // It is the alert that hears the keyboard.
        letEventsPass();
        EXPECT_EQ(QApplication::activeWindow(), alert);
      },
      "Skip");
  exportAll();
  EXPECT_EQ(posts, 3);
  EXPECT_EQ(charts(), (QStringList{"A.jpg", "B.jpg", "C.jpg"}));
  EXPECT_EQ(readFile(application.home.path("Charts/B.jpg")), "earlier");
}

TEST_F(BatchOnTheDesktop, IsNotStoppedByTheAnswerToAQuestion) {
  // Escape is the answer Skip, and must not reach the window behind.
  writeRecords({"A", "B"});
  for (const char* name : {"A", "B"}) writeFile(application.home.path("Charts/") + name + ".jpg", "earlier");
  open();
  for (int i = 0; i < 2; ++i) {
    answers.expect(
        "A file with that name already exists",
        [] { QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape); }, "");
  }
  exportAll();
  EXPECT_EQ(posts, 2);
}

TEST_F(BatchOnTheDesktop, KeepsTheKeyboardFromTheRecordsThatItOpens) {
  writeRecords({"A", "B"});
  open();
  int heard = 0;
  whenPosted = [&] {
    QMetaObject::invokeMethod(
        progress(),
        [&] {
          ++heard;
          EXPECT_EQ(QApplication::activeModalWidget(), progress());
        },
        Qt::QueuedConnection);
  };
  exportAll();
  EXPECT_GE(heard, 1);
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}
