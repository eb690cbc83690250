// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Removal, refusals, and life without a bus.
#include <gtest/gtest.h>

#include <QPoint>
#include <QTemporaryDir>
#include <future>
#include <stdexcept>
#include <thread>

#include "desktop/notifications/QtDistributedNotificationCenter.h"
#include "testing/bus/LinkOnTheBus.h"
#include "testing/bus/Mailbox.h"
#include "testing/bus/PrivateBus.h"
#include "testing/main/Shown.h"
#include "testing/standins/LogRecorder.h"

using namespace velmora;

using namespace velmora::testkit;
using namespace velmora::testkit::bus;
using velmora::desktop::QtDistributedNotificationCenter;

class DistributedObservers : public ::testing::Test {
 protected:
  /// Waits until everything posted so far has been delivered.
  void settle() {
    QObject last;
    Mailbox end;
    centre_.addObserver(&last, QStringLiteral("end"), QStringLiteral("end"), end.handler());
    centre_.postNotificationName(QStringLiteral("end"), QStringLiteral("end"), {});
    EXPECT_TRUE(end.take());
    centre_.removeObserver(&last);
  }
  void post(int number, const QString& object = Request) {
    centre_.postNotificationName(GrowthLink, object, numbered(number));
  }

  testkit::PrivateBus bus_;
  LogRecorder log_;
  QObject observer_;
  QObject other_;
  Mailbox mailbox_;
  Mailbox otherMailbox_;
  QtDistributedNotificationCenter centre_{bus_.address()};
};

TEST_F(DistributedObservers, HearNothingMoreOnceRemoved) {
  centre_.addObserver(&observer_, GrowthLink, Request, mailbox_.handler());
  centre_.addObserver(&other_, GrowthLink, Request, otherMailbox_.handler());
  post(1);
  EXPECT_EQ(numberOf(mailbox_.takeDetails()), QVariant(qint64(1)));
  EXPECT_TRUE(otherMailbox_.take());
  centre_.removeObserver(&observer_);
  post(2);
  EXPECT_EQ(numberOf(otherMailbox_.takeDetails()), QVariant(qint64(2)));
  EXPECT_TRUE(mailbox_.empty());
}

TEST_F(DistributedObservers, KeepTheRegistrationsThatWereNotNamed) {
  centre_.addObserver(&observer_, GrowthLink, Request, mailbox_.handler());
  centre_.addObserver(&observer_, GrowthLink, Reply, mailbox_.handler());
  centre_.addObserver(&observer_, QStringLiteral("another"), Request, mailbox_.handler());
  centre_.removeObserver(&observer_, GrowthLink, Request);
  post(1);
  post(2, Reply);
  EXPECT_EQ(numberOf(mailbox_.takeDetails()), QVariant(qint64(2)));
  centre_.removeObserver(&observer_, GrowthLink);
  post(3, Reply);
  centre_.postNotificationName(QStringLiteral("another"), Request, numbered(4));
  EXPECT_EQ(numberOf(mailbox_.takeDetails()), QVariant(qint64(4)));
  centre_.removeObserver(&observer_);
  centre_.postNotificationName(QStringLiteral("another"), Request, numbered(5));
  settle();
  EXPECT_TRUE(mailbox_.empty());
}

TEST_F(DistributedObservers, HearAgainWhenAddedAgain) {
  for (int i = 0; i < 3; ++i) {
    centre_.addObserver(&observer_, GrowthLink, Request, mailbox_.handler());
    post(i);
    EXPECT_EQ(numberOf(mailbox_.takeDetails()), QVariant(qint64(i)));
    centre_.removeObserver(&observer_);
    post(100);
  }
  settle();
  EXPECT_TRUE(mailbox_.empty());
}

TEST_F(DistributedObservers, MayRemoveThemselvesWhileTheyAreCalled) {
  centre_.addObserver(&observer_, GrowthLink, Request, [this](const platform::Notification& notification) {
    centre_.removeObserver(&observer_);
    mailbox_.put(notification);
  });
  // Registered later, so already picked for the delivery that removes it.
  centre_.addObserver(&observer_, GrowthLink, Request, mailbox_.handler());
  post(1);
  post(2);
  settle();
  EXPECT_EQ(numberOf(mailbox_.takeDetails()), QVariant(qint64(1)));
  EXPECT_TRUE(mailbox_.empty());
}

TEST_F(DistributedObservers, MayAddObserversAndPostAndFlushWhileTheyAreCalled) {
  bool flushed = false;
  centre_.addObserver(&observer_, GrowthLink, Request, [&](const platform::Notification&) {
    centre_.addObserver(&other_, GrowthLink, Reply, otherMailbox_.handler());
    post(2, Reply);
    flushed = centre_.flush();
  });
  post(1);
  EXPECT_EQ(numberOf(otherMailbox_.takeDetails()), QVariant(qint64(2)));
  settle();
  EXPECT_TRUE(flushed);
}

TEST_F(DistributedObservers, AreNotRunningAnyMoreWhenTheirRemovalReturns) {
  std::promise<void> entered;
  std::promise<void> removed;
  std::future<void> wasRemoved = removed.get_future();
  bool removedMeanwhile = true;
  centre_.addObserver(&observer_, GrowthLink, Request, [&](const platform::Notification&) {
    entered.set_value();
    // A removal that did not wait for this handler would return here.
    removedMeanwhile = wasRemoved.wait_for(std::chrono::milliseconds(300)) == std::future_status::ready;
  });
  post(1);
  ASSERT_EQ(entered.get_future().wait_for(Patience), std::future_status::ready);
  std::thread remover([&] {
    centre_.removeObserver(&observer_);
    removed.set_value();
  });
  remover.join();
  EXPECT_FALSE(removedMeanwhile);
}

TEST_F(DistributedObservers, AreRemovedWhenTheyAreDestroyed) {
  auto mortal = std::make_unique<QObject>();
  centre_.addObserver(mortal.get(), GrowthLink, Request, mailbox_.handler());
  post(1);
  EXPECT_TRUE(mailbox_.take());
  mortal.reset();
  post(2);
  settle();
  EXPECT_TRUE(mailbox_.empty());
}

TEST_F(DistributedObservers, ThatThrowCostOneLogLineAndNothingElse) {
  centre_.addObserver(&observer_, GrowthLink, Request,
                      [](const platform::Notification&) { throw std::runtime_error("Value==nil"); });
  centre_.addObserver(&observer_, GrowthLink, Request, mailbox_.handler());
  post(1);
  EXPECT_TRUE(mailbox_.take());
  ASSERT_EQ(log_.lines().size(), 1);
  EXPECT_TRUE(log_.lines().first().contains(QStringLiteral("Value==nil")));
}

TEST_F(DistributedObservers, OfANameTheBusCannotSelectByAreToldSo) {
  centre_.addObserver(&observer_, QStringLiteral("it's"), Request, mailbox_.handler());
  centre_.addObserver(&observer_, GrowthLink, Request, mailbox_.handler());
  post(1);
  EXPECT_TRUE(mailbox_.take());
  ASSERT_EQ(log_.lines().size(), 1);
  EXPECT_TRUE(log_.lines().first().contains(QStringLiteral("it's")));
}

TEST_F(DistributedObservers, GetWhatIsLeftOfAPostWithForeignValues) {
  centre_.addObserver(&observer_, GrowthLink, Request, mailbox_.handler());
  QVariantMap details = numbered(1);
  details.insert(QStringLiteral("Bad"), QPoint(1, 2));
  centre_.postNotificationName(GrowthLink, Request, details);
  EXPECT_EQ(mailbox_.takeDetails(), (QVariantMap{{QStringLiteral("Number"), qint64(1)}}));
  ASSERT_EQ(log_.lines().size(), 1);
  EXPECT_TRUE(log_.lines().first().endsWith(QStringLiteral("is sent without: Bad (type QPoint)")));
}

TEST_F(DistributedObservers, NeverSeeAPostAboveTheLimitButTheNextOne) {
  centre_.addObserver(&observer_, GrowthLink, Request, mailbox_.handler());
  centre_.postNotificationName(GrowthLink, Request,
                               {{QStringLiteral("JPEG"), QByteArray(33 * 1024 * 1024, 'x')}});
  post(2);
  EXPECT_EQ(numberOf(mailbox_.takeDetails()), QVariant(qint64(2)));
  ASSERT_EQ(log_.lines().size(), 1);
  EXPECT_TRUE(log_.lines().first().endsWith(QStringLiteral("is not sent: larger than 32 MiB")));
}

TEST(WithoutASessionBus, TheCentreWritesOneLogLineAndDoesNothing) {
  const QTemporaryDir folder;
  LogRecorder log;
  {
    QObject observer;
    Mailbox mailbox;
    QtDistributedNotificationCenter centre(QStringLiteral("unix:path=") +
                                           folder.filePath(QStringLiteral("none")));
    centre.addObserver(&observer, GrowthLink, Request, mailbox.handler());
    centre.addObserver(&observer, QStringLiteral("it's"), Request, mailbox.handler());
    centre.postNotificationName(GrowthLink, Request, {{QStringLiteral("Bad"), QPoint()}});
    centre.postNotificationName(GrowthLink, Request, {});
    EXPECT_FALSE(centre.flush());
    centre.removeObserver(&observer);
    EXPECT_TRUE(mailbox.empty());
  }
  ASSERT_EQ(log.lines().size(), 1) << qPrintable(log.lines().join(QLatin1Char('\n')));
  EXPECT_TRUE(log.lines().first().contains(QStringLiteral("the link is off")));
}

TEST(WithoutASessionBus, ACentreWhoseBusEndsWritesOneLogLineAndGoesOn) {
  testkit::PrivateBus bus;
  LogRecorder log;
  {
    QObject observer;
    Mailbox mailbox;
    QtDistributedNotificationCenter centre(bus.address());
    centre.addObserver(&observer, GrowthLink, Request, mailbox.handler());
    ASSERT_TRUE(centre.flush());
    bus.stop();
    EXPECT_FALSE(centre.flush());
    centre.postNotificationName(GrowthLink, Request, {});
    centre.addObserver(&observer, GrowthLink, Reply, mailbox.handler());
    centre.removeObserver(&observer);
    EXPECT_FALSE(centre.flush());
  }
  ASSERT_EQ(log.lines().size(), 1) << qPrintable(log.lines().join(QLatin1Char('\n')));
  EXPECT_TRUE(log.lines().first().contains(QStringLiteral("the link is off")));
}
