// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/document/RecordSaving.h"

#include <gtest/gtest.h>

#include "platform/controls/Alert.h"
#include "testing/main/Shown.h"
#include "testing/standins/TestServices.h"
#include "velmora/document/PrintNotice.h"

using namespace velmora;

using platform::SaveOutcome;
using Target = RecordSaving::Target;
using CloseAnswer = RecordSaving::CloseAnswer;

namespace {

class SavingDecisions : public testing::Test {
 protected:
  testkit::TestServices desktop{{}};
  RecordSaving saving{desktop.alerts};
};

TEST_F(SavingDecisions, KeepTheFileOfARecordThatKeepsItsName) {
  EXPECT_EQ(saving.askForTarget("new"), Target::SameFile) << "never saved under a name";
  saving.noteSaved("AB1");
  EXPECT_EQ(saving.askForTarget("AB1"), Target::SameFile);
  EXPECT_EQ(saving.askForTarget(""), Target::SameFile);
}

TEST_F(SavingDecisions, AskWhereARecordGoesThatHasAnotherName) {
  saving.noteSaved("AB1");
  const platform::Alert question{"The identifier of this record has changed", "New File", "Same File",
                                 "Cancel",
                                 "It was 'AB1' and is now 'AB2'. With a new file the record of 'AB1' stays "
                                 "as it was last saved."};
  desktop.alerts.expect(question, platform::AlertDefaultReturn);
  EXPECT_EQ(saving.askForTarget("AB2"), Target::NewFile);
  desktop.alerts.expect(question, platform::AlertAlternateReturn);
  EXPECT_EQ(saving.askForTarget("AB2"), Target::SameFile);
  desktop.alerts.expect(question, platform::AlertStopped);
  EXPECT_EQ(saving.askForTarget("AB2"), Target::None);
}

TEST_F(SavingDecisions, CloseAfterASaveThatWasGivenUpOnlyWhenClosingWasAskedFor) {
  EXPECT_TRUE(saving.mayCloseAfter(SaveOutcome::Kept));
  EXPECT_FALSE(saving.mayCloseAfter(SaveOutcome::GivenUp));
  saving.setCloseRequested(true);
  EXPECT_TRUE(saving.mayCloseAfter(SaveOutcome::GivenUp));
  EXPECT_FALSE(saving.mayCloseAfter(SaveOutcome::Unsaved));
}

TEST_F(SavingDecisions, CloseAfterEverySaveOnceThePanelHasSaved) {
  EXPECT_FALSE(saving.closesAfter(SaveOutcome::Kept));
  saving.closeAfterSaving();
  EXPECT_TRUE(saving.closesAfter(SaveOutcome::Kept));
  EXPECT_FALSE(saving.closesAfter(SaveOutcome::Unsaved));
}

TEST_F(SavingDecisions, ForgetWhatWasEnteredOnceItIsSaved) {
  saving.noteEntry();
  EXPECT_TRUE(saving.holdsMoreThanIdentifier());
  saving.setSavedName("AB1");
  EXPECT_TRUE(saving.holdsMoreThanIdentifier());
  saving.noteSaved("AB1");
  EXPECT_FALSE(saving.holdsMoreThanIdentifier());
}

TEST_F(SavingDecisions, StayOpenOnAnythingButAnAnswer) {
  const platform::Alert question{"Save changes to document?", "Save As...", "Don't Save", "Cancel", ""};
  desktop.alerts.expect(question, platform::AlertStopped);
  EXPECT_EQ(saving.askBeforeClosing(false), CloseAnswer::Stay);
  desktop.alerts.expect(question, platform::AlertAlternateReturn);
  EXPECT_EQ(saving.askBeforeClosing(false), CloseAnswer::Close);
  desktop.alerts.expect({"Save changes to document?", "Save", "Don't Save", "Cancel", ""},
                        platform::AlertDefaultReturn);
  EXPECT_EQ(saving.askBeforeClosing(true), CloseAnswer::SaveFirst);
}

TEST(PrintNotices, CountADateInTheFutureAsRecent) {
  testkit::TestServices desktop{{}};
  testkit::VirtualRunLoop ahead;
  ahead.advance(3600);
  struct SetBack : platform::RunLoop {
    const platform::RunLoop* clock;
    QDateTime now() const override { return clock->now(); }
    double uptime() const override { return clock->uptime(); }
    void scheduleChanged() override {}
  } clock;
  clock.clock = &ahead;
  PrintNotice notice(desktop.alerts, clock);
  notice.tellIfRecentlyPrinted();
  EXPECT_TRUE(desktop.alerts.shown().isEmpty());
  notice.notePrinted();
  clock.clock = &desktop.runLoop;
  desktop.alerts.expect(
      {"Recently Printed", "OK", "", "", "This document was printed in the last 30 seconds."}, 1);
  notice.tellIfRecentlyPrinted();
}

}  // namespace
