// SPDX-License-Identifier: LGPL-3.0-or-later
//
// The version check over real connections, from the address in the information dictionary to the alert.
#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QTest>

#include "desktop/runloop/QtRunLoop.h"
#include "desktop/web/QtWeb.h"
#include "orv/updates/OrvVersion.h"
#include "testing/main/Shown.h"
#include "testing/standins/TestServices.h"
#include "testing/web/LocalWebServer.h"

using namespace velmora;

using testkit::LocalWebServer;

namespace {

/// The real web for somebody in a hurry: what is told to wait as long as a person would, waits less here.
class HurriedWeb : public platform::Web {
 public:
  explicit HurriedWeb(platform::RunLoop& runLoop) : web_(runLoop) {}
  void load(const QUrl& url, double timeout, qint64 limit, const QObject* owner, DidLoad didLoad) override {
    EXPECT_EQ(timeout, 30);
    web_.load(url, patience, limit, owner, std::move(didLoad));
  }
  double patience = 30;  // seconds

 private:
  desktop::QtWeb web_;
};

class VersionCheckOverTheWeb : public testing::Test {
 protected:
  VersionCheckOverTheWeb() {
    for (const char* name : {"VersionCheckSuccessful", "VersionCheckUnsuccessful"}) {
      desktop.notificationCenter.addObserver(
          &observer, name,
          [this](const platform::Notification& notification) { heard.append(notification.name); });
    }
  }
  /// Checks as the user does and gives what the user then read: the message and the details.
  QStringList check() {
    const qsizetype before = heard.size();
    read.clear();
    QElapsedTimer time;
    time.start();
    orvVersion.checkVersion(true);
    EXPECT_LT(time.elapsed(), 1000) << "nobody waits for the web";
    if (!QTest::qWaitFor([&] { return heard.size() > before; }, 20000)) return {"no end"};
    return read;
  }
  /// The user reads the next alert and closes it.
  class Reader : public platform::Alerts {
   public:
    Reader(QStringList& read, int& answer) : read_(read), answer_(answer) {}
    int runModal(const platform::Alert& alert) override {
      read_ = QStringList{alert.messageText, alert.informativeText};
      return answer_;
    }
    void beginSheetModalForWindow(const platform::Alert&, QWidget*, const QObject*, DidEnd) override {
      ADD_FAILURE() << "a version check has no window of its own";
    }

   private:
    QStringList& read_;
    int& answer_;
  };

  static QByteArray feed(const QByteArray& version) {
    return "<?xml version=\"1.0\"?><rss version=\"2.0\" "
           "xmlns:sparkle=\"http://www.andymatuschak.org/xml-namespaces/sparkle\"><channel><item>"
           "<link>https://growth.example/get</link><description>&lt;p&gt;Better&lt;/p&gt;</description>"
           "<enclosure url=\"https://growth.example/file\" sparkle:version=\"" +
           version + "\" sparkle:shortVersionString=\"0." + version + "\"/></item></channel></rss>";
  }

  LocalWebServer server;
  testkit::TestServices desktop{{{"CFBundleName", "Growth"},
                                 {"CFBundleShortVersionString", "0.12"},
                                 {"CFBundleVersion", "12"},
                                 {"SUFeedURL", server.url("/feed").toString()}}};
  desktop::QtRunLoop runLoop;
  HurriedWeb web{runLoop};
  QStringList read;
  int answer = platform::AlertAlternateReturn;
  Reader reader{read, answer};
  platform::Services services = testkit::with(desktop.services, reader, runLoop, web);
  QObject observer;
  QStringList heard;
  OrvVersion orvVersion{services};

  const QString Failed = "The check for a new version failed";
};

}  // namespace

TEST_F(VersionCheckOverTheWeb, OffersANewerVersion) {
  server.at("/feed", LocalWebServer::page(feed("13")));
  answer = platform::AlertDefaultReturn;
  EXPECT_EQ(check(), (QStringList{"A new version of Growth is available",
                                  "Version 0.13 is available. You have version 0.12.\n\nBetter"}));
  EXPECT_EQ(heard, QStringList{"VersionCheckSuccessful"});
  EXPECT_EQ(desktop.workspace.opened, QList<QUrl>{QUrl("https://growth.example/get")});
  EXPECT_EQ(server.requests().size(), 1) << "nothing is sent besides the request";
}

TEST_F(VersionCheckOverTheWeb, IsContentWithTheSameVersion) {
  server.at("/feed", LocalWebServer::page(feed("12")));
  EXPECT_EQ(check(), (QStringList{"Growth is up to date", "Version 0.12 is the newest one."}));
  EXPECT_EQ(heard, QStringList{"VersionCheckSuccessful"});
}

TEST_F(VersionCheckOverTheWeb, IsContentWithAnOlderVersion) {
  server.at("/feed", LocalWebServer::page(feed("9")));
  EXPECT_EQ(check(), (QStringList{"Growth is up to date", "Version 0.12 is the newest one."}));
  EXPECT_EQ(heard, QStringList{"VersionCheckSuccessful"});
}

TEST_F(VersionCheckOverTheWeb, FailsOnAMalformedFeed) {
  for (const QByteArray& page :
       {QByteArray("<html><body>Please log in</body></html>"), feed("13").chopped(9), QByteArray()}) {
    server.at("/feed", LocalWebServer::page(page));
    EXPECT_EQ(check(), (QStringList{Failed, "The list of versions could not be understood."}));
  }
  EXPECT_EQ(heard.count("VersionCheckUnsuccessful"), 3);
}

TEST_F(VersionCheckOverTheWeb, FailsWithoutAPage) {
  server.at("/feed", LocalWebServer::status("404 Not Found"));
  EXPECT_EQ(check(), (QStringList{Failed, "The server answered with status 404."}));
  EXPECT_EQ(heard, QStringList{"VersionCheckUnsuccessful"});
}

TEST_F(VersionCheckOverTheWeb, FollowsAFeedThatHasMoved) {
  server.at("/feed", LocalWebServer::redirect("/new/feed", "301 Moved Permanently"));
  server.at("/new/feed", LocalWebServer::page(feed("13")));
  EXPECT_EQ(check().value(0), "A new version of Growth is available");
}

TEST_F(VersionCheckOverTheWeb, FailsWhenTheConnectionStalls) {
  web.patience = 0.3;
  for (const QByteArray& before : {QByteArray(), "HTTP/1.1 200 OK\r\n\r\n" + feed("13").left(100)}) {
    server.at("/feed", LocalWebServer::stall(before));
    EXPECT_EQ(check(), (QStringList{Failed, "The server took too long to answer."}));
  }
  EXPECT_EQ(heard.count("VersionCheckUnsuccessful"), 2);
}

TEST_F(VersionCheckOverTheWeb, FailsOn50Megabytes) {
  server.at("/feed", LocalWebServer::flood("HTTP/1.1 200 OK\r\n\r\n" + feed("13"), 50 * 1000 * 1000));
  EXPECT_EQ(check(), (QStringList{Failed, "The server's answer is too large."}));
  EXPECT_EQ(heard, QStringList{"VersionCheckUnsuccessful"});
  EXPECT_LT(server.bytesSent(), 16 * 1024 * 1024);
}

TEST_F(VersionCheckOverTheWeb, FailsOnAnAddressThatIsNone) {
  desktop.mainBundle = platform::Bundle({{"SUFeedURL", "file:///etc/passwd"}}, {});
  EXPECT_EQ(check(), (QStringList{Failed, "That is not the address of a web page."}));
}
