// SPDX-License-Identifier: LGPL-3.0-or-later
#include <QObject>
#include <memory>
#include <optional>
#include <stdexcept>
#include <thread>

#include "testing/main/Shown.h"
#include "testing/standins/LogRecorder.h"
#include "testing/standins/Scripted.h"
#include "testing/standins/VirtualRunLoop.h"

using namespace velmora;

using velmora::platform::RunLoop;
using velmora::testkit::LogRecorder;
using velmora::testkit::ScriptedAlerts;
using velmora::testkit::VirtualRunLoop;

namespace {

/// A run loop in virtual time, and the words that its calls said.
class RunLoopInVirtualTime : public testing::Test {
 protected:
  RunLoop::Call say(const QString& word) {
    return [this, word] { said.append(word); };
  }

  VirtualRunLoop runLoop;
  QObject owner;
  QStringList said;
};

TEST_F(RunLoopInVirtualTime, RunsEqualTimesInTheOrderOfTheCalls) {
  for (const char* word : {"first", "second", "third"}) runLoop.performAfterDelay(&owner, 1, say(word));
  runLoop.advance(1);
  EXPECT_EQ(said, (QStringList{"first", "second", "third"}));
}

TEST_F(RunLoopInVirtualTime, RunsTheEarlierTimeFirstWhateverTheOrderOfTheCalls) {
  runLoop.performAfterDelay(&owner, 3, say("late"));
  runLoop.performAfterDelay(&owner, 1, say("early"));
  runLoop.performAfterDelay(&owner, 2, say("between"));
  runLoop.advance(3);
  EXPECT_EQ(said, (QStringList{"early", "between", "late"}));
}

TEST_F(RunLoopInVirtualTime, RunsNothingBeforeItsTime) {
  runLoop.performAfterDelay(&owner, 4, say("due"));
  runLoop.advance(3.999);
  EXPECT_TRUE(said.isEmpty());
  runLoop.advance(0.001);
  EXPECT_EQ(said, QStringList{"due"});
}

TEST_F(RunLoopInVirtualTime, RunsACallOnceOnly) {
  runLoop.performAfterDelay(&owner, 1, say("once"));
  runLoop.advance(10);
  runLoop.advance(10);
  EXPECT_EQ(said, QStringList{"once"});
}

TEST_F(RunLoopInVirtualTime, ShowsEachCallItsOwnTimeWhenMuchTimePassesAtOnce) {
  const double start = runLoop.uptime();
  QList<double> times;
  for (const double delay : {0.5, 2.0, 3.25}) {
    runLoop.performAfterDelay(&owner, delay, [&] { times.append(runLoop.uptime() - start); });
  }
  runLoop.advance(4);
  ASSERT_EQ(times.size(), 3);
  EXPECT_DOUBLE_EQ(times.at(0), 0.5);
  EXPECT_DOUBLE_EQ(times.at(1), 2.0);
  EXPECT_DOUBLE_EQ(times.at(2), 3.25);
  EXPECT_DOUBLE_EQ(runLoop.uptime() - start, 4);
}

TEST_F(RunLoopInVirtualTime, MovesTheWallClockWithTheUptime) {
  const QDateTime before = runLoop.now();
  runLoop.advance(90.5);
  EXPECT_EQ(before.msecsTo(runLoop.now()), 90500);
}

TEST_F(RunLoopInVirtualTime, RunsAZeroDelayAfterTheCurrentEventNeverWithinIt) {
  runLoop.performAfterDelay(&owner, 0, [this] {
    runLoop.performAfterDelay(&owner, 0, say("inner"));
    said.append(QStringLiteral("outer is over"));
  });
  EXPECT_TRUE(said.isEmpty()) << "it ran inside performAfterDelay";
  runLoop.settle();
  EXPECT_EQ(said, (QStringList{"outer is over", "inner"}));
}

TEST_F(RunLoopInVirtualTime, LetsWhatWaitsAlreadyGoBeforeWhatACallAdds) {
  runLoop.performAfterDelay(&owner, 0, [this] { runLoop.performAfterDelay(&owner, 0, say("added")); });
  runLoop.performAfterDelay(&owner, 0, say("waiting"));
  runLoop.settle();
  EXPECT_EQ(said, (QStringList{"waiting", "added"}));
}

TEST_F(RunLoopInVirtualTime, TakesANegativeDelayForNone) {
  runLoop.performAfterDelay(&owner, 0, say("first"));
  runLoop.performAfterDelay(&owner, -5, say("second"));
  runLoop.settle();
  EXPECT_EQ(said, (QStringList{"first", "second"}));
}

TEST_F(RunLoopInVirtualTime, DropsACallWhoseOwnerIsGone) {
  auto shortLived = std::make_unique<QObject>();
  runLoop.performAfterDelay(shortLived.get(), 1, say("of the dead"));
  runLoop.performOnMainThread(shortLived.get(), say("of the dead, handed over"));
  runLoop.performAfterDelay(&owner, 1, say("of the living"));
  shortLived.reset();
  runLoop.advance(2);
  EXPECT_EQ(said, QStringList{"of the living"});
}

TEST_F(RunLoopInVirtualTime, DropsACallWhoseOwnerGoesInTheSameTurn) {
  auto shortLived = std::make_unique<QObject>();
  runLoop.performAfterDelay(&owner, 0, [&] { shortLived.reset(); });
  runLoop.performAfterDelay(shortLived.get(), 0, say("of the dead"));
  runLoop.settle();
  EXPECT_TRUE(said.isEmpty());
}

TEST_F(RunLoopInVirtualTime, RunsNothingInAModalSessionAndEverythingInOrderAfterIt) {
  runLoop.performAfterDelay(&owner, 2, say("second"));
  runLoop.performAfterDelay(&owner, 1, say("first"));
  {
    const RunLoop::ModalSession session(runLoop);
    EXPECT_TRUE(runLoop.inModalSession());
    runLoop.advance(60);
    runLoop.performAfterDelay(&owner, 0, say("made meanwhile"));
    runLoop.settle();
    EXPECT_TRUE(said.isEmpty());
  }
  EXPECT_FALSE(runLoop.inModalSession());
  runLoop.settle();
  EXPECT_EQ(said, (QStringList{"first", "second", "made meanwhile"}));
}

TEST_F(RunLoopInVirtualTime, WaitsForTheOutermostOfNestedModalSessions) {
  runLoop.performAfterDelay(&owner, 0, say("due"));
  {
    const RunLoop::ModalSession panel(runLoop);
    { const RunLoop::ModalSession questionAboutThePanel(runLoop); }
    runLoop.settle();
    EXPECT_TRUE(said.isEmpty());
  }
  runLoop.settle();
  EXPECT_EQ(said, QStringList{"due"});
}

TEST_F(RunLoopInVirtualTime, HoldsWhatFallsDueWhileACallHasAnAlertOpen) {
  ScriptedAlerts alerts(runLoop);
  const platform::Alert question{"Go on?", "Yes", "No", "", ""};
  alerts.expect(question, platform::AlertDefaultReturn, [this] {
    said.append(QStringLiteral("alert opens"));
    runLoop.advance(30);
    said.append(QStringLiteral("alert closes"));
  });
  runLoop.performAfterDelay(&owner, 1, [&] {
    EXPECT_EQ(alerts.runModal(question), platform::AlertDefaultReturn);
    said.append(QStringLiteral("after the alert"));
  });
  runLoop.performAfterDelay(&owner, 1, say("same time"));
  runLoop.performAfterDelay(&owner, 5, say("later"));
  runLoop.advance(1);
  runLoop.settle();
  EXPECT_EQ(said, (QStringList{"alert opens", "alert closes", "after the alert", "same time", "later"}));
}

TEST_F(RunLoopInVirtualTime, StopsAtTheCallThatLeavesAModalSessionOpen) {
  std::optional<RunLoop::ModalSession> session;
  runLoop.performAfterDelay(&owner, 0, [&] { session.emplace(runLoop); });
  runLoop.performAfterDelay(&owner, 0, say("same time"));
  runLoop.settle();
  EXPECT_TRUE(said.isEmpty());
  session.reset();
  runLoop.settle();
  EXPECT_EQ(said, QStringList{"same time"});
}

TEST_F(RunLoopInVirtualTime, LogsAnExceptionInOneLineAndRunsTheNextCall) {
  const LogRecorder log;
  runLoop.performAfterDelay(&owner, 0, [] { throw std::runtime_error("broken\nin two"); });
  runLoop.performAfterDelay(&owner, 0, [] { throw 7; });
  runLoop.performAfterDelay(&owner, 0, say("still here"));
  runLoop.settle();
  EXPECT_EQ(log.lines(), (QStringList{"timed call: broken\\nin two", "timed call: unknown failure"}));
  EXPECT_EQ(said, QStringList{"still here"});
  runLoop.performAfterDelay(&owner, 0, say("and later too"));
  runLoop.settle();
  EXPECT_EQ(said.size(), 2);
}

TEST_F(RunLoopInVirtualTime, RunsWhatAnotherThreadHandsOverOnTheMainThread) {
  const auto mainThread = std::this_thread::get_id();
  std::thread::id ranOn;
  std::thread other(
      [&] { runLoop.performOnMainThread(&owner, [&] { ranOn = std::this_thread::get_id(); }); });
  other.join();
  EXPECT_EQ(ranOn, std::thread::id()) << "it ran before the main thread's turn";
  runLoop.settle();
  EXPECT_EQ(ranOn, mainThread);
}

TEST_F(RunLoopInVirtualTime, TakesHandOversFromManyThreadsWithoutLosingOne) {
  constexpr int Threads = 4;
  constexpr int Each = 200;
  int ran = 0;
  std::vector<std::thread> threads;
  threads.reserve(Threads);
  for (int i = 0; i < Threads; ++i) {
    threads.emplace_back([&] {
      for (int call = 0; call < Each; ++call) runLoop.performOnMainThread(&owner, [&ran] { ++ran; });
    });
  }
  for (std::thread& thread : threads) thread.join();
  runLoop.settle();
  EXPECT_EQ(ran, Threads * Each);
}

}  // namespace
