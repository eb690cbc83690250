// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Link requests that no viewer should send, at a program that must go on.
#include <gtest/gtest.h>

#include <QDateTime>

#include "link/protocol/LinkProtocol.h"
#include "testing/bus/LinkOnTheBus.h"
#include "testing/bus/PrivateBus.h"
#include "testing/bus/RawClient.h"
#include "testing/main/Shown.h"
#include "tests/robustness/link/WeatherProgram.h"

using namespace velmora::testkit;
using link_testing::WeatherProgram;
using namespace velmora::testkit::bus;
namespace keys = velmora::link;

namespace {

QVariant nested(int depth) {
  QVariant value = QStringLiteral("core");
  for (int i = 0; i < depth; ++i) value = QVariantList{value};
  return value;
}

}  // namespace

class HostileRequests : public ::testing::Test {
 protected:
  void send(const QVariantMap& details) {
    sendNotification(stranger_, {program_.linkName(), keys::RequestObject, details});
  }

  QVariantMap study(const QString& identifier) const {
    return {{keys::Identifier, identifier},
            {keys::Name, QStringLiteral("Doe^Jane")},
            {keys::OsiriXStudyID, QStringLiteral("1.2.840")}};
  }
  /// The next request is answered, and its patient shown.
  void expectTheNextIsAnswered() {
    const QString identifier = QStringLiteral("answered-%1").arg(++answered_);
    send(study(identifier));
    program_.waitFor(QStringLiteral("shown ") + identifier);
  }
  void expectNothingElseWasShown() const {
    for (const QString& line : program_.said().filter(QStringLiteral("shown "))) {
      EXPECT_TRUE(line.startsWith(QStringLiteral("shown answered-"))) << qPrintable(line);
    }
  }

  velmora::testkit::PrivateBus bus_;
  WeatherProgram program_{bus_};
  BusPeer stranger_{bus_.address()};
  int answered_ = 0;
};

TEST_F(HostileRequests, WithoutAnIdentifierChangeNothing) {
  send({});
  send({{keys::Name, QStringLiteral("Nobody")}});
  send({{keys::Identifier, QVariantList()}});
  expectTheNextIsAnswered();
  expectNothingElseWasShown();
  EXPECT_EQ(program_.quit(), 0);
  EXPECT_EQ(program_.log().filter(QStringLiteral("Value==nil")).size(), 3);
}

TEST_F(HostileRequests, WithAWrongTypeUnderAnyKeyDoNoHarm) {
  const QVariantList wrong{5,
                           -2.5,
                           true,
                           QByteArray("\0\xff", 2),
                           QVariantList{1, QStringLiteral("x")},
                           QVariantMap{{QStringLiteral("k"), 1}},
                           QStringLiteral("2024-04-29")};
  int withoutIdentifier = 0;
  for (const QString& key :
       {keys::Identifier, keys::Name, keys::DateOfBirth, keys::DateOfStudy, keys::OsiriXStudyID}) {
    for (const QVariant& value : wrong) {
      QVariantMap details = study(QStringLiteral("answered-before"));
      const bool text = value.typeId() == QMetaType::QString;
      if (key == keys::Identifier && text) continue;  // that one is right
      if (key == keys::Identifier) ++withoutIdentifier;
      details.insert(key, value);
      send(details);
    }
  }
  expectTheNextIsAnswered();
  expectNothingElseWasShown();
  EXPECT_EQ(program_.quit(), 0);
  EXPECT_EQ(program_.log().filter(QStringLiteral("Value==nil")).size(), withoutIdentifier);
}

TEST_F(HostileRequests, WithUnknownKeysAndValuesThirtyDeepAreReadWithoutThem) {
  QVariantMap details = study(QStringLiteral("answered-deep"));
  details.insert(QStringLiteral("Unknown"), QStringLiteral("value"));
  details.insert(QString(), 1);
  details.insert(QStringLiteral("Deep"), nested(30));
  details.insert(keys::OsiriXStudyID, nested(30));
  send(details);
  program_.waitFor(QStringLiteral("shown answered-deep"));
  expectTheNextIsAnswered();
  EXPECT_EQ(program_.quit(), 0);
  EXPECT_EQ(program_.log().filter(QStringLiteral("nested too deeply")).size(), 1);
}

TEST_F(HostileRequests, OfFortyMebibytesAreRefusedWithOneLine) {
  QVariantMap details = study(QStringLiteral("too large"));
  details.insert(keys::Name, QString(40 * 1024 * 1024, QLatin1Char('x')));
  send(details);
  details.insert(keys::Name, QByteArray(40 * 1024 * 1024, 'x'));
  send(details);
  expectTheNextIsAnswered();
  expectNothingElseWasShown();
  EXPECT_EQ(program_.quit(), 0);
  EXPECT_EQ(program_.log().filter(QStringLiteral("larger than 32 MiB")).size(), 2);
}

TEST_F(HostileRequests, WithTextsOfAbsurdLengthChangeNothing) {
  send(study(QString(100000, QLatin1Char('1'))));
  QVariantMap details = study(QStringLiteral("whose name?"));
  details.insert(keys::Name, QString(10 * 1024 * 1024, QLatin1Char('x')));
  send(details);
  expectTheNextIsAnswered();
  expectNothingElseWasShown();
  EXPECT_EQ(program_.quit(), 0);
  EXPECT_EQ(program_.log().filter(QStringLiteral("is longer than any patient's")).size(), 2);
}

TEST_F(HostileRequests, ThatAreNoTextGetNoFurtherThanTheBus) {
  RawClient client(bus_.address());
  ASSERT_TRUE(client.letIn());
  client.send(notificationFrame(program_.linkName().toUtf8(), keys::RequestObject.toUtf8(),
                                [](RawValues& body) { textEntry(body, "Identifier", "\xff\xfe\xc0\x80"); }));
  EXPECT_TRUE(client.waitForHangUp());
  expectTheNextIsAnswered();
  expectNothingElseWasShown();
  EXPECT_EQ(program_.quit(), 0);
}

TEST(TwoApplications, EachHearTheirOwnRequestsOnly) {
  velmora::testkit::PrivateBus bus;
  WeatherProgram one(bus, QStringLiteral("weather-one"));
  WeatherProgram two(bus, QStringLiteral("weather-two"));
  BusPeer viewer(bus.address());
  for (int i = 0; i < 20; ++i) {
    for (const WeatherProgram* program : {&one, &two}) {
      const QString mark = program == &one ? QStringLiteral("one-%1") : QStringLiteral("two-%1");
      sendNotification(
          viewer, {program->linkName(), keys::RequestObject, QVariantMap{{keys::Identifier, mark.arg(i)}}});
    }
  }
  one.waitFor(QStringLiteral("shown one-19"));
  two.waitFor(QStringLiteral("shown two-19"));
  EXPECT_EQ(one.said().filter(QStringLiteral("shown one-")).size(), 20);
  EXPECT_EQ(two.said().filter(QStringLiteral("shown two-")).size(), 20);
  EXPECT_EQ(one.said().filter(QStringLiteral("two-")), QStringList());
  EXPECT_EQ(two.said().filter(QStringLiteral("one-")), QStringList());
  EXPECT_EQ(one.quit(), 0);
  // The other does not mind.
  sendNotification(viewer, {two.linkName(), keys::RequestObject,
                            QVariantMap{{keys::Identifier, QStringLiteral("alone")}}});
  two.waitFor(QStringLiteral("shown alone"));
  EXPECT_EQ(two.quit(), 0);
}
