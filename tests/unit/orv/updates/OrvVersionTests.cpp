// SPDX-License-Identifier: LGPL-3.0-or-later
#include "orv/updates/OrvVersion.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>

#include "testing/main/Shown.h"
#include "testing/standins/TestServices.h"

using namespace velmora;

using velmora::platform::Alert;
using velmora::platform::AlertAlternateReturn;
using velmora::platform::AlertDefaultReturn;

namespace {

const QVariantMap Growth = {{"CFBundleName", "Growth"},
                            {"CFBundleShortVersionString", "1.2"},
                            {"CFBundleVersion", "120"},
                            {"SUFeedURL", "https://growth.example/feed.xml"}};

QByteArray feed(const QByteArray& items) {
  return "<rss version=\"2.0\" "
         "xmlns:sparkle=\"http://www.andymatuschak.org/xml-namespaces/sparkle\"><channel>" +
         items + "</channel></rss>";
}

QByteArray version(const QByteArray& number, const QByteArray& shortNumber, const QByteArray& more = {}) {
  return feed("<item><link>https://growth.example/get</link>" + more +
              "<enclosure url=\"https://growth.example/file\" sparkle:version=\"" + number +
              "\" sparkle:shortVersionString=\"" + shortNumber + "\"/></item>");
}

class OrvVersionCheck : public testing::Test {
 protected:
  explicit OrvVersionCheck(const QVariantMap& info = Growth) : desktop(info) {
    for (const char* name : {"VersionCheckSuccessful", "VersionCheckUnsuccessful"}) {
      desktop.notificationCenter.addObserver(
          &observer, name,
          [this](const platform::Notification& notification) { heard.append(notification.name); });
    }
  }
  /// The answer arrives and is dealt with.
  void answer(const platform::WebAnswer& answer) {
    desktop.web.answer(answer);
    desktop.runLoop.settle();
  }
  static Alert offer(const QString& details) {
    return {"A new version of Growth is available", "Download", "Later", "", details};
  }
  static Alert notice(const QString& message, const QString& details) {
    return {message, "OK", "", "", details};
  }

  testkit::TestServices desktop;
  QObject observer;
  QStringList heard;
  OrvVersion orvVersion{desktop.services};
};

class OrvVersionWithoutAddress : public OrvVersionCheck {
 protected:
  OrvVersionWithoutAddress() : OrvVersionCheck({{"CFBundleName", "Growth"}, {"SUFeedURL", " "}}) {}
};

const QString Details = "Version 1.3 is available. You have version 1.2.";
const QString Failed = "The check for a new version failed";

}  // namespace

TEST_F(OrvVersionCheck, KnowsTheApplicationsName) { EXPECT_EQ(orvVersion.applicationName(), "Growth"); }

TEST_F(OrvVersionCheck, AsksForTheFeedAndNothingElse) {
  orvVersion.checkVersion(false);
  ASSERT_EQ(desktop.web.requests().size(), 1);
  EXPECT_EQ(desktop.web.requests().first().url, QUrl("https://growth.example/feed.xml"));
  EXPECT_EQ(desktop.web.requests().first().timeout, 30);
  EXPECT_EQ(desktop.web.requests().first().limit, 1024 * 1024);
  answer(version("120", "1.2"));
  EXPECT_EQ(desktop.web.requests().size(), 1);
}

TEST_F(OrvVersionCheck, AsksForNothingBeforeItIsCalled) {
  desktop.runLoop.advance(3600);
  EXPECT_TRUE(desktop.web.requests().isEmpty());
  EXPECT_TRUE(heard.isEmpty());
}

TEST_F(OrvVersionCheck, EndsUnsuccessfullyWithoutAnAnswerAndSuccessfullyWithOne) {
  orvVersion.checkVersion(false);
  desktop.runLoop.advance(60);
  EXPECT_TRUE(heard.isEmpty());
  answer(base::Failure{"The server answered with status 404."});
  EXPECT_EQ(heard, QStringList{"VersionCheckUnsuccessful"});
  orvVersion.checkVersion(false);
  answer(version("120", "1.2"));
  EXPECT_EQ(heard, (QStringList{"VersionCheckUnsuccessful", "VersionCheckSuccessful"}));
}

TEST_F(OrvVersionCheck, OffersANewerVersionEvenWhenNobodyAsked) {
  for (const bool userAsked : {false, true}) {
    heard.clear();
    desktop.alerts.expect(offer(Details), AlertAlternateReturn);
    orvVersion.checkVersion(userAsked);
    answer(version("121", "1.3"));
    EXPECT_TRUE(desktop.alerts.allCame());
    EXPECT_EQ(heard, QStringList{"VersionCheckSuccessful"});
    EXPECT_TRUE(desktop.workspace.opened.isEmpty()) << "later is later";
  }
}

TEST_F(OrvVersionCheck, OpensThePageOfTheNewVersionOnDownload) {
  desktop.alerts.expect(offer(Details), AlertDefaultReturn);
  orvVersion.checkVersion(false);
  answer(version("121", "1.3"));
  EXPECT_EQ(desktop.workspace.opened, QList<QUrl>{QUrl("https://growth.example/get")});
}

TEST_F(OrvVersionCheck, SaysWhatIsNew) {
  desktop.alerts.expect(offer(Details + "\n\nFaster\nSafer"), AlertAlternateReturn);
  orvVersion.checkVersion(false);
  answer(
      version("121", "1.3", "<description><![CDATA[<ul><li>Faster</li><li>Safer</li></ul>]]></description>"));
}

TEST_F(OrvVersionCheck, ComparesNumbersOfBuildsAndShowsVersions) {
  desktop.alerts.expect(offer("Version 1.10 is available. You have version 1.2."), AlertAlternateReturn);
  orvVersion.checkVersion(false);
  answer(version("1000", "1.10"));
  // The version for people decides nothing while there is a build to compare.
  orvVersion.checkVersion(false);
  answer(version("119", "9.9"));
  EXPECT_EQ(desktop.alerts.shown().size(), 1);
}

TEST_F(OrvVersionCheck, ShowsTheBuildWhereTheVersionIsTheSame) {
  desktop.alerts.expect(offer("Version 1.2 (121) is available. You have version 1.2 (120)."),
                        AlertAlternateReturn);
  orvVersion.checkVersion(false);
  answer(version("121", "1.2"));
}

TEST_F(OrvVersionCheck, ComparesShortVersionsWhereTheFeedHasNoOthers) {
  const auto shortOnly = [](const QByteArray& number) {
    return feed("<item><link>https://growth.example/get</link><sparkle:shortVersionString>" + number +
                "</sparkle:shortVersionString></item>");
  };
  orvVersion.checkVersion(false);
  answer(shortOnly("1.2.0"));
  EXPECT_TRUE(desktop.alerts.shown().isEmpty());
  desktop.alerts.expect(offer("Version 1.2.1 is available. You have version 1.2."), AlertAlternateReturn);
  orvVersion.checkVersion(false);
  answer(shortOnly("1.2.1"));
}

TEST_F(OrvVersionCheck, OffersNoDownloadWithoutAPage) {
  desktop.alerts.expect(
      notice("A new version of Growth is available", "Version 200 is available. You have version 1.2."),
      AlertDefaultReturn);
  orvVersion.checkVersion(false);
  answer(feed("<item><link>file:///bin/sh</link><sparkle:version>200</sparkle:version></item>"));
  EXPECT_TRUE(desktop.workspace.opened.isEmpty());
}

TEST_F(OrvVersionCheck, SaysOnlyToWhoAskedThatThereIsNoNewerVersion) {
  for (const char* number : {"120", "119", "120.0", "120b1"}) {
    orvVersion.checkVersion(false);
    answer(version(number, "1.2"));
  }
  EXPECT_TRUE(desktop.alerts.shown().isEmpty());
  for (const char* number : {"120", "119"}) {
    desktop.alerts.expect(notice("Growth is up to date", "Version 1.2 is the newest one."),
                          AlertDefaultReturn);
    orvVersion.checkVersion(true);
    answer(version(number, "1.2"));
    EXPECT_TRUE(desktop.alerts.allCame());
  }
  desktop.alerts.expect(notice("Growth is up to date", "Version 1.2 is the newest one."), AlertDefaultReturn);
  orvVersion.checkVersion(true);
  answer(feed(""));
  EXPECT_EQ(heard.count("VersionCheckSuccessful"), 7);
}

TEST_F(OrvVersionCheck, SaysOnlyToWhoAskedWhyItFailed) {
  orvVersion.checkVersion(false);
  answer(base::Failure{"The server took too long to answer."});
  orvVersion.checkVersion(false);
  answer(QByteArray("<html/>"));
  EXPECT_TRUE(desktop.alerts.shown().isEmpty());

  desktop.alerts.expect(notice(Failed, "The server took too long to answer."), AlertDefaultReturn);
  orvVersion.checkVersion(true);
  answer(base::Failure{"The server took too long to answer."});
  desktop.alerts.expect(notice(Failed, "The list of versions could not be understood."), AlertDefaultReturn);
  orvVersion.checkVersion(true);
  answer(QByteArray("<html/>"));
  EXPECT_EQ(heard.count("VersionCheckUnsuccessful"), 4);
  EXPECT_EQ(heard.size(), 4);
}

TEST_F(OrvVersionCheck, SaysSoWhenNothingTakesThePage) {
  struct NoBrowser : testkit::RecordingWorkspace {
    bool openURL(const QUrl&) override { return false; }
  } workspace;
  platform::Services services = testkit::with(desktop.services, workspace);
  OrvVersion version121(services);
  desktop.alerts.expect(offer(Details), AlertDefaultReturn);
  desktop.alerts.expect(notice("The page could not be opened", "https://growth.example/get"),
                        AlertDefaultReturn);
  version121.checkVersion(false);
  answer(version("121", "1.3"));
}

TEST_F(OrvVersionCheck, PostsItsResultBeforeAnybodyAnswersTheAlert) {
  desktop.alerts.expect(offer(Details), AlertAlternateReturn,
                        [this] { EXPECT_EQ(heard, QStringList{"VersionCheckSuccessful"}); });
  orvVersion.checkVersion(false);
  answer(version("121", "1.3"));
  desktop.alerts.expect(notice(Failed, "No."), AlertDefaultReturn,
                        [this] { EXPECT_EQ(heard.last(), "VersionCheckUnsuccessful"); });
  orvVersion.checkVersion(true);
  answer(base::Failure{"No."});
  EXPECT_EQ(heard.size(), 2);
}

TEST_F(OrvVersionCheck, IsJoinedByThoseThatAreCalledForMeanwhile) {
  orvVersion.checkVersion(false);
  orvVersion.checkVersion(false);
  EXPECT_EQ(desktop.web.requests().size(), 1);
  answer(version("120", "1.2"));
  EXPECT_EQ(heard, QStringList{"VersionCheckSuccessful"});
}

TEST_F(OrvVersionCheck, TellsTheResultWhenTheUserJoinsIn) {
  for (const bool userFirst : {false, true}) {
    desktop.alerts.expect(notice("Growth is up to date", "Version 1.2 is the newest one."),
                          AlertDefaultReturn);
    orvVersion.checkVersion(userFirst);
    orvVersion.checkVersion(!userFirst);
    answer(version("120", "1.2"));
    EXPECT_TRUE(desktop.alerts.allCame());
  }
  EXPECT_EQ(desktop.web.requests().size(), 2);
  // And nobody has asked the next time.
  orvVersion.checkVersion(false);
  answer(version("120", "1.2"));
  EXPECT_EQ(desktop.alerts.shown().size(), 2);
}

TEST_F(OrvVersionCheck, MayBeStartedAgainByWhoHearsOfItsEnd) {
  bool again = true;
  desktop.notificationCenter.addObserver(&observer, "VersionCheckUnsuccessful",
                                         [&](const platform::Notification&) {
                                           if (std::exchange(again, false)) orvVersion.checkVersion(false);
                                         });
  orvVersion.checkVersion(false);
  answer(base::Failure{"No."});
  EXPECT_EQ(desktop.web.requests().size(), 2);
  answer(version("120", "1.2"));
  EXPECT_EQ(heard, (QStringList{"VersionCheckUnsuccessful", "VersionCheckSuccessful"}));
}

TEST_F(OrvVersionCheck, WaitsWithItsResultWhileAnAlertIsOpen) {
  orvVersion.checkVersion(false);
  {
    const platform::RunLoop::ModalSession question(desktop.runLoop);
    answer(version("120", "1.2"));
    EXPECT_TRUE(heard.isEmpty());
  }
  desktop.runLoop.settle();
  EXPECT_EQ(heard, QStringList{"VersionCheckSuccessful"});
}

TEST_F(OrvVersionCheck, EndsWithItsOwner) {
  auto shortLived = std::make_unique<OrvVersion>(desktop.services);
  shortLived->checkVersion(false);
  shortLived.reset();
  answer(version("121", "1.3"));
  EXPECT_TRUE(heard.isEmpty());
}

TEST_F(OrvVersionWithoutAddress, IsUnsuccessfulAndNeverBeforeTheCallReturns) {
  orvVersion.checkVersion(false);
  EXPECT_TRUE(heard.isEmpty());
  desktop.runLoop.settle();
  EXPECT_EQ(heard, QStringList{"VersionCheckUnsuccessful"});
  EXPECT_TRUE(desktop.alerts.shown().isEmpty());

  desktop.alerts.expect(notice(Failed, "This application does not say where to look for new versions."),
                        AlertDefaultReturn);
  orvVersion.checkVersion(true);
  desktop.runLoop.settle();
  EXPECT_EQ(heard.size(), 2);
  EXPECT_TRUE(desktop.web.requests().isEmpty());
}
