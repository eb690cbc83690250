// SPDX-License-Identifier: LGPL-3.0-or-later
//
// The link while the session bus is away, comes back, or only seems to be there.
#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <future>

#include "desktop/notifications/QtDistributedNotificationCenter.h"
#include "link/bus/BusLink.h"
#include "testing/bus/LinkOnTheBus.h"
#include "testing/bus/Mailbox.h"
#include "testing/bus/PrivateBus.h"
#include "testing/bus/RawBus.h"
#include "testing/files/EnvironmentVariable.h"
#include "testing/main/Shown.h"
#include "testing/standins/LogRecorder.h"

using namespace velmora;

using namespace velmora::testkit;
using namespace velmora::testkit::bus;
using std::chrono::milliseconds;
using velmora::desktop::QtDistributedNotificationCenter;
using velmora::link::BusLink;

namespace {

const QString Off = QStringLiteral("the link is off");
const QString On = QStringLiteral("The session bus is back, the link is on");

}  // namespace

class ABusThatReturns : public ::testing::Test {
 protected:
  /// A notification goes round.
  void expectTheLinkWorks(QtDistributedNotificationCenter& centre, int number) {
    EXPECT_TRUE(centre.flush());
    centre.postNotificationName(GrowthLink, Request, numbered(number));
    EXPECT_EQ(numberOf(mailbox_.takeDetails()), QVariant(qint64(number)));
  }

  PrivateBus bus_{testkit::PrivateBus::Start::Later};
  LogRecorder log_;
  QObject observer_;
  Mailbox mailbox_;
};

TEST_F(ABusThatReturns, IsFoundAgainWithEverySubscriptionAndOneLineEachWay) {
  bus_.start();
  QtDistributedNotificationCenter centre(bus_.statedAddress());
  QObject other;
  Mailbox replies;
  centre.addObserver(&observer_, GrowthLink, Request, mailbox_.handler());
  centre.addObserver(&other, GrowthLink, Reply, replies.handler());
  expectTheLinkWorks(centre, 1);

  bus_.stop();
  // Nothing was sent or asked: the link notices by itself.
  ASSERT_TRUE(log_.waitFor(Off));
  EXPECT_FALSE(centre.flush());
  centre.postNotificationName(GrowthLink, Request, numbered(2));
  centre.removeObserver(&other);
  centre.addObserver(&other, QStringLiteral("another"), Request, replies.handler());

  bus_.start();
  ASSERT_TRUE(log_.waitFor(On));
  expectTheLinkWorks(centre, 3);
  centre.postNotificationName(GrowthLink, Reply, numbered(4));
  centre.postNotificationName(QStringLiteral("another"), Request, numbered(5));
  EXPECT_EQ(numberOf(replies.takeDetails()), QVariant(qint64(5)));
  EXPECT_TRUE(replies.empty());
  EXPECT_TRUE(mailbox_.empty());
  EXPECT_EQ(log_.lines().size(), 2) << qPrintable(log_.lines().join(u'\n'));
}

TEST_F(ABusThatReturns, MayHaveBeenAwayAtTheStart) {
  QtDistributedNotificationCenter centre(bus_.address());
  centre.addObserver(&observer_, GrowthLink, Request, mailbox_.handler());
  ASSERT_TRUE(log_.waitFor(Off));
  bus_.start();
  ASSERT_TRUE(log_.waitFor(On));
  expectTheLinkWorks(centre, 1);
  EXPECT_EQ(log_.lines().size(), 2) << qPrintable(log_.lines().join(u'\n'));
}

TEST_F(ABusThatReturns, IsFoundThroughTheEnvironment) {
  bus_.start();
  const testkit::EnvironmentVariable session("DBUS_SESSION_BUS_ADDRESS", bus_.statedAddress().toLocal8Bit());
  QtDistributedNotificationCenter centre;
  centre.addObserver(&observer_, GrowthLink, Request, mailbox_.handler());
  expectTheLinkWorks(centre, 1);
  bus_.stop();
  ASSERT_TRUE(log_.waitFor(Off));
  bus_.start();
  ASSERT_TRUE(log_.waitFor(On));
  expectTheLinkWorks(centre, 2);
}

TEST_F(ABusThatReturns, IsNotMissedByACentreThatEndsMeanwhile) {
  {
    QtDistributedNotificationCenter centre(bus_.address());
    centre.addObserver(&observer_, GrowthLink, Request, mailbox_.handler());
    centre.postNotificationName(GrowthLink, Request, numbered(1));
    ASSERT_TRUE(log_.waitFor(Off));
  }
  bus_.start();
  EXPECT_EQ(log_.lines().size(), 1);
}

TEST(RetriesOfTheLink, ComeAtGrowingDistancesOfASecondToHalfAMinute) {
  QList<qint64> seconds;
  milliseconds delay{0};
  for (int i = 0; i < 8; ++i) {
    delay = BusLink::retryAfter(delay);
    seconds.append(delay.count() / 1000);
  }
  EXPECT_EQ(seconds, (QList<qint64>{1, 2, 4, 8, 16, 30, 30, 30}));
}

TEST(LastingAddresses, DoNotNameARunOfTheBus) {
  EXPECT_EQ(link::lastingAddress(QStringLiteral("unix:path=/a,guid=12;unix:abstract=b,guid=3")),
            QStringLiteral("unix:path=/a;unix:abstract=b"));
  EXPECT_EQ(link::lastingAddress(QStringLiteral("unix:path=/run/user/1/bus")),
            QStringLiteral("unix:path=/run/user/1/bus"));
  EXPECT_EQ(link::lastingAddress(QString()), QString());
}

class ABusThatDoesNotGreet : public ::testing::TestWithParam<RawBus::Manner> {};

TEST_P(ABusThatDoesNotGreet, HoldsUpNeitherStartNorEnd) {
  RawBus bus(GetParam());
  LogRecorder log;
  QElapsedTimer clock;
  clock.start();
  {
    QObject observer;
    Mailbox mailbox;
    QtDistributedNotificationCenter centre(bus.address());
    centre.addObserver(&observer, GrowthLink, Request, mailbox.handler());
    if (GetParam() != RawBus::Manner::NeverAccepts) {
      ASSERT_TRUE(bus.waitForConnections(1, Patience));
    }
  }
  EXPECT_LT(clock.elapsed(), 2000);
  EXPECT_LE(log.lines().size(), 1) << qPrintable(log.lines().join(u'\n'));
}

TEST_P(ABusThatDoesNotGreet, CostsOneLogLineAndLosesWhatIsPosted) {
  RawBus bus(GetParam());
  LogRecorder log;
  QElapsedTimer clock;
  clock.start();
  {
    QtDistributedNotificationCenter centre(bus.address());
    centre.postNotificationName(GrowthLink, Request, {});
  }
  EXPECT_LT(clock.elapsed(), 12000);
  ASSERT_EQ(log.lines().size(), 1) << qPrintable(log.lines().join(u'\n'));
  EXPECT_TRUE(log.lines().first().contains(Off));
}

INSTANTIATE_TEST_SUITE_P(Manners, ABusThatDoesNotGreet,
                         ::testing::Values(RawBus::Manner::NeverAnswers, RawBus::Manner::NeverGreets,
                                           RawBus::Manner::NeverAccepts, RawBus::Manner::SpeaksNonsense),
                         [](const auto& each) {
                           switch (each.param) {
                             case RawBus::Manner::NeverAnswers:
                               return "NeverAnswers";
                             case RawBus::Manner::NeverGreets:
                               return "NeverGreets";
                             case RawBus::Manner::NeverAccepts:
                               return "NeverAccepts";
                             default:
                               return "SpeaksNonsense";
                           }
                         });

/// A link to a bus that passes on what no bus should.
class ABusGoneMad : public ::testing::Test {
 protected:
  ABusGoneMad() {
    centre_.addObserver(&observer_, GrowthLink, Request, mailbox_.handler());
    EXPECT_TRUE(bus_.waitForSubscriptions(2, Patience));  // the notifications, and the end of the connection
  }
  RawMessage request(const std::function<void(RawValues&)>& fill) {
    return notificationFrame(GrowthLink.toUtf8(), Request.toUtf8(), fill);
  }
  /// The link has ended the connection, comes again, and hears.
  void expectItRecovers() {
    ASSERT_TRUE(log_.waitFor(On));
    ASSERT_TRUE(bus_.waitForSubscriptions(2, Patience));
    ASSERT_TRUE(bus_.send(request([](RawValues& body) { textEntry(body, "Identifier", "next"); })));
    EXPECT_EQ(mailbox_.takeDetails().value(QStringLiteral("Identifier")), QVariant(QStringLiteral("next")));
    EXPECT_TRUE(mailbox_.empty());
    EXPECT_EQ(log_.lines().filter(Off).size(), 1);
    EXPECT_EQ(log_.lines().size(), 2) << qPrintable(log_.lines().join(u'\n'));
  }

  RawBus bus_{RawBus::Manner::Proper};
  LogRecorder log_;
  QObject observer_;
  Mailbox mailbox_;
  QtDistributedNotificationCenter centre_{bus_.address()};
};

TEST_F(ABusGoneMad, IsLeftWhenAStringIsNoText) {
  ASSERT_TRUE(bus_.send(request([](RawValues& body) { textEntry(body, "Identifier", "\xff\xfe\xc0\x80"); })));
  expectItRecovers();
}

TEST_F(ABusGoneMad, IsLeftWhenAStringHasANulInIt) {
  ASSERT_TRUE(bus_.send(
      request([](RawValues& body) { textEntry(body, "Identifier", QByteArray("12\0", 3) + "34"); })));
  expectItRecovers();
}

TEST_F(ABusGoneMad, IsLeftWhenWhatItSendsIsNoMessage) {
  ASSERT_TRUE(bus_.send(QByteArray(100, 'x')));
  expectItRecovers();
}

TEST_F(ABusGoneMad, IsLeftWhenAMessageNestsDeeperThanTheProtocolAllows) {
  ASSERT_TRUE(bus_.send(request([](RawValues& body) {
    body.align(8);
    body.text("Identifier");
    for (int i = 0; i < 70; ++i) body.signature("v");
    body.textVariant("deep");
  })));
  expectItRecovers();
}

TEST_F(ABusGoneMad, IsLeftWhenAMessageClaimsToBeEnormous) {
  RawMessage message = request([](RawValues&) {});
  QByteArray bytes = message.frame(9);
  const quint32 size = 0x7fffffff;
  std::memcpy(bytes.data() + 4, &size, sizeof size);
  ASSERT_TRUE(bus_.send(bytes));
  expectItRecovers();
}

TEST_F(ABusGoneMad, IsFoundAgainWhenItHangsUp) {
  bus_.hangUp();
  expectItRecovers();
}
