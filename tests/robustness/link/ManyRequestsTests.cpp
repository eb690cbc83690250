// SPDX-License-Identifier: LGPL-3.0-or-later
//
// More requests than anybody can want, at a program that is busy.
#include <gtest/gtest.h>

#include "desktop/notifications/QtDistributedNotificationCenter.h"
#include "link/protocol/LinkProtocol.h"
#include "testing/bus/PrivateBus.h"
#include "testing/main/Shown.h"
#include "tests/robustness/link/WeatherProgram.h"

using namespace velmora;

using namespace velmora::testkit;
using link_testing::WeatherProgram;
namespace keys = velmora::link;

namespace {
constexpr qint64 MiB = 1024 * 1024;
constexpr qint64 MayKeep = 20 * MiB;
}  // namespace

TEST(ManyRequests, AtABusyProgramAreAllHandledAndLeaveNoMemoryBehind) {
  testkit::PrivateBus bus;
  WeatherProgram program(bus);
  desktop::QtDistributedNotificationCenter viewer(bus.address());
  const auto send = [&](const QString& identifier, const QVariantMap& more = {}) {
    QVariantMap details = more;
    details.insert(keys::Identifier, identifier);
    details.insert(keys::Name, QStringLiteral("Doe^Jane"));
    viewer.postNotificationName(program.linkName(), keys::RequestObject, details);
  };
  // Everything that is made once has been made.
  for (int i = 0; i < 100; ++i) send(QStringLiteral("first-%1").arg(i));
  program.waitFor(QStringLiteral("shown first-99"));
  const qint64 before = program.memory();

  program.order("block 2000");
  program.waitFor(QStringLiteral("blocked"));
  for (int i = 0; i < 10000; ++i) send(QStringLiteral("small-%1").arg(i));
  const QByteArray image(MiB, 'x');
  for (int i = 0; i < 200; ++i) send(QStringLiteral("large-%1").arg(i), {{QStringLiteral("JPEG"), image}});
  ASSERT_TRUE(viewer.flush(std::chrono::seconds(60)));
  program.waitFor(QStringLiteral("free"));
  program.waitFor(QStringLiteral("shown large-199"));
  EXPECT_EQ(program.said().filter(QStringLiteral("shown small-")).size(), 10000);
  EXPECT_EQ(program.said().filter(QStringLiteral("shown large-")).size(), 200);

  send(QStringLiteral("next"));
  program.waitFor(QStringLiteral("shown next"));
  const qint64 after = program.memory();
  std::printf("memory: %lld MiB before, %lld MiB after\n", static_cast<long long>(before / MiB),
              static_cast<long long>(after / MiB));
  EXPECT_LT(after - before, MayKeep) << before / MiB << " MiB before, " << after / MiB << " MiB after";
  EXPECT_EQ(program.quit(), 0);
}
