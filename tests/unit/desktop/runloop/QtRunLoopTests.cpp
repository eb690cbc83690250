// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/runloop/QtRunLoop.h"

#include <QEventLoop>
#include <QTest>
#include <memory>
#include <stdexcept>
#include <thread>

#include "testing/main/Shown.h"
#include "testing/standins/LogRecorder.h"

using namespace velmora;

using velmora::desktop::QtRunLoop;
using velmora::platform::RunLoop;

namespace {

/// The real run loop on the real event loop. A test waits for the call that it makes last.
class RunLoopInRealTime : public testing::Test {
 protected:
  RunLoop::Call say(const QString& word) {
    return [this, word] { said.append(word); };
  }
  /// Runs the event loop until that many words were said.
  bool waitFor(qsizetype words) {
    return QTest::qWaitFor([this, words] { return said.size() >= words; });
  }
  /// Runs the event loop past everything that is due by now: Qt's own timer of that delay comes after ours.
  static void runEventsFor(int milliseconds) {
    QEventLoop events;
    QTimer::singleShot(milliseconds, Qt::PreciseTimer, &events, &QEventLoop::quit);
    events.exec();
  }

  QtRunLoop runLoop;
  QObject owner;
  QStringList said;
};

TEST_F(RunLoopInRealTime, RunsEqualTimesInTheOrderOfTheCallsAndEarlierTimesFirst) {
  runLoop.performAfterDelay(&owner, 0.02, say("late"));
  for (const char* word : {"first", "second", "third"}) runLoop.performAfterDelay(&owner, 0, say(word));
  EXPECT_TRUE(said.isEmpty());
  ASSERT_TRUE(waitFor(4));
  EXPECT_EQ(said, (QStringList{"first", "second", "third", "late"}));
}

TEST_F(RunLoopInRealTime, RunsNothingBeforeItsTime) {
  const double start = runLoop.uptime();
  double ran = 0;
  runLoop.performAfterDelay(&owner, 0.05, [&] {
    ran = runLoop.uptime();
    said.append("ran");
  });
  ASSERT_TRUE(waitFor(1));
  EXPECT_GE(ran - start, 0.05);
}

TEST_F(RunLoopInRealTime, LetsEventsInBetweenAZeroDelayAndTheNext) {
  runLoop.performAfterDelay(&owner, 0, [this] {
    said.append("outer begins");
    runLoop.performAfterDelay(&owner, 0, say("inner"));
    QMetaObject::invokeMethod(&owner, say("event"), Qt::QueuedConnection);
    said.append("outer ends");
  });
  ASSERT_TRUE(waitFor(4));
  EXPECT_EQ(said, (QStringList{"outer begins", "outer ends", "event", "inner"}));
}

TEST_F(RunLoopInRealTime, DropsACallWhoseOwnerIsGone) {
  auto shortLived = std::make_unique<QObject>();
  runLoop.performAfterDelay(shortLived.get(), 0, say("of the dead"));
  runLoop.performAfterDelay(&owner, 0, say("of the living"));
  shortLived.reset();
  ASSERT_TRUE(waitFor(1));
  EXPECT_EQ(said, QStringList{"of the living"});
}

TEST_F(RunLoopInRealTime, RunsNothingInAModalSessionThoughQtsEventsGoOn) {
  {
    const RunLoop::ModalSession session(runLoop);
    runLoop.performAfterDelay(&owner, 0.005, say("second"));
    runLoop.performAfterDelay(&owner, 0, say("first"));
    runEventsFor(30);
    EXPECT_TRUE(said.isEmpty());
  }
  ASSERT_TRUE(waitFor(2));
  EXPECT_EQ(said, (QStringList{"first", "second"}));
}

TEST_F(RunLoopInRealTime, HoldsWhatFallsDueWhileACallIsInAModalSession) {
  runLoop.performAfterDelay(&owner, 0, [this] {
    const RunLoop::ModalSession session(runLoop);
    said.append("opens");
    runEventsFor(30);
    said.append("closes");
  });
  runLoop.performAfterDelay(&owner, 0, say("same time"));
  runLoop.performAfterDelay(&owner, 0.01, say("later"));
  ASSERT_TRUE(waitFor(4));
  EXPECT_EQ(said, (QStringList{"opens", "closes", "same time", "later"}));
}

TEST_F(RunLoopInRealTime, DoesNotOvertakeACallThatRunsEventsItself) {
  runLoop.performAfterDelay(&owner, 0, [this] {
    runLoop.performAfterDelay(&owner, 0, say("made inside"));
    runEventsFor(20);
    said.append("over");
  });
  runLoop.performAfterDelay(&owner, 0, say("next"));
  ASSERT_TRUE(waitFor(3));
  EXPECT_EQ(said, (QStringList{"over", "next", "made inside"}));
}

TEST_F(RunLoopInRealTime, SurvivesACallThatThrows) {
  const testkit::LogRecorder log;
  runLoop.performAfterDelay(&owner, 0, [] { throw std::runtime_error("broken\nin two"); });
  runLoop.performAfterDelay(&owner, 0, say("still here"));
  ASSERT_TRUE(waitFor(1));
  EXPECT_EQ(log.lines(), QStringList{"timed call: broken\\nin two"});
}

TEST_F(RunLoopInRealTime, RunsWhatAnotherThreadHandsOverOnTheMainThread) {
  std::thread::id ranOn;
  std::thread other([&] {
    runLoop.performOnMainThread(&owner, [&] {
      ranOn = std::this_thread::get_id();
      said.append("ran");
    });
  });
  ASSERT_TRUE(waitFor(1));
  other.join();
  EXPECT_EQ(ranOn, std::this_thread::get_id());
}

TEST_F(RunLoopInRealTime, HasAClockThatNeverGoesBackwards) {
  double last = runLoop.uptime();
  for (int i = 0; i < 1000; ++i) {
    const double now = runLoop.uptime();
    ASSERT_GE(now, last);
    last = now;
  }
  EXPECT_LE(std::abs(runLoop.now().msecsTo(QDateTime::currentDateTime())), 5000);
}

}  // namespace
