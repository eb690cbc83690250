// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/activation/SingleInstance.h"

#include <QDBusVirtualObject>
#include <QElapsedTimer>
#include <QTest>
#include <atomic>
#include <thread>

#include "desktop/runloop/QtRunLoop.h"
#include "testing/bus/PrivateBus.h"
#include "testing/files/EnvironmentVariable.h"
#include "testing/main/Shown.h"
#include "testing/standins/LogRecorder.h"
#include "tests/unit/desktop/activation/DesktopBus.h"

using namespace velmora;

using testing_support::DesktopPeer;
using velmora::desktop::ActivationRequest;
using velmora::desktop::SingleInstance;
using velmora::testkit::LogRecorder;
using Kind = ActivationRequest::Kind;
using Outcome = SingleInstance::Outcome;

namespace {

const QString Identifier = QStringLiteral("org.velmora.desk-test");

ActivationRequest opening(const QStringList& files) { return {Kind::Open, files, {}, {}}; }

/// A program that keeps what it is asked for.
class Program {
 public:
  explicit Program(platform::RunLoop& runLoop, std::chrono::milliseconds patience = std::chrono::seconds(30))
      : activation(runLoop, patience) {}
  Outcome begin(const ActivationRequest& request = {}) { return activation.begin(Identifier, request); }
  void listen() {
    activation.deliverTo(&owner, [this](const ActivationRequest& request) {
      if (!ready) return false;
      done.append(request);
      return true;
    });
  }
  bool waitForRequests(int count) {
    return QTest::qWaitFor([&] { return done.size() >= count; }, 30000);
  }

  bool ready = true;
  QList<ActivationRequest> done;
  QObject owner;
  SingleInstance activation;
};

class ActivationOnABus : public testing::Test {
 protected:
  testkit::PrivateBus bus;
  testkit::EnvironmentVariable variable{"DBUS_SESSION_BUS_ADDRESS", bus.address().toLocal8Bit()};
  desktop::QtRunLoop runLoop;
};

TEST_F(ActivationOnABus, MakesTheFirstProgramTheOne) {
  Program first(runLoop);
  EXPECT_EQ(first.begin(), Outcome::Serving);
  DesktopPeer stranger(bus.address());
  EXPECT_TRUE(stranger.nameIsTaken(Identifier));
}

TEST_F(ActivationOnABus, HandsTheFilesOfTheSecondProgramToTheFirst) {
  Program first(runLoop);
  Program second(runLoop);
  ASSERT_EQ(first.begin(), Outcome::Serving);
  first.listen();
  const ActivationRequest files =
      opening({QStringLiteral("/records/12 %2F#1?.growth"), QStringLiteral("/records/Größe & 3.growth")});
  EXPECT_EQ(second.begin(files), Outcome::HandedOver);
  ASSERT_TRUE(first.waitForRequests(1));
  EXPECT_EQ(first.done, QList<ActivationRequest>{files});
}

TEST_F(ActivationOnABus, HandsOverEveryKindOfRequestWithItsToken) {
  Program first(runLoop);
  ASSERT_EQ(first.begin(), Outcome::Serving);
  first.listen();
  const QList<ActivationRequest> requests{
      {Kind::Activate, {}, {}, QStringLiteral("token-1")},
      {Kind::Open, {QStringLiteral("/a")}, {}, QStringLiteral("token_TIME7")},
      {Kind::Print, {QStringLiteral("/a"), QStringLiteral("/b")}, {}, {}},
      {Kind::Action, {}, QStringLiteral("preferences"), {}}};
  for (const ActivationRequest& request : requests) {
    Program next(runLoop);
    EXPECT_EQ(next.begin(request), Outcome::HandedOver);
  }
  ASSERT_TRUE(first.waitForRequests(4));
  EXPECT_EQ(first.done, requests);
}

TEST_F(ActivationOnABus, HandsOverMoreFilesThanOneRequestMayNameInParts) {
  Program first(runLoop);
  ASSERT_EQ(first.begin(), Outcome::Serving);
  first.listen();
  QStringList files;
  for (int i = 0; i < 250; ++i) files.append(QStringLiteral("/%1").arg(i));
  Program second(runLoop);
  EXPECT_EQ(second.begin(opening(files)), Outcome::HandedOver);
  EXPECT_TRUE(second.activation.rest().files.isEmpty());
  ASSERT_TRUE(first.waitForRequests(3));
  QStringList arrived;
  for (const ActivationRequest& part : first.done) {
    EXPECT_EQ(part.kind, Kind::Open);
    EXPECT_LE(part.files.size(), 100);
    arrived += part.files;
  }
  EXPECT_EQ(arrived, files) << "all of them, once, in order";
}

TEST_F(ActivationOnABus, IsRefusedWhenTooMuchWaitsAndSaysHowMuchWasNotTaken) {
  Program first(runLoop);
  ASSERT_EQ(first.begin(), Outcome::Serving);
  QStringList files;
  for (int i = 0; i < 100 * 100 + 50; ++i) files.append(QStringLiteral("/%1").arg(i));
  const LogRecorder log;
  Program second(runLoop);
  EXPECT_EQ(second.begin(opening(files)), Outcome::Refused) << "it runs, and it is not ending";
  EXPECT_EQ(second.activation.rest().files, files.mid(100 * 100));
  EXPECT_TRUE(second.activation.refusal().contains("too many requests wait already"));
  EXPECT_TRUE(second.activation.refusal().contains("files not taken: 50"));
}

TEST_F(ActivationOnABus, KeepsWhatComesBeforeTheProgramIsReady) {
  Program first(runLoop);
  ASSERT_EQ(first.begin(), Outcome::Serving);
  for (const char* file : {"/1", "/2", "/3"})
    EXPECT_EQ(Program(runLoop).begin(opening({QString::fromLatin1(file)})), Outcome::HandedOver);
  first.listen();
  ASSERT_TRUE(first.waitForRequests(3));
  EXPECT_EQ(first.done.at(0).files, QStringList{"/1"});
  EXPECT_EQ(first.done.at(2).files, QStringList{"/3"});
}

TEST_F(ActivationOnABus, AnswersAtOnceAndWaitsWithTheRequestWhileAnAlertIsOpen) {
  Program first(runLoop);
  ASSERT_EQ(first.begin(), Outcome::Serving);
  first.listen();
  {
    const platform::RunLoop::ModalSession alert(runLoop);
    EXPECT_EQ(Program(runLoop).begin(opening({QStringLiteral("/1")})), Outcome::HandedOver);
    // A later event of the same loop comes after whatever the request has set going.
    bool later = false;
    QMetaObject::invokeMethod(
        qApp, [&later] { later = true; }, Qt::QueuedConnection);
    ASSERT_TRUE(QTest::qWaitFor([&later] { return later; }));
    EXPECT_TRUE(first.done.isEmpty());
  }
  ASSERT_TRUE(first.waitForRequests(1));
  EXPECT_EQ(first.done.first().files, QStringList{"/1"});
}

TEST_F(ActivationOnABus, TriesAgainWhatComesWhileTheUserIsAskedWhetherToQuit) {
  Program first(runLoop);
  ASSERT_EQ(first.begin(), Outcome::Serving);
  first.ready = false;
  first.listen();
  EXPECT_EQ(Program(runLoop).begin(opening({QStringLiteral("/1")})), Outcome::HandedOver);
  runLoop.performAfterDelay(&first.owner, 0.3, [&first] { first.ready = true; });
  ASSERT_TRUE(first.waitForRequests(1));
  EXPECT_EQ(first.done.size(), 1);
}

TEST_F(ActivationOnABus, GivesBackWhatWasAcceptedAndNotDoneAndLetsTheNextProgramIn) {
  Program first(runLoop);
  ASSERT_EQ(first.begin(), Outcome::Serving);
  EXPECT_EQ(Program(runLoop).begin(opening({QStringLiteral("/1")})), Outcome::HandedOver);
  const QList<ActivationRequest> left = first.activation.end();
  ASSERT_EQ(left.size(), 1);
  EXPECT_EQ(left.first().files, QStringList{"/1"});
  EXPECT_EQ(Program(runLoop).begin(), Outcome::Serving);
}

TEST_F(ActivationOnABus, TellsTheFirstRequestToAProgramThatTheBusHasStarted) {
  Program first(runLoop);
  ASSERT_EQ(first.begin(), Outcome::Serving);
  EXPECT_EQ(Program(runLoop).begin(opening({QStringLiteral("/1")})), Outcome::HandedOver);
  EXPECT_EQ(first.activation.firstRequest(std::chrono::seconds(30)), opening({QStringLiteral("/1")}));
  EXPECT_EQ(first.activation.firstRequest(std::chrono::milliseconds(1)), ActivationRequest());
}

TEST_F(ActivationOnABus, LeavesTheNameToOthersWhenAProgramIsSoonGone) {
  Program printing(runLoop);
  EXPECT_EQ(printing.activation.begin(Identifier, {}, false), Outcome::Alone);
  EXPECT_FALSE(DesktopPeer(bus.address()).nameIsTaken(Identifier));
  Program first(runLoop);
  ASSERT_EQ(first.begin(), Outcome::Serving);
  first.listen();
  Program next(runLoop);
  EXPECT_EQ(next.activation.begin(Identifier, {Kind::Print, {QStringLiteral("/a")}, {}, {}}, false),
            Outcome::HandedOver);
  EXPECT_TRUE(first.waitForRequests(1));
}

TEST_F(ActivationOnABus, LetsExactlyOneOfTwoThatBeginAtOnceServe) {
  for (int round = 0; round < 20; ++round) {
    std::array<std::unique_ptr<Program>, 2> programs{std::make_unique<Program>(runLoop),
                                                     std::make_unique<Program>(runLoop)};
    std::array<Outcome, 2> outcomes{};
    {
      std::jthread other([&] { outcomes[1] = programs[1]->begin(opening({QStringLiteral("/1")})); });
      outcomes[0] = programs[0]->begin(opening({QStringLiteral("/0")}));
    }
    const int one = outcomes[0] == Outcome::Serving ? 0 : 1;
    ASSERT_EQ(outcomes[static_cast<size_t>(one)], Outcome::Serving);
    ASSERT_EQ(outcomes[static_cast<size_t>(1 - one)], Outcome::HandedOver);
    Program& serving = *programs[static_cast<size_t>(one)];
    serving.listen();
    ASSERT_TRUE(serving.waitForRequests(1));
    EXPECT_EQ(serving.done, QList<ActivationRequest>{opening({QStringLiteral("/%1").arg(1 - one)})});
  }
}

/// Has the name and never answers.
class Mute : public QDBusVirtualObject {
 public:
  QString introspect(const QString&) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection&) override {
    asked.append(message);
    return true;
  }
  QList<QDBusMessage> asked;
};

TEST_F(ActivationOnABus, GoesOnAloneWhenTheOtherDoesNotAnswer) {
  DesktopPeer stranger(bus.address());
  Mute mute;
  ASSERT_TRUE(stranger.bus.registerVirtualObject("/org/velmora/desk_test", &mute));
  ASSERT_TRUE(stranger.takesName(Identifier));
  const LogRecorder log;
  constexpr std::chrono::milliseconds Patience{300};
  Program second(runLoop, Patience);
  QElapsedTimer since;
  since.start();
  EXPECT_EQ(second.begin(opening({QStringLiteral("/1")})), Outcome::Alone);
  EXPECT_GE(since.elapsed(), Patience.count() / 2) << "it was given time";
  ASSERT_EQ(log.lines().size(), 1) << qPrintable(log.lines().join('\n'));
  EXPECT_TRUE(log.lines().first().contains("does not answer"));
}

TEST_F(ActivationOnABus, DoesNotTakeUpWhatTheSenderHasGivenUp) {
  Program first(runLoop);
  ASSERT_EQ(first.begin(), Outcome::Serving);
  first.listen();
  const LogRecorder log;
  DesktopPeer stranger(bus.address());
  const QDBusMessage late = stranger.open({"file:///late"}, {{"velmora-deadline", qint64(1)}});
  EXPECT_EQ(late.type(), QDBusMessage::ErrorMessage);
  EXPECT_EQ(stranger.open({"file:///in-time"}).type(), QDBusMessage::ReplyMessage);
  ASSERT_TRUE(first.waitForRequests(1));
  EXPECT_EQ(first.done.size(), 1);
  EXPECT_EQ(first.done.first().files, QStringList{"/in-time"});
  EXPECT_EQ(log.lines().size(), 1);
}

TEST_F(ActivationOnABus, WaitsNoLongerThanItsPatienceForAFrozenBus) {
  bus.freeze();
  Program first(runLoop, std::chrono::milliseconds(300));
  QElapsedTimer since;
  since.start();
  EXPECT_EQ(first.begin(), Outcome::Alone);
  EXPECT_LT(since.elapsed(), 20000);
  bus.resume();
}

TEST(ActivationWithoutABus, GoesOnAlone) {
  const testkit::EnvironmentVariable variable("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus");
  desktop::QtRunLoop runLoop;
  Program first(runLoop);
  EXPECT_EQ(first.begin(), Outcome::Alone);
}

TEST(ActivationWithoutABus, GoesOnAloneWithoutAnIdentifier) {
  const testkit::PrivateBus bus;
  const testkit::EnvironmentVariable variable("DBUS_SESSION_BUS_ADDRESS", bus.address().toLocal8Bit());
  desktop::QtRunLoop runLoop;
  SingleInstance activation(runLoop);
  EXPECT_EQ(activation.begin(QString(), {}), Outcome::Alone);
}

TEST(ActivationOnAReturningBus, IsReachedAgainWhenTheBusIsBack) {
  testkit::PrivateBus bus{testkit::PrivateBus::Start::Later};
  bus.start();
  const testkit::EnvironmentVariable variable("DBUS_SESSION_BUS_ADDRESS", bus.address().toLocal8Bit());
  desktop::QtRunLoop runLoop;
  Program first(runLoop);
  ASSERT_EQ(first.begin(), Outcome::Serving);
  first.listen();
  bus.stop();
  bus.start();
  {
    DesktopPeer stranger(bus.address());
    ASSERT_TRUE(QTest::qWaitFor([&] { return stranger.nameIsTaken(Identifier); }, 60000));
  }
  EXPECT_EQ(Program(runLoop).begin(opening({QStringLiteral("/1")})), Outcome::HandedOver);
  EXPECT_TRUE(first.waitForRequests(1));
}

TEST(ActivationOnAReturningBus, IsReachedOnceThereIsABus) {
  testkit::PrivateBus bus{testkit::PrivateBus::Start::Later};
  const testkit::EnvironmentVariable variable("DBUS_SESSION_BUS_ADDRESS", bus.address().toLocal8Bit());
  desktop::QtRunLoop runLoop;
  Program first(runLoop);
  ASSERT_EQ(first.begin(), Outcome::Alone);
  bus.start();
  DesktopPeer stranger(bus.address());
  EXPECT_TRUE(QTest::qWaitFor([&] { return stranger.nameIsTaken(Identifier); }, 60000));
}

// What strangers say.

class ActivationAmongStrangers : public ActivationOnABus {
 protected:
  ActivationAmongStrangers() {
    EXPECT_EQ(first.begin(), Outcome::Serving);
    first.listen();
  }
  /// Whether what came before has been taken up, by taking up one thing more.
  void settle() {
    const auto before = first.done.size();
    EXPECT_EQ(stranger.call("Activate", {QVariantMap()}).type(), QDBusMessage::ReplyMessage);
    EXPECT_TRUE(first.waitForRequests(static_cast<int>(before) + 1));
    first.done.removeLast();
  }
  Program first{runLoop};
  DesktopPeer stranger{bus.address()};
};

TEST_F(ActivationAmongStrangers, RefusesCallsOfAnotherShapeWithOneLogLineEach) {
  const LogRecorder log;
  const QList<std::pair<QString, QVariantList>> calls{
      {"Activate", {}},
      {"Activate", {QStringLiteral("now")}},
      {"Open", {QStringLiteral("file:///a")}},
      {"Open", {QStringList{"file:///a"}}},
      {"Open", {QVariantList{QStringLiteral("file:///a")}, QVariantMap()}},
      {"Open", {QStringList(), QVariantMap()}},
      {"ActivateAction", {QStringLiteral("print"), QVariantMap()}},
      {"ActivateAction", {QStringLiteral("print"), QVariantList{7}, QVariantMap()}},
      {"ActivateAction", {QStringLiteral("print"), QVariantList(), QVariantMap()}},
      {"ActivateAction", {QString(), QVariantList(), QVariantMap()}},
      {"ActivateAction", {QString(200, u'a'), QVariantList(), QVariantMap()}},
      {"Quit", {}}};
  for (const auto& [member, arguments] : calls) {
    EXPECT_EQ(stranger.call(member, arguments).type(), QDBusMessage::ErrorMessage) << qPrintable(member);
  }
  EXPECT_EQ(log.lines().size(), calls.size()) << qPrintable(log.lines().join('\n'));
  settle();
  EXPECT_TRUE(first.done.isEmpty());
}

TEST_F(ActivationAmongStrangers, LeaveOutWhatIsNoLocalFile) {
  const LogRecorder log;
  stranger.open({"http://example.org/a", "file://elsewhere/a", "file:///a?b", "file:///a#b", "a", "",
                 "file:", "file:///with%00nul", "file:///" + QString(20000, u'a'), "file:///good",
                 "file:///a%20b", "file://localhost/c"});
  ASSERT_TRUE(first.waitForRequests(1));
  EXPECT_EQ(first.done.first().files, (QStringList{"/good", "/a b", "/c"}));
  EXPECT_EQ(log.lines().size(), 1);
}

TEST_F(ActivationAmongStrangers, RefuseThousandsOfFiles) {
  const LogRecorder log;
  QStringList locations;
  for (int i = 0; i < 5000; ++i) locations.append(QStringLiteral("file:///%1").arg(i));
  EXPECT_EQ(stranger.open(locations).type(), QDBusMessage::ErrorMessage);
  EXPECT_EQ(log.lines().size(), 1);
  settle();
  EXPECT_TRUE(first.done.isEmpty());
}

TEST_F(ActivationAmongStrangers, KeepTheNumberOfWaitingRequestsWithinBounds) {
  const platform::RunLoop::ModalSession alert(runLoop);
  int refused = 0;
  for (int i = 0; i < 150; ++i) {
    if (stranger.open({"file:///a"}).type() == QDBusMessage::ErrorMessage) ++refused;
  }
  EXPECT_EQ(refused, 50);
}

TEST_F(ActivationAmongStrangers, TakeOnlyATokenThatMayStandInTheEnvironment) {
  const auto tokenOf = [this](const QVariant& token) {
    first.done.clear();
    stranger.call("Activate", {QVariantMap{{"activation-token", token}}});
    EXPECT_TRUE(first.waitForRequests(1));
    return first.done.first().activationToken;
  };
  EXPECT_EQ(tokenOf("abc-1_TIME99"), "abc-1_TIME99");
  EXPECT_EQ(tokenOf("a\nb"), "");
  EXPECT_EQ(tokenOf(QString(1000, u'a')), "");
  EXPECT_EQ(tokenOf(7), "");
}

TEST_F(ActivationAmongStrangers, TellsWhoAsksWhatItUnderstands) {
  const QDBusMessage answer = stranger.call("Introspect", {}, "org.freedesktop.DBus.Introspectable");
  ASSERT_EQ(answer.type(), QDBusMessage::ReplyMessage);
  EXPECT_TRUE(answer.arguments().value(0).toString().contains("org.freedesktop.Application"));
}

}  // namespace
