// SPDX-License-Identifier: LGPL-3.0-or-later
#include <memory>

#include "testing/main/Shown.h"
#include "testing/standins/Scripted.h"
#include "testing/standins/VirtualRunLoop.h"

using namespace velmora;

using velmora::platform::Alert;
using velmora::testkit::RecordingDistributedCenter;
using velmora::testkit::ScriptedAlerts;
using velmora::testkit::ScriptedPanels;
using velmora::testkit::VirtualRunLoop;

namespace {

const Alert Question{"Go on?", "Yes", "No", "", "It takes long."};

/// Collects what the stand-ins complain of, which fails every other test.
class StandIns : public testing::Test {
 protected:
  StandIns() {
    testkit::setFailureHandler([this](const QString& what) { complaints.append(what); });
  }
  ~StandIns() override {
    testkit::setFailureHandler([](const QString& what) { ADD_FAILURE() << qPrintable(what); });
  }

  VirtualRunLoop runLoop;
  QStringList complaints;
};

TEST_F(StandIns, AnswerTheExpectedAlert) {
  ScriptedAlerts alerts(runLoop);
  alerts.expect(Question, platform::AlertAlternateReturn);
  EXPECT_FALSE(alerts.allCame());
  EXPECT_EQ(alerts.runModal(Question), platform::AlertAlternateReturn);
  EXPECT_TRUE(alerts.allCame());
  EXPECT_EQ(alerts.shown(), QList<Alert>{Question});
  EXPECT_EQ(complaints, QStringList());
}

TEST_F(StandIns, ComplainOfAnAlertThatNobodyExpected) {
  ScriptedAlerts alerts(runLoop);
  alerts.runModal(Question);
  EXPECT_EQ(complaints, QStringList{"Unexpected alert: 'Go on?' [Yes|No|] 'It takes long.'"});
}

TEST_F(StandIns, ComplainOfEveryWordThatDiffers) {
  for (QString Alert::*part : {&Alert::messageText, &Alert::defaultButton, &Alert::alternateButton,
                               &Alert::otherButton, &Alert::informativeText}) {
    Alert changed = Question;
    changed.*part += '!';
    ScriptedAlerts alerts(runLoop);
    alerts.expect(Question, platform::AlertDefaultReturn);
    alerts.runModal(changed);
  }
  EXPECT_EQ(complaints.size(), 5);
}

TEST_F(StandIns, ComplainOfAnAlertThatNeverCame) {
  {
    ScriptedAlerts alerts(runLoop);
    alerts.expect(Question, platform::AlertDefaultReturn);
  }
  EXPECT_EQ(complaints, QStringList{"Expected alert never came: 'Go on?' [Yes|No|] 'It takes long.'"});
}

TEST_F(StandIns, LeaveASheetOpenUntilItIsAnswered) {
  QObject owner;
  int answer = 7;
  ScriptedAlerts alerts(runLoop);
  alerts.expect(Question, platform::AlertDefaultReturn);
  alerts.beginSheetModalForWindow(Question, nullptr, &owner,
                                  [&answer](int returnCode) { answer = returnCode; });
  EXPECT_EQ(answer, 7);
  EXPECT_TRUE(alerts.sheetOpen());
  EXPECT_FALSE(runLoop.inModalSession()) << "a sheet stops its own window only";
  alerts.answerSheet(platform::AlertAlternateReturn);
  EXPECT_EQ(answer, platform::AlertAlternateReturn);
  EXPECT_FALSE(alerts.sheetOpen());
  alerts.answerSheet(platform::AlertAlternateReturn);
  EXPECT_EQ(complaints, QStringList{"No sheet is open"});
}

TEST_F(StandIns, ComplainOfASheetLeftOpen) {
  QObject owner;
  {
    ScriptedAlerts alerts(runLoop);
    alerts.expect(Question, platform::AlertDefaultReturn);
    alerts.beginSheetModalForWindow(Question, nullptr, &owner, [](int) {});
  }
  EXPECT_EQ(complaints, QStringList{"A sheet was left unanswered"});
}

TEST_F(StandIns, AnswerNoSheetWhoseOwnerIsGone) {
  auto owner = std::make_unique<QObject>();
  bool answered = false;
  ScriptedAlerts alerts(runLoop);
  alerts.expect(Question, platform::AlertDefaultReturn);
  alerts.beginSheetModalForWindow(Question, nullptr, owner.get(), [&answered](int) { answered = true; });
  owner.reset();
  alerts.answerSheet(platform::AlertDefaultReturn);
  EXPECT_FALSE(answered);
}

TEST_F(StandIns, ComplainOfPanelsUnexpectedAndMissing) {
  {
    ScriptedPanels panels;
    platform::OpenPanel open;
    platform::SavePanel save;
    EXPECT_EQ(panels.runModal(open), platform::PanelCancelButton);
    EXPECT_EQ(panels.runModal(save), platform::PanelCancelButton);
    panels.expectOpen({});
    panels.expectSave({});
  }
  EXPECT_EQ(complaints, (QStringList{"Unexpected open panel", "Unexpected save panel",
                                     "Expected open panel never came", "Expected save panel never came"}));
}

TEST_F(StandIns, DeliverDistributedNotificationsByExactNameAndObject) {
  RecordingDistributedCenter center(runLoop);
  QObject observer;
  QStringList heard;
  const auto say = [&heard](const char* word) {
    return [&heard, word](const platform::Notification&) { heard.append(word); };
  };
  center.addObserver(&observer, "link", "request", say("request"));
  center.addObserver(&observer, "link", "reply", say("reply"));
  center.deliver("link", "request", {});
  center.deliver("link", "other", {});
  EXPECT_EQ(heard, QStringList{"request"});
  EXPECT_TRUE(center.posted().isEmpty()) << "what another process posts is not ours";
  runLoop.advance(2);
  center.postNotificationName("link", "reply", {{"ok", true}});
  ASSERT_EQ(center.posted().size(), 1);
  EXPECT_EQ(center.posted().first().object, "reply");
  EXPECT_DOUBLE_EQ(center.posted().first().time, runLoop.uptime());
  center.removeObserver(&observer, QStringLiteral("link"), QStringLiteral("request"));
  EXPECT_EQ(center.observerCount(), 1);
  center.removeObserver(&observer, std::nullopt, std::nullopt);
  EXPECT_EQ(center.observerCount(), 0);
}

}  // namespace
