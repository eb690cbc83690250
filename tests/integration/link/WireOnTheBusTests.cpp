// SPDX-License-Identifier: LGPL-3.0-or-later
//
// What strangers can put on the bus, and what of it arrives.
#include <gtest/gtest.h>

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusSignature>
#include <QDBusUnixFileDescriptor>
#include <QDBusVariant>
#include <QDateTime>
#include <functional>
#include <limits>

#include "desktop/notifications/QtDistributedNotificationCenter.h"
#include "testing/bus/LinkOnTheBus.h"
#include "testing/bus/Mailbox.h"
#include "testing/bus/PrivateBus.h"
#include "testing/main/Shown.h"
#include "testing/standins/LogRecorder.h"

using namespace velmora;

using namespace velmora::testkit;
using namespace velmora::testkit::bus;

namespace {

const QString Key = QStringLiteral("Key");

QVariant structure(const std::function<void(QDBusArgument&)>& fill) {
  QDBusArgument argument;
  argument.beginStructure();
  fill(argument);
  argument.endStructure();
  return QVariant::fromValue(argument);
}

QVariant busDate(qint64 milliseconds) {
  return structure([milliseconds](QDBusArgument& argument) { argument << milliseconds; });
}

QDateTime utc(qint64 milliseconds) { return QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::UTC); }

/// Lists within each other, `depth` of them.
QVariant nestedLists(int depth) {
  QVariant value = true;
  for (int i = 0; i < depth; ++i) value = QVariantList{value};
  return value;
}

}  // namespace

/// A centre that observes one name and object, and a stranger.
class WireOnTheBus : public ::testing::Test {
 protected:
  WireOnTheBus() {
    centre_.addObserver(&observer_, GrowthLink, Request, mailbox_.handler());
    EXPECT_TRUE(centre_.flush());
  }

  void send(const QVariant& value) {
    sendNotification(stranger_, {GrowthLink, Request,
                                 QVariantMap{{Key, value}, {QStringLiteral("Other"), QStringLiteral("o")}}});
  }

  testkit::PrivateBus bus_;
  LogRecorder log_;
  QObject observer_;
  Mailbox mailbox_;
  desktop::QtDistributedNotificationCenter centre_{bus_.address()};
  BusPeer stranger_{bus_.address()};
};

TEST_F(WireOnTheBus, ReadsEveryTypeAsThePropertyListTypeThatItFits) {
  struct Row {
    QVariant sent;
    QVariant read;
  };
  QDBusArgument dates;
  dates.beginArray(qMetaTypeId<QDBusVariant>());
  dates << QDBusVariant(busDate(1)) << QDBusVariant(QStringLiteral("a"));
  dates.endArray();
  QDBusArgument numbers;
  numbers.beginMap(QMetaType::QString, QMetaType::Int);
  numbers.beginMapEntry();
  numbers << QStringLiteral("one") << 1;
  numbers.endMapEntry();
  numbers.endMap();
  const QVariant inVariants =
      QVariant::fromValue(QDBusVariant(QVariant::fromValue(QDBusVariant(QStringLiteral("deep")))));
  const Row table[] = {
      {QStringLiteral("Jörg"), QStringLiteral("Jörg")},
      {QString(), QStringLiteral("")},
      {true, true},
      {std::numeric_limits<qint64>::min(), std::numeric_limits<qint64>::min()},
      {-5, qint64(-5)},
      {5U, qint64(5)},
      {QVariant::fromValue(short(-5)), qint64(-5)},
      {QVariant::fromValue(ushort(5)), qint64(5)},
      {QVariant::fromValue(uchar(5)), qint64(5)},
      {quint64(5), qint64(5)},
      {0.25, 0.25},
      {QByteArray("\0\xff\x01", 3), QByteArray("\0\xff\x01", 3)},
      {QByteArray(), QByteArray()},
      {busDate(1714651200000), utc(1714651200000)},
      {busDate(-62135596800000), utc(-62135596800000)},
      {QStringList{QStringLiteral("a"), QStringLiteral("b")},
       QVariantList{QStringLiteral("a"), QStringLiteral("b")}},
      {QVariant::fromValue(QList<qlonglong>{1, 2}), QVariantList{qint64(1), qint64(2)}},
      {QVariant::fromValue(QList<double>{0.5}), QVariantList{0.5}},
      {QVariantList{1, QVariantList{}, busDate(7)}, QVariantList{qint64(1), QVariantList{}, utc(7)}},
      {QVariantMap{{Key, QVariantMap{{Key, 1}}}}, QVariantMap{{Key, QVariantMap{{Key, qint64(1)}}}}},
      {QVariantMap{}, QVariantMap{}},
      {QVariant::fromValue(dates), QVariantList{utc(1), QStringLiteral("a")}},
      {QVariant::fromValue(numbers), QVariantMap{{QStringLiteral("one"), qint64(1)}}},
      {inVariants, QStringLiteral("deep")},
  };
  for (const Row& row : table) {
    send(row.sent);
    const QVariantMap details = mailbox_.takeDetails();
    const QVariant read = details.value(Key);
    EXPECT_EQ(read.metaType().name(), std::string(row.read.metaType().name())) << row.sent.typeName();
    EXPECT_EQ(read, row.read) << row.sent.typeName();
    EXPECT_EQ(details.size(), 2);
  }
  EXPECT_EQ(log_.lines(), QStringList());
}

TEST_F(WireOnTheBus, LeavesOutWhatHasNoPropertyListTypeWithOneLogLine) {
  QDBusArgument byNumber;
  byNumber.beginMap(QMetaType::Int, QMetaType::QString);
  byNumber.beginMapEntry();
  byNumber << 1 << QStringLiteral("one");
  byNumber.endMapEntry();
  byNumber.endMap();
  const QVariant table[] = {
      QVariant::fromValue(QDBusObjectPath(QStringLiteral("/a"))),
      QVariant::fromValue(QDBusSignature(QStringLiteral("a{sv}"))),
      QVariant::fromValue(QDBusUnixFileDescriptor(0)),
      std::numeric_limits<quint64>::max(),
      structure([](QDBusArgument& argument) { argument << qint64(1) << qint64(2); }),
      structure([](QDBusArgument& argument) { argument << QStringLiteral("a"); }),
      QVariant::fromValue(byNumber),
      busDate(std::numeric_limits<qint64>::min()),
      busDate(std::numeric_limits<qint64>::max()),
      busDate(253402300800000),
  };
  int lines = 0;
  for (const QVariant& value : table) {
    send(value);
    EXPECT_EQ(mailbox_.takeDetails(), (QVariantMap{{QStringLiteral("Other"), QStringLiteral("o")}}));
    ++lines;
    ASSERT_EQ(log_.lines().size(), lines) << value.typeName();
    EXPECT_TRUE(log_.lines().last().contains(QStringLiteral("read without: Key (")))
        << qPrintable(log_.lines().last());
  }
}

TEST_F(WireOnTheBus, ReadsNestingUpToItsLimitAndCutsOffWhatIsDeeper) {
  // The details themselves are the first level.
  send(nestedLists(link::MaximumDepth - 1));
  EXPECT_EQ(mailbox_.takeDetails().value(Key), nestedLists(link::MaximumDepth - 1));
  EXPECT_EQ(log_.lines(), QStringList());
  for (const int depth : {link::MaximumDepth, 30}) {
    send(nestedLists(depth));
    EXPECT_TRUE(mailbox_.takeDetails().contains(QStringLiteral("Other"))) << depth;
    EXPECT_TRUE(log_.lines().value(log_.lines().size() - 1).contains(QStringLiteral("nested too deeply")));
  }
}

TEST_F(WireOnTheBus, TakesItsDeepestMessageThroughTheRealBus) {
  QVariant value = QDateTime::fromMSecsSinceEpoch(1, Qt::UTC);
  for (int i = 0; i < link::MaximumDepth; ++i) value = QVariantMap{{Key, value}};
  centre_.postNotificationName(GrowthLink, Request, value.toMap());
  EXPECT_EQ(mailbox_.takeDetails(), value.toMap());
  EXPECT_EQ(log_.lines(), QStringList());
}

TEST_F(WireOnTheBus, IgnoresSignalsOfAnotherShape) {
  sendNotification(stranger_, {});
  sendNotification(stranger_, {GrowthLink});
  sendNotification(stranger_, {GrowthLink, Request});
  sendNotification(stranger_, {GrowthLink, Request, QStringLiteral("no dictionary")});
  sendNotification(stranger_, {GrowthLink, Request, QVariant::fromValue(QMap<QString, QVariant>()), 1});
  sendNotification(
      stranger_,
      {GrowthLink, QVariant::fromValue(QDBusObjectPath(QStringLiteral("/OsirixLink"))), QVariantMap()});
  send(1);
  EXPECT_EQ(mailbox_.takeDetails().value(Key), QVariant(qint64(1)));
  EXPECT_TRUE(mailbox_.empty());
}

TEST_F(WireOnTheBus, RefusesAnArrivedMessageAboveItsLimitWithOneLineAndHearsTheNext) {
  send(QByteArray(33 * 1024 * 1024, 'x'));
  send(1);
  EXPECT_EQ(mailbox_.takeDetails().value(Key), QVariant(qint64(1)));
  EXPECT_TRUE(mailbox_.empty());
  ASSERT_EQ(log_.lines().size(), 1);
  EXPECT_TRUE(log_.lines().first().endsWith(QStringLiteral("is refused: larger than 32 MiB")));
}

TEST_F(WireOnTheBus, HearsEverythingAfterMoreThanAReceiverMayLeaveUnread) {
  for (int i = 0; i < 5; ++i) send(QByteArray(31 * 1024 * 1024, 'x'));
  send(1);
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(mailbox_.takeDetails().value(Key).toByteArray().size(), 31 * 1024 * 1024) << i;
  }
  EXPECT_EQ(mailbox_.takeDetails().value(Key), QVariant(qint64(1)));
}
