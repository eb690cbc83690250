// SPDX-License-Identifier: LGPL-3.0-or-later
//
// The real program on a real window system, where Qt itself goes to the session bus, and a session bus that
// accepts and does not answer.
#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <memory>

#include "desktop/notifications/QtDistributedNotificationCenter.h"
#include "link/protocol/LinkProtocol.h"
#include "testing/bus/PrivateBus.h"
#include "testing/bus/RawBus.h"
#include "testing/main/Shown.h"
#include "testing/process/VirtualScreen.h"
#include "tests/robustness/link/WeatherProgram.h"

using namespace velmora;

using namespace velmora::testkit;
using link_testing::WeatherProgram;

namespace {

/// Far above what a start takes, far below what the bus library waits by itself.
constexpr qint64 LongestStart = 15000;  // milliseconds

class ASilentSessionBus : public ::testing::TestWithParam<RawBus::Manner> {
 protected:
  QProcessEnvironment environment() const {
    QProcessEnvironment all = QProcessEnvironment::systemEnvironment();
    screen_.addTo(all);
    all.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    // As on a desktop on which a screen reader has been in use.
    all.insert(QStringLiteral("QT_LINUX_ACCESSIBILITY_ALWAYS_ON"), QStringLiteral("1"));
    all.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus_->address());
    return all;
  }

  VirtualScreen screen_;
  std::unique_ptr<RawBus> bus_ = std::make_unique<RawBus>(GetParam());
};

TEST_P(ASilentSessionBus, DoesNotHoldUpTheProgramOnARealDesktop) {
  QElapsedTimer clock;
  clock.start();
  WeatherProgram program(environment());
  EXPECT_LT(clock.elapsed(), LongestStart);
  // Whoever waits for the bus would do it on the main thread.
  program.order("block 0");
  program.waitFor(QStringLiteral("free"));
  EXPECT_LT(clock.elapsed(), LongestStart);
  std::printf("up after %lld ms\n", static_cast<long long>(clock.elapsed()));
  clock.start();
  EXPECT_EQ(program.quit(), 0);
  EXPECT_LT(clock.elapsed(), LongestStart);
}

TEST_P(ASilentSessionBus, IsFoundByTheLinkWhenItWakes) {
  WeatherProgram program(environment());
  PrivateBus awake(bus_->address());
  awake.start();
  bus_->hangUp();
  program.waitForLog(QStringLiteral("the link is on"));
  desktop::QtDistributedNotificationCenter viewer(bus_->address());
  viewer.postNotificationName(program.linkName(), velmora::link::RequestObject,
                              {{velmora::link::Identifier, QStringLiteral("AB1")}});
  EXPECT_TRUE(viewer.flush());
  program.waitFor(QStringLiteral("shown AB1"));
  EXPECT_EQ(program.quit(), 0);
}

INSTANTIATE_TEST_SUITE_P(Manners, ASilentSessionBus,
                         ::testing::Values(RawBus::Manner::NeverAnswers, RawBus::Manner::NeverGreets),
                         [](const auto& each) {
                           return each.param == RawBus::Manner::NeverAnswers ? "NeverAnswers" : "NeverGreets";
                         });

}  // namespace
