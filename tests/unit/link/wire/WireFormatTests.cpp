// SPDX-License-Identifier: LGPL-3.0-or-later
#include "link/wire/WireFormat.h"

#include <gtest/gtest.h>

#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDateTime>
#include <QPoint>
#include <limits>

#include "testing/main/Shown.h"

using namespace velmora::link;

using velmora::base::Result;

namespace {

const QString Name = QStringLiteral("org.velmora.growth.osirixLink");
const QString Object = QStringLiteral("OsirixLink");
const QString Key = QStringLiteral("Key");

QVariantMap sentDetails(const Result<Outgoing>& outgoing) {
  return outgoing->message.arguments().value(2).toMap();
}

Result<Incoming> received(const QVariantMap& details) {
  QDBusMessage signal = QDBusMessage::createSignal(Path, Interface, Member);
  signal.setArguments({Name, Object, details});
  return fromBus(signal);
}

/// Dictionaries within each other, `depth` of them.
QVariantMap nested(int depth) {
  QVariantMap map{{QStringLiteral("end"), true}};
  for (int i = 1; i < depth; ++i) map = {{Key, map}};
  return map;
}

struct Sent {
  QVariant value;
  const char* type;
};

}  // namespace

TEST(WireFormat, GivesEveryPropertyListTypeItsTypeOnTheBus) {
  const Sent table[] = {
      {QStringLiteral("Jörg"), "s"},
      {QString(), "s"},
      {true, "b"},
      {qint64(-5), "x"},
      {5, "x"},
      {5U, "x"},
      {QVariant::fromValue(short(5)), "x"},
      {QVariant::fromValue(uchar(5)), "x"},
      {QVariant::fromValue(5UL), "x"},
      {quint64(5), "x"},
      {0.5, "d"},
      {0.5F, "d"},
      {QByteArray("\0\xff", 2), "ay"},
      {QByteArray(), "ay"},
      {QDateTime::currentDateTime(), "(x)"},
      {QVariantList{1, QStringLiteral("a")}, "av"},
      {QVariantList{}, "av"},
      {QStringList{QStringLiteral("a")}, "av"},
      {QVariantMap{{Key, 1}}, "a{sv}"},
      {QVariantMap{}, "a{sv}"},
  };
  for (const Sent& row : table) {
    const Result<Outgoing> outgoing = toBus({Name, Object, {{Key, row.value}}});
    EXPECT_TRUE(outgoing.ok());
    EXPECT_TRUE(outgoing->dropped.isEmpty()) << row.type;
    const QVariant value = sentDetails(outgoing).value(Key);
    EXPECT_STREQ(QDBusMetaType::typeToSignature(value.metaType()), row.type) << row.value.typeName();
  }
}

TEST(WireFormat, NamesTheSignalItsNameAndItsObject) {
  const Result<Outgoing> outgoing = toBus({Name, Object, {}});
  EXPECT_EQ(outgoing->message.type(), QDBusMessage::SignalMessage);
  EXPECT_EQ(outgoing->message.path(), QStringLiteral("/org/velmora/DistributedNotificationCenter"));
  EXPECT_EQ(outgoing->message.interface(), QStringLiteral("org.velmora.DistributedNotificationCenter"));
  EXPECT_EQ(outgoing->message.member(), QStringLiteral("Notification"));
  EXPECT_EQ(outgoing->message.arguments().value(0).toString(), Name);
  EXPECT_EQ(outgoing->message.arguments().value(1).toString(), Object);
}

TEST(WireFormat, LeavesOutWhatIsNoPropertyListValueAndNamesIt) {
  const QVariant table[] = {
      QVariant(),
      QDate(2024, 5, 2),
      QDateTime(),
      QDateTime(QDate(10000, 1, 1), QTime(0, 0), Qt::UTC),
      QDateTime(QDate(-1, 1, 1), QTime(0, 0), Qt::UTC),
      QPoint(1, 2),
      QVariant::fromValue(QDBusObjectPath(QStringLiteral("/a"))),
      std::numeric_limits<quint64>::max(),
      QStringLiteral("12") + QChar(u'\0') + QStringLiteral("34"),
  };
  for (const QVariant& value : table) {
    const Result<Outgoing> outgoing = toBus({Name, Object, {{Key, value}, {QStringLiteral("Other"), 7}}});
    EXPECT_TRUE(outgoing.ok());
    EXPECT_EQ(sentDetails(outgoing), (QVariantMap{{QStringLiteral("Other"), qint64(7)}})) << value.typeName();
    ASSERT_EQ(outgoing->dropped.size(), 1) << value.typeName();
    EXPECT_TRUE(outgoing->dropped.first().startsWith(QStringLiteral("Key (")))
        << qPrintable(outgoing->dropped.first());
  }
}

TEST(WireFormat, LeavesOutOnlyTheBadElementOfAListOrDictionary) {
  const QVariantMap inner{{QStringLiteral("bad"), QPoint()}, {QStringLiteral("good"), 1}};
  const Result<Outgoing> outgoing =
      toBus({Name, Object, {{Key, QVariantList{QStringLiteral("a"), QPoint(), inner}}}});
  EXPECT_EQ(sentDetails(outgoing).value(Key).toList(),
            (QVariantList{QStringLiteral("a"), QVariantMap{{QStringLiteral("good"), qint64(1)}}}));
  EXPECT_EQ(outgoing->dropped, (QStringList{QStringLiteral("Key[1] (type QPoint)"),
                                            QStringLiteral("Key[2].bad (type QPoint)")}));
}

TEST(WireFormat, NamesNoMoreThanAFewOfVeryManyBadValues) {
  QVariantList many;
  for (int i = 0; i < 1000; ++i) many.append(QPoint());
  const QString longKey(100000, QLatin1Char('k'));
  const Result<Outgoing> outgoing = toBus({Name, Object, {{longKey, many}}});
  EXPECT_EQ(outgoing->dropped.size(), 9);
  EXPECT_EQ(outgoing->dropped.last(), QStringLiteral("992 more"));
  EXPECT_LT(outgoing->dropped.join(QString()).size(), 2000);
}

TEST(WireFormat, CutsNestingOffAtItsLimit) {
  const Result<Outgoing> within = toBus({Name, Object, nested(MaximumDepth)});
  EXPECT_TRUE(within->dropped.isEmpty());
  EXPECT_EQ(sentDetails(within), nested(MaximumDepth));
  const Result<Outgoing> beyond = toBus({Name, Object, nested(MaximumDepth + 1)});
  EXPECT_EQ(beyond->dropped.size(), 1);
  EXPECT_TRUE(beyond->dropped.value(0).endsWith(QStringLiteral("(nested too deeply)")));
  EXPECT_EQ(toBus({Name, Object, nested(10000)})->dropped.size(), 1);
}

TEST(WireFormat, RefusesNamesThatTheBusWouldCutShort) {
  const QString cut = QStringLiteral("a") + QChar(u'\0');
  EXPECT_FALSE(toBus({cut, Object, {}}).ok());
  EXPECT_FALSE(toBus({Name, cut, {}}).ok());
}

TEST(WireFormat, RefusesWhatIsLargerThanItsLimit) {
  const auto refusalOf = [](const QVariantMap& details) { return toBus({Name, Object, details}).error(); };
  EXPECT_TRUE(refusalOf({{Key, QByteArray(MaximumSize - 1000, 'x')}}).isNull());
  EXPECT_EQ(refusalOf({{Key, QByteArray(MaximumSize, 'x')}}), QStringLiteral("larger than 32 MiB"));
  // Two bytes each in UTF-8.
  EXPECT_FALSE(refusalOf({{Key, QString(MaximumSize / 2, QChar(u'ö'))}}).isNull());
  EXPECT_TRUE(refusalOf({{Key, QString(MaximumSize / 2, QLatin1Char('o'))}}).isNull());
  EXPECT_FALSE(refusalOf({{QString(MaximumSize, QLatin1Char('k')), true}}).isNull());
  EXPECT_FALSE(refusalOf({{Key, QVariantList(MaximumSize / 16, true)}}).isNull());
  const QByteArray half(MaximumSize / 2, 'x');
  EXPECT_FALSE(refusalOf({{Key, half}, {QStringLiteral("Other"), half}}).isNull());
}

TEST(WireFormat, RefusesAnArrivedMessageLargerThanItsLimit) {
  EXPECT_TRUE(received({{Key, QByteArray(MaximumSize - 1000, 'x')}}).ok());
  EXPECT_EQ(received({{Key, QByteArray(MaximumSize, 'x')}}).error(), QStringLiteral("larger than 32 MiB"));
}

TEST(WireFormat, RefusesSignalsThatAreNoNotification) {
  const QVariantList table[] = {{},
                                {Name},
                                {Name, Object},
                                {1, Object, QVariantMap()},
                                {Name, 1, QVariantMap()},
                                {Name, Object, QVariantMap(), 1}};
  for (const QVariantList& arguments : table) {
    QDBusMessage signal = QDBusMessage::createSignal(Path, Interface, Member);
    signal.setArguments(arguments);
    EXPECT_FALSE(fromBus(signal).ok()) << arguments.size();
  }
}

TEST(WireFormat, KnowsWhichNamesTheBusCanSelectBy) {
  EXPECT_TRUE(canBeMatched(Name));
  EXPECT_TRUE(canBeMatched(QString()));
  EXPECT_TRUE(canBeMatched(QStringLiteral("a \\ \" ö")));
  EXPECT_FALSE(canBeMatched(QStringLiteral("it's")));
  EXPECT_FALSE(canBeMatched(QString(1, QChar(u'\0'))));
}
