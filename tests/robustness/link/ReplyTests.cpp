// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Replies on their way through the queue and a real bus.
#include <gtest/gtest.h>

#include "desktop/notifications/QtDistributedNotificationCenter.h"
#include "link/protocol/LinkProtocol.h"
#include "testing/bus/LinkOnTheBus.h"
#include "testing/bus/Mailbox.h"
#include "testing/bus/PrivateBus.h"
#include "testing/main/Shown.h"
#include "testing/standins/LogRecorder.h"
#include "testing/standins/TestServices.h"
#include "velmora/osirix/OsirixExportQueue.h"
#include "velmora/resources/Notifications.h"

using namespace velmora;

using namespace velmora::testkit;
using namespace velmora::testkit::bus;

/// The export queue in virtual time, with a real bus behind it and a viewer that listens.
class Replies : public ::testing::Test {
 protected:
  Replies() {
    viewer_.addObserver(&observer_, GrowthLink, Reply, mailbox_.handler());
    EXPECT_TRUE(viewer_.flush());
  }

  void exportChart(const QString& identifier, qsizetype size) {
    queue_.batchExportToOsirix(
        {velmora::notifications::BatchExport,
         QVariantMap{{velmora::link::Identifier, identifier}, {velmora::link::JPEG, QByteArray(size, 'x')}},
         {}});
  }
  QString nextIdentifier() { return mailbox_.takeDetails().value(velmora::link::Identifier).toString(); }

  testkit::PrivateBus bus_;
  testkit::TestServices desktop_{{{QStringLiteral("CFBundleIdentifier"), Growth}}};
  LogRecorder log_;
  QObject observer_;
  Mailbox mailbox_;
  desktop::QtDistributedNotificationCenter viewer_{bus_.address()};
  desktop::QtDistributedNotificationCenter centre_{bus_.address()};
  velmora::OsirixExportQueue queue_{centre_, desktop_.runLoop, desktop_.mainBundle};
};

TEST_F(Replies, AboveTheLimitAreRefusedWithOneLineAndTheQueueGoesOn) {
  exportChart(QStringLiteral("1"), 1000);
  exportChart(QStringLiteral("2"), 33 * 1024 * 1024);
  exportChart(QStringLiteral("3"), 31 * 1024 * 1024);
  desktop_.runLoop.advance(13);
  EXPECT_EQ(nextIdentifier(), QStringLiteral("1"));
  EXPECT_EQ(nextIdentifier(), QStringLiteral("3"));
  EXPECT_TRUE(mailbox_.empty());
  EXPECT_TRUE(queue_.exportToOsirixArray().isEmpty());
  EXPECT_EQ(log_.lines().filter(QStringLiteral("is not sent: larger than 32 MiB")).size(), 1);
}

TEST_F(Replies, PostedWithoutABusAreLostAndTheQueueGoesOn) {
  bus_.stop();
  EXPECT_FALSE(centre_.flush());
  for (int i = 0; i < 3; ++i) exportChart(QString::number(i), 1000);
  desktop_.runLoop.advance(30);
  EXPECT_TRUE(queue_.exportToOsirixArray().isEmpty());
  EXPECT_EQ(log_.lines().filter(QStringLiteral("Zero items in array, exiting")).size(), 1);
  EXPECT_TRUE(mailbox_.empty());
}
