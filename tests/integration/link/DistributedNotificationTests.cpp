// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Two processes, or two programs' worth of centres, and a real bus.
#include <gtest/gtest.h>

#include <QDateTime>
#include <QThread>
#include <future>
#include <memory>

#include "desktop/notifications/QtDistributedNotificationCenter.h"
#include "testing/bus/BusTap.h"
#include "testing/bus/LinkOnTheBus.h"
#include "testing/bus/Mailbox.h"
#include "testing/bus/PrivateBus.h"
#include "testing/files/Noise.h"
#include "testing/main/Shown.h"
#include "testing/process/Program.h"

using namespace velmora;

using namespace velmora::testkit;
using namespace velmora::testkit::bus;
using velmora::desktop::QtDistributedNotificationCenter;

class DistributedNotifications : public ::testing::Test {
 protected:
  int request(const QString& application, const QString& identifier, const QStringList& more = {}) {
    return Program(QStringLiteral(VELMORA_LINK), bus_.environment())
        .run(QStringList{QStringLiteral("request"), QStringLiteral("--application"), application,
                         QStringLiteral("--identifier"), identifier} +
             more);
  }

  testkit::PrivateBus bus_;
  QObject observer_;
  Mailbox mailbox_;
};

TEST_F(DistributedNotifications, BringARequestFromAnotherProcessWithEveryKeyAndType) {
  QtDistributedNotificationCenter centre(bus_.address());
  centre.addObserver(&observer_, GrowthLink, Request, mailbox_.handler());
  ASSERT_TRUE(centre.flush());

  ASSERT_EQ(
      request(Growth, QStringLiteral("12/345/6"),
              {QStringLiteral("--name"), QStringLiteral("Jörg Müller"), QStringLiteral("--birth-date"),
               QStringLiteral("2019-03-14"), QStringLiteral("--study-date"), QStringLiteral("2024-05-02"),
               QStringLiteral("--study-id"), QStringLiteral("1.2.840.1")}),
      0);

  const auto notification = mailbox_.take();
  ASSERT_TRUE(notification);
  EXPECT_EQ(notification->name, GrowthLink);
  EXPECT_EQ(notification->object, QVariant(Request));
  const QVariantMap expected{
      {QStringLiteral("Identifier"), QStringLiteral("12/345/6")},
      {QStringLiteral("Name"), QStringLiteral("Jörg Müller")},
      {QStringLiteral("DateOfBirth"), QDateTime(QDate(2019, 3, 14), QTime(12, 0)).toUTC()},
      {QStringLiteral("DateOfStudy"), QDateTime(QDate(2024, 5, 2), QTime(12, 0)).toUTC()},
      {QStringLiteral("OsiriXStudyID"), QStringLiteral("1.2.840.1")},
  };
  EXPECT_EQ(notification->userInfo, expected);
  EXPECT_EQ(notification->userInfo.value(QStringLiteral("DateOfBirth")).typeId(), int(QMetaType::QDateTime));
}

TEST_F(DistributedNotifications, LeaveOutTheKeysThatWereNotGiven) {
  QtDistributedNotificationCenter centre(bus_.address());
  centre.addObserver(&observer_, GrowthLink, Request, mailbox_.handler());
  ASSERT_TRUE(centre.flush());
  ASSERT_EQ(request(Growth, QStringLiteral("1")), 0);
  EXPECT_EQ(mailbox_.takeDetails(), (QVariantMap{{QStringLiteral("Identifier"), QStringLiteral("1")}}));
}

TEST_F(DistributedNotifications, CarryEveryPropertyListValueUnchanged) {
  const QVariantMap details{
      {QStringLiteral("text"), QStringLiteral("a\nb \U0001F600")},
      {QStringLiteral("no"), false},
      {QStringLiteral("whole"), std::numeric_limits<qint64>::max()},
      {QStringLiteral("number"), -0.1},
      {QStringLiteral("bytes"), noise(5'000'000)},
      {QStringLiteral("date"), QDateTime::fromMSecsSinceEpoch(-1, Qt::UTC)},
      {QStringLiteral("list"),
       QVariantList{qint64(1), QVariantList{}, QVariantMap{{QStringLiteral("k"), true}}}},
      {QStringLiteral("dictionary"), QVariantMap{{QString(), QByteArray("x")}}},
  };
  QtDistributedNotificationCenter receiver(bus_.address());
  receiver.addObserver(&observer_, GrowthLink, Request, mailbox_.handler());
  ASSERT_TRUE(receiver.flush());
  QtDistributedNotificationCenter sender(bus_.address());
  sender.postNotificationName(GrowthLink, Request, details);
  EXPECT_EQ(mailbox_.takeDetails(), details);
}

TEST_F(DistributedNotifications, NeverWakeAnApplicationWithItsOwnReplies) {
  constexpr qint64 Big = 1'000'000;
  constexpr qint64 Small = 20'000;  // what greeting the bus and a request take
  BusTap tap(bus_);
  QtDistributedNotificationCenter application(tap.address());
  application.addObserver(&observer_, GrowthLink, Request, mailbox_.handler());
  ASSERT_TRUE(application.flush());

  // A receiver, so that the reply is known to have gone through the bus.
  QtDistributedNotificationCenter viewer(bus_.address());
  Mailbox viewerMailbox;
  viewer.addObserver(&observer_, GrowthLink, Reply, viewerMailbox.handler());
  ASSERT_TRUE(viewer.flush());

  application.postNotificationName(GrowthLink, Reply, {{QStringLiteral("JPEG"), noise(Big)}});
  ASSERT_EQ(viewerMailbox.takeDetails().value(QStringLiteral("JPEG")).toByteArray().size(), Big);
  ASSERT_EQ(request(Growth, QStringLiteral("1")), 0);
  ASSERT_TRUE(mailbox_.take());
  EXPECT_TRUE(mailbox_.empty());
  EXPECT_GT(tap.bytesFromProgram(), Big);
  EXPECT_GT(tap.bytesToProgram(), 0);
  EXPECT_LT(tap.bytesToProgram(), Small);

  // The same bytes under the object that it does observe are counted.
  viewer.postNotificationName(GrowthLink, Request, {{QStringLiteral("JPEG"), noise(Big)}});
  ASSERT_TRUE(mailbox_.take());
  EXPECT_GT(tap.bytesToProgram(), Big);
}

TEST_F(DistributedNotifications, ReachOnlyTheApplicationTheyAreAddressedTo) {
  const QString other = QStringLiteral("org.velmora.hips");
  QtDistributedNotificationCenter growth(bus_.address());
  QtDistributedNotificationCenter hips(bus_.address());
  Mailbox hipsMailbox;
  growth.addObserver(&observer_, GrowthLink, Request, mailbox_.handler());
  hips.addObserver(&observer_, other + QStringLiteral(".osirixLink"), Request, hipsMailbox.handler());
  ASSERT_TRUE(growth.flush());
  ASSERT_TRUE(hips.flush());

  ASSERT_EQ(request(QStringLiteral("org.velmora.growth.osirixLink"), QStringLiteral("nobody")), 0);
  ASSERT_EQ(request(QStringLiteral("org.velmora"), QStringLiteral("nobody")), 0);
  ASSERT_EQ(request(Growth, QStringLiteral("for growth")), 0);
  ASSERT_EQ(request(other, QStringLiteral("for hips")), 0);

  EXPECT_EQ(hipsMailbox.takeDetails().value(QStringLiteral("Identifier")),
            QVariant(QStringLiteral("for hips")));
  EXPECT_EQ(mailbox_.takeDetails().value(QStringLiteral("Identifier")),
            QVariant(QStringLiteral("for growth")));
  EXPECT_TRUE(hipsMailbox.empty());
  EXPECT_TRUE(mailbox_.empty());
}

TEST_F(DistributedNotifications, ReachNobodyUnderAnotherObject) {
  QtDistributedNotificationCenter centre(bus_.address());
  centre.addObserver(&observer_, GrowthLink, Request, mailbox_.handler());
  ASSERT_TRUE(centre.flush());
  QtDistributedNotificationCenter sender(bus_.address());
  for (const char* object : {"OsirixLinkReturn", "osirixlink", "OsirixLink ", "", "OsirixLin", "*"}) {
    sender.postNotificationName(GrowthLink, QString::fromLatin1(object), {});
  }
  sender.postNotificationName(GrowthLink, Request, numbered(1));
  EXPECT_EQ(numberOf(mailbox_.takeDetails()), QVariant(qint64(1)));
  EXPECT_TRUE(mailbox_.empty());
}

TEST_F(DistributedNotifications, WithoutANameOrObjectReachOnlyThoseWhoAskedForNone) {
  QtDistributedNotificationCenter centre(bus_.address());
  centre.addObserver(&observer_, QString(), QString(), mailbox_.handler());
  ASSERT_TRUE(centre.flush());
  centre.postNotificationName(GrowthLink, Request, numbered(1));
  centre.postNotificationName(QStringLiteral(""), QStringLiteral(""), numbered(2));
  EXPECT_EQ(numberOf(mailbox_.takeDetails()), QVariant(qint64(2)));
  EXPECT_TRUE(mailbox_.empty());
}

TEST_F(DistributedNotifications, KeepTheOrderOfPosting) {
  QtDistributedNotificationCenter receiver(bus_.address());
  receiver.addObserver(&observer_, GrowthLink, Request, mailbox_.handler());
  ASSERT_TRUE(receiver.flush());
  QtDistributedNotificationCenter sender(bus_.address());
  for (int i = 0; i < 500; ++i) {
    QVariantMap details = numbered(i);
    if (i % 100 == 0) details.insert(QStringLiteral("JPEG"), noise(300'000));
    sender.postNotificationName(GrowthLink, Request, details);
  }
  for (int i = 0; i < 500; ++i) ASSERT_EQ(numberOf(mailbox_.takeDetails()), QVariant(qint64(i)));
}

TEST_F(DistributedNotifications, PostedBeforeTheCentreGoesAreStillSentThoughTheBusIsSlow) {
  QtDistributedNotificationCenter receiver(bus_.address());
  receiver.addObserver(&observer_, GrowthLink, Request, mailbox_.handler());
  ASSERT_TRUE(receiver.flush());
  auto sender = std::make_unique<QtDistributedNotificationCenter>(bus_.address());
  ASSERT_TRUE(sender->flush());
  bus_.freeze();
  for (int i = 0; i < 20; ++i) {
    sender->postNotificationName(GrowthLink, Request,
                                 {{QStringLiteral("Number"), i}, {QStringLiteral("JPEG"), noise(200'000)}});
  }
  // Twenty times what the socket takes: a centre that did not wait would be gone now, and they with it.
  std::future<void> gone = std::async(std::launch::async, [&] { sender.reset(); });
  EXPECT_EQ(gone.wait_for(std::chrono::milliseconds(300)), std::future_status::timeout);
  bus_.resume();
  gone.get();
  for (int i = 0; i < 20; ++i) ASSERT_EQ(numberOf(mailbox_.takeDetails()), QVariant(qint64(i)));
}

TEST_F(DistributedNotifications, AreAskedForAndPostedWithoutWaitingForTheBus) {
  QtDistributedNotificationCenter centre(bus_.address());
  ASSERT_TRUE(centre.flush());
  bus_.freeze();
  centre.addObserver(&observer_, GrowthLink, Request, mailbox_.handler());
  for (int i = 0; i < 20; ++i) {
    centre.postNotificationName(GrowthLink, Request,
                                {{QStringLiteral("Number"), i}, {QStringLiteral("JPEG"), noise(200'000)}});
  }
  centre.addObserver(&observer_, GrowthLink, Reply, mailbox_.handler());
  centre.removeObserver(&observer_, GrowthLink, Reply);
  EXPECT_FALSE(centre.flush(std::chrono::milliseconds(50)));
  EXPECT_TRUE(mailbox_.empty());
  bus_.resume();
  for (int i = 0; i < 20; ++i) ASSERT_EQ(numberOf(mailbox_.takeDetails()), QVariant(qint64(i)));
}

TEST_F(DistributedNotifications, CallEveryRegistrationOnceOffTheMainThread) {
  QtDistributedNotificationCenter centre(bus_.address());
  QThread* deliveringThread = nullptr;
  centre.addObserver(&observer_, GrowthLink, Request, [&](const platform::Notification& notification) {
    deliveringThread = QThread::currentThread();
    mailbox_.put(notification);
  });
  centre.addObserver(&observer_, GrowthLink, Request, mailbox_.handler());
  Mailbox end;
  centre.addObserver(&observer_, GrowthLink, Reply, end.handler());
  ASSERT_TRUE(centre.flush());
  centre.postNotificationName(GrowthLink, Request, numbered(1));
  centre.postNotificationName(GrowthLink, Reply, {});
  ASSERT_TRUE(end.take());
  EXPECT_TRUE(mailbox_.take());
  EXPECT_TRUE(mailbox_.take());
  EXPECT_TRUE(mailbox_.empty());
  EXPECT_NE(deliveringThread, nullptr);
  EXPECT_NE(deliveringThread, QThread::currentThread());
}
