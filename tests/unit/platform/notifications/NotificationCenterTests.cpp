// SPDX-License-Identifier: LGPL-3.0-or-later
#include <QObject>
#include <memory>

#include "platform/notifications/NotificationCenter.h"
#include "testing/main/Shown.h"

using velmora::platform::Notification;
using velmora::platform::NotificationCenter;

namespace {

class LocalNotifications : public testing::Test {
 protected:
  NotificationCenter::Handler say(const QString& word) {
    return [this, word](const Notification&) { heard.append(word); };
  }

  NotificationCenter center;
  QObject observer;
  QStringList heard;
};

TEST_F(LocalNotifications, AreDeliveredInsideThePostInTheOrderOfRegistration) {
  QObject other;
  center.addObserver(&observer, "Ready", say("first"));
  center.addObserver(&other, "Ready", say("second"));
  center.addObserver(&observer, "Ready", say("third"));
  center.postNotificationName("Ready");
  EXPECT_EQ(heard, (QStringList{"first", "second", "third"}));
}

TEST_F(LocalNotifications, CarryNameObjectAndDetails) {
  Notification told;
  center.addObserver(&observer, "BatchOpen",
                     [&told](const Notification& notification) { told = notification; });
  center.postNotificationName("BatchOpen", "patient 12", {{"path", "/studies/1"}});
  EXPECT_EQ(told.name, "BatchOpen");
  EXPECT_EQ(told.object, QVariant("patient 12"));
  EXPECT_EQ(told.userInfo, (QVariantMap{{"path", "/studies/1"}}));
}

TEST_F(LocalNotifications, CallWhoRegisteredTwiceTwice) {
  center.addObserver(&observer, "Ready", say("again"));
  center.addObserver(&observer, "Ready", say("again"));
  center.postNotificationName("Ready");
  EXPECT_EQ(heard.size(), 2);
}

TEST_F(LocalNotifications, ReachOnlyThoseWhoAskedForTheName) {
  center.addObserver(&observer, "Ready", say("ready"));
  center.addObserver(&observer, "ready", say("another case"));
  center.addObserver(&observer, "Steady", say("steady"));
  center.postNotificationName("Steady");
  EXPECT_EQ(heard, QStringList{"steady"});
}

TEST_F(LocalNotifications, StopWhenTheObserverIsRemoved) {
  QObject other;
  center.addObserver(&observer, "Ready", say("removed"));
  center.addObserver(&observer, "Steady", say("removed as well"));
  center.addObserver(&other, "Ready", say("stays"));
  center.removeObserver(&observer);
  center.postNotificationName("Ready");
  center.postNotificationName("Steady");
  EXPECT_EQ(heard, QStringList{"stays"});
}

TEST_F(LocalNotifications, AreNotHeardAnyMoreByWhoIsRemovedInTheMiddleOfAPost) {
  QObject other;
  center.addObserver(&observer, "Ready",
                     [this, &other](const Notification&) { center.removeObserver(&other); });
  center.addObserver(&other, "Ready", say("too late"));
  center.addObserver(&observer, "Ready", say("goes on"));
  center.postNotificationName("Ready");
  EXPECT_EQ(heard, QStringList{"goes on"});
}

TEST_F(LocalNotifications, MayBeTheLastThatTheirObserverHears) {
  center.addObserver(&observer, "Ready", [this](const Notification&) {
    center.removeObserver(&observer);
    heard.append(QStringLiteral("once"));
  });
  center.postNotificationName("Ready");
  center.postNotificationName("Ready");
  EXPECT_EQ(heard, QStringList{"once"});
}

TEST_F(LocalNotifications, PassADeadObserverBy) {
  auto shortLived = std::make_unique<QObject>();
  center.addObserver(shortLived.get(), "Ready", say("from the dead"));
  shortLived.reset();
  center.postNotificationName("Ready");
  EXPECT_TRUE(heard.isEmpty());
}

TEST_F(LocalNotifications, PassAnObserverByThatDiesInTheMiddleOfAPost) {
  auto shortLived = std::make_unique<QObject>();
  center.addObserver(&observer, "Ready", [&](const Notification&) { shortLived.reset(); });
  center.addObserver(shortLived.get(), "Ready", say("from the dead"));
  center.postNotificationName("Ready");
  EXPECT_TRUE(heard.isEmpty());
}

TEST_F(LocalNotifications, AreHeardFromTheNextPostOnByWhoIsAddedInTheMiddleOfOne) {
  bool added = false;
  center.addObserver(&observer, "Ready", [&](const Notification&) {
    if (!std::exchange(added, true)) center.addObserver(&observer, "Ready", say("newcomer"));
  });
  center.postNotificationName("Ready");
  EXPECT_TRUE(heard.isEmpty());
  center.postNotificationName("Ready");
  EXPECT_EQ(heard, QStringList{"newcomer"});
}

TEST_F(LocalNotifications, MayBePostedInsideAPost) {
  center.addObserver(&observer, "Outer", [this](const Notification&) {
    center.postNotificationName("Inner");
    heard.append(QStringLiteral("outer"));
  });
  center.addObserver(&observer, "Inner", say("inner"));
  center.postNotificationName("Outer");
  EXPECT_EQ(heard, (QStringList{"inner", "outer"}));
}

}  // namespace
