// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/document/ExaminationNavigator.h"

#include <gtest/gtest.h>

#include <QWidget>

#include "platform/controls/Alert.h"
#include "testing/main/Shown.h"
#include "testing/standins/TestServices.h"

using namespace velmora;

namespace {

/// A record of as many examinations as a test says, which notes what is asked of it.
class Examinations : public ExaminationHooks {
 public:
  quint64 last = 2;
  QStringList calls;

  quint64 lastExam() const override { return last; }
  void synchronizeFromData() override { calls.append("load"); }
  void synchronizeToData() override { calls.append("store"); }
  void addExamination() override { calls.append("add"); }
  void deleteCurrentExamination() override { calls.append("delete"); }
};

class Navigator : public testing::Test {
 protected:
  testkit::TestServices desktop{{}};
  Examinations record;
  ExaminationNavigator navigator{record, desktop.alerts, desktop.feedback};
};

TEST_F(Navigator, StoresBeforeAndLoadsAfterEachStep) {
  navigator.next();
  EXPECT_EQ(navigator.current(), 1U);
  EXPECT_EQ(record.calls, (QStringList{"store", "load"}));
  navigator.goTo(2);
  navigator.previous();
  EXPECT_EQ(navigator.current(), 1U);
  EXPECT_EQ(record.calls, (QStringList{"store", "load", "store", "load", "store", "load"}));
}

TEST_F(Navigator, DoesNothingAtTheEnds) {
  navigator.previous();
  navigator.setCurrent(2);
  navigator.next();
  EXPECT_EQ(navigator.current(), 2U);
  EXPECT_TRUE(record.calls.isEmpty());
}

TEST_F(Navigator, LeavesItToTheRecordToShowWhatItAdds) {
  navigator.add();
  EXPECT_EQ(record.calls, (QStringList{"store", "add", "load"}));
  EXPECT_EQ(navigator.current(), 0U);
}

TEST_F(Navigator, ThrowsAwayWhatWasTypedIntoAnExaminationThatGoes) {
  navigator.setCurrent(2);
  navigator.removeCurrent();
  EXPECT_EQ(record.calls, (QStringList{"load", "delete", "load"}));
  EXPECT_EQ(navigator.current(), 1U);
}

TEST_F(Navigator, StaysAtTheFirstExaminationWhenThatGoes) {
  navigator.removeCurrent();
  EXPECT_EQ(navigator.current(), 0U);
}

TEST_F(Navigator, NeverAsksAboutTheOnlyExamination) {
  record.last = 0;
  navigator.askToRemove(nullptr, nullptr, [](int) { FAIL(); });
  EXPECT_EQ(desktop.feedback.beeps, 1);
  EXPECT_TRUE(desktop.alerts.shown().isEmpty());
}

TEST_F(Navigator, TakesNoAgreementToRemoveAnotherExaminationThanWasShown) {
  const QObject owner;
  desktop.alerts.expect({"Are you sure you want to remove this exam?", "Remove", "Cancel", "", ""}, 0);
  navigator.askToRemove(nullptr, &owner, [](int) { FAIL(); });
  navigator.setCurrent(1);
  desktop.alerts.answerSheet(platform::AlertDefaultReturn);
  EXPECT_EQ(desktop.feedback.beeps, 1);
}

TEST_F(Navigator, CountsExaminationsFromOne) { EXPECT_EQ(navigator.position(), "1 of 3"); }

}  // namespace
