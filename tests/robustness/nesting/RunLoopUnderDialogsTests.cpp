// SPDX-License-Identifier: LGPL-3.0-or-later
//
// What falls due under a real alert or panel waits, and then runs in order.
#include <gtest/gtest.h>

#include <QPushButton>
#include <thread>

#include "testing/desktop/DesktopApplication.h"
#include "testing/standins/TestServices.h"
#include "testing/waiting/Waiting.h"
#include "testing/window/DialogAnswers.h"

using namespace velmora;
using namespace velmora::testkit;

using velmora::platform::Alert;

namespace {

const Alert Question{QStringLiteral("Question?"), QStringLiteral("Yes"), QStringLiteral("No"), {}, {}};
const Alert Second{QStringLiteral("Second?"), QStringLiteral("Yes"), QStringLiteral("No"), {}, {}};

}  // namespace

class RealDialogs : public ::testing::Test {
 protected:
  /// Three calls of different kinds, the last of them due first.
  void makeCalls() {
    platform::RunLoop& runLoop = desktop_.runLoop;
    runLoop.performAfterDelay(&owner_, 0.4, [this] { ran_.append(QStringLiteral("0.4")); });
    runLoop.performAfterDelay(&owner_, 0.2, [this] { ran_.append(QStringLiteral("0.2")); });
    std::thread other(
        [&] { runLoop.performOnMainThread(&owner_, [this] { ran_.append(QStringLiteral("handed")); }); });
    other.join();
    runLoop.performAfterDelay(&owner_, 0, [this] { ran_.append(QStringLiteral("0")); });
  }
  /// All that was made is due now, and would have run.
  void waitUntilDue() {
    const double due = desktop_.runLoop.uptime() + 0.5;
    waitUntil([&] { return desktop_.runLoop.uptime() > due; });
    letEventsPass();
  }
  void expectAllRanInOrder() {
    waitUntil([&] { return ran_.size() >= 4; });
    EXPECT_EQ(ran_, (QStringList{QStringLiteral("handed"), QStringLiteral("0"), QStringLiteral("0.2"),
                                 QStringLiteral("0.4")}));
  }

  TestDesktop<RealParts> desktop_{{}};
  DialogAnswers answers_;
  QObject owner_;
  QStringList ran_;
};

TEST_F(RealDialogs, HoldTimedCallsAndHandOffsUntilAnAlertCloses) {
  answers_.expect(
      Question.messageText,
      [&] {
        makeCalls();
        waitUntilDue();
        EXPECT_EQ(ran_, QStringList());
      },
      QStringLiteral("Yes"));
  EXPECT_EQ(desktop_.alerts.runModal(Question), platform::AlertDefaultReturn);
  EXPECT_EQ(ran_, QStringList());  // after the event, never within it
  expectAllRanInOrder();
}

TEST_F(RealDialogs, HoldThemUntilThePanelCloses) {
  platform::SavePanel save;
  save.title = QStringLiteral("Save the chart");
  answers_.expect(
      save.title,
      [&] {
        makeCalls();
        waitUntilDue();
        EXPECT_EQ(ran_, QStringList());
      },
      QStringLiteral("Cancel"));
  EXPECT_EQ(desktop_.panels.runModal(save), platform::PanelCancelButton);
  expectAllRanInOrder();
}

TEST_F(RealDialogs, HoldThemUntilTheOutermostOfNestedAlertsCloses) {
  answers_.expect(
      Question.messageText,
      [&] {
        answers_.expect(
            Second.messageText,
            [&] {
              makeCalls();
              waitUntilDue();
              EXPECT_EQ(ran_, QStringList());
            },
            QStringLiteral("No"));
        EXPECT_EQ(desktop_.alerts.runModal(Second), platform::AlertAlternateReturn);
        waitUntilDue();
        EXPECT_EQ(ran_, QStringList());
      },
      QStringLiteral("Yes"));
  EXPECT_EQ(desktop_.alerts.runModal(Question), platform::AlertDefaultReturn);
  expectAllRanInOrder();
}

TEST_F(RealDialogs, OpenedByATimedCallHoldTheCallsBehindIt) {
  answers_.expect(
      Question.messageText,
      [&] {
        waitUntilDue();
        EXPECT_EQ(ran_, QStringList());
      },
      QStringLiteral("Yes"));
  desktop_.runLoop.performAfterDelay(&owner_, 0, [&] { desktop_.alerts.runModal(Question); });
  makeCalls();
  expectAllRanInOrder();
}

TEST_F(RealDialogs, EndedByTheEndOfTheLoopAnswerWithTheButtonThatChangesLeast) {
  answers_.expect(
      Question.messageText, [] { QApplication::activeModalWidget()->close(); }, QString());
  EXPECT_EQ(desktop_.alerts.runModal(Question), platform::AlertAlternateReturn);
}

TEST_F(RealDialogs, AsSheetsHoldNothing) {
  QWidget window;
  window.show();
  int answer = 99;
  answers_.expect(
      Question.messageText,
      [&] {
        makeCalls();
        expectAllRanInOrder();
      },
      QStringLiteral("Yes"));
  desktop_.alerts.beginSheetModalForWindow(Question, &window, &owner_, [&](int code) { answer = code; });
  waitUntil([&] { return answer == platform::AlertDefaultReturn; });
}

TEST(VirtualDialogs, HoldTimedCallsAndHandOffsWhereverTheyNest) {
  testkit::TestServices desktop({});
  QObject owner;
  QStringList ran;
  desktop.alerts.expect(Question, platform::AlertDefaultReturn, [&] {
    desktop.runLoop.performAfterDelay(&owner, 0.5, [&] { ran.append(QStringLiteral("0.5")); });
    desktop.runLoop.performOnMainThread(&owner, [&] { ran.append(QStringLiteral("handed")); });
    desktop.alerts.expect(Second, platform::AlertAlternateReturn, [&] { desktop.runLoop.advance(10); });
    desktop.alerts.runModal(Second);
    desktop.runLoop.advance(10);
    EXPECT_EQ(ran, QStringList());
  });
  desktop.alerts.runModal(Question);
  EXPECT_EQ(ran, QStringList());
  desktop.runLoop.settle();
  EXPECT_EQ(ran, (QStringList{QStringLiteral("handed"), QStringLiteral("0.5")}));
}
