// SPDX-License-Identifier: LGPL-3.0-or-later
//
// The connection to the bus by itself.
#include "link/bus/BusLink.h"

#include <gtest/gtest.h>

#include <future>
#include <stdexcept>

#include "link/bus/BusProbe.h"
#include "testing/bus/LinkOnTheBus.h"
#include "testing/bus/Mailbox.h"
#include "testing/bus/PrivateBus.h"
#include "testing/bus/RawBus.h"
#include "testing/standins/LogRecorder.h"

using namespace velmora;
using namespace velmora::testkit;
using namespace velmora::testkit::bus;
using namespace std::chrono_literals;

TEST(BusLink, OutlivesAReceiverThatThrows) {
  const PrivateBus bus;
  LogRecorder log;
  std::promise<void> second;
  int received = 0;
  link::BusLink link(
      bus.address(),
      [&](const link::Message&) {
        if (++received == 1) throw std::runtime_error("the first one");
        second.set_value();
      },
      [](const QString&) {});
  link.subscribe(GrowthLink, Request);
  link.post({GrowthLink, Request, {}});
  link.post({GrowthLink, Request, {}});
  EXPECT_EQ(second.get_future().wait_for(30s), std::future_status::ready);
  EXPECT_TRUE(log.lines().contains(QStringLiteral("a signal on the session bus: the first one")));
}

TEST(BusLink, OutlivesATaskThatThrows) {
  const PrivateBus bus;
  LogRecorder log;
  link::BusLink link(
      bus.address(), [](const link::Message&) {},
      [](const QString&) { throw std::runtime_error("no room for a line"); });
  link.subscribe(QStringLiteral("it's"), Request);
  EXPECT_TRUE(link.flush(30s));
  EXPECT_TRUE(log.lines().contains(QStringLiteral("the session bus: no room for a line")));
}

TEST(BusLink, ConnectsToTheNextAddressWhereTheFirstHangs) {
  const RawBus silent(RawBus::Manner::NeverAnswers);
  const PrivateBus bus;
  std::promise<void> received;
  link::BusLink link(
      silent.address() + QStringLiteral(";") + bus.address(),
      [&](const link::Message&) { received.set_value(); }, [](const QString&) {});
  link.subscribe(GrowthLink, Request);
  EXPECT_TRUE(link.flush(30s));
  link.post({GrowthLink, Request, {}});
  EXPECT_EQ(received.get_future().wait_for(30s), std::future_status::ready);
}

TEST(BusProbe, LeavesTimeForTheNextAddressWhereTheFirstHangs) {
  const RawBus silent(RawBus::Manner::NeverAnswers);
  const PrivateBus bus;
  link::BusProbe probe;
  const auto found = probe.find(silent.address() + QStringLiteral(";") + bus.address(), 2s);
  EXPECT_EQ(found.valueOr({}), bus.address());
  EXPECT_FALSE(probe.find(silent.address() + QStringLiteral(";") + silent.address(), 200ms).ok());
  const QString elsewhere = QStringLiteral("tcp:host=127.0.0.1,port=1;") + bus.address();
  EXPECT_EQ(probe.find(silent.address() + QStringLiteral(";") + elsewhere, 200ms).valueOr({}), elsewhere);
}
