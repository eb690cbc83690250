// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/web/QtWeb.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QNetworkProxy>
#include <QSemaphore>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QTest>
#include <memory>
#include <optional>
#include <stdexcept>
#include <thread>

#include "desktop/runloop/QtRunLoop.h"
#include "testing/main/Shown.h"
#include "testing/standins/LogRecorder.h"
#include "testing/web/LocalWebServer.h"
#include "testing/web/TestCertificate.h"

using namespace velmora;

using testkit::LocalWebServer;
using velmora::desktop::QtRunLoop;
using velmora::desktop::QtWeb;
using velmora::platform::WebAnswer;

namespace {

constexpr qint64 Limit = 1024 * 1024;  // bytes
constexpr double Ample = 30;           // seconds: never reached where all goes well
constexpr double Short = 0.3;          // seconds: for those that are meant to run out of time

class WebPages : public testing::Test {
 protected:
  /// Asks for a page and gives the answer.
  WebAnswer get(const QUrl& url, double timeout = Ample, qint64 limit = Limit) {
    std::optional<WebAnswer> answer;
    web->load(url, timeout, limit, &owner, [&answer](const WebAnswer& came) { answer = came; });
    EXPECT_FALSE(answer) << "nothing is answered within the call";
    if (!QTest::qWaitFor([&answer] { return answer.has_value(); }, 20000)) return base::Failure{"no answer"};
    return *answer;
  }
  WebAnswer get(const QString& path, double timeout = Ample, qint64 limit = Limit) {
    return get(server.url(path), timeout, limit);
  }
  bool serverIsAlone() {
    return QTest::qWaitFor([this] { return server.openConnections() == 0; });
  }

  LocalWebServer server;
  QtRunLoop runLoop;
  QObject owner;
  std::unique_ptr<QtWeb> web = std::make_unique<QtWeb>(runLoop);
};

class EncryptedWebPages : public WebPages {
 protected:
  ~EncryptedWebPages() override { QSslConfiguration::setDefaultConfiguration(before); }
  void trustTheServer() {
    QSslConfiguration trusting = before;
    trusting.addCaCertificate(QSslCertificate(testkit::TestCertificate));
    QSslConfiguration::setDefaultConfiguration(trusting);
  }

  const QSslConfiguration before = QSslConfiguration::defaultConfiguration();
  LocalWebServer encrypted{LocalWebServer::Connection::Encrypted};
};

}  // namespace

TEST_F(WebPages, Arrive) {
  server.at("/feed", LocalWebServer::page("<rss/>"));
  const WebAnswer answer = get("/feed");
  EXPECT_TRUE(answer.ok()) << qPrintable(answer.error());
  EXPECT_EQ(answer.valueOr({}), "<rss/>");
  server.at("/empty", LocalWebServer::page(""));
  EXPECT_TRUE(get("/empty").ok());
}

TEST_F(WebPages, ArriveOnTheMainThread) {
  std::optional<std::thread::id> cameOn;
  server.at("/feed", LocalWebServer::page("x"));
  web->load(server.url("/feed"), Ample, Limit, &owner,
            [&cameOn](const WebAnswer&) { cameOn = std::this_thread::get_id(); });
  ASSERT_TRUE(QTest::qWaitFor([&cameOn] { return cameOn.has_value(); }));
  EXPECT_EQ(*cameOn, std::this_thread::get_id());
}

TEST_F(WebPages, AreAskedForWithoutAWordAboutTheUserOrTheMachine) {
  server.at("/feed?for=all", LocalWebServer::page("x"));
  EXPECT_TRUE(get("/feed?for=all").ok());
  ASSERT_EQ(server.requests().size(), 1);
  QList<QByteArray> headers = server.requests().first().headers;
  std::sort(headers.begin(), headers.end());
  const QByteArray host = server.url("/").authority().toUtf8();
  EXPECT_EQ(headers, (QList<QByteArray>{"Accept-Encoding: identity", "Accept-Language: *",
                                        "Connection: close", "Host: " + host, "User-Agent: Velmora"}));
}

TEST_F(WebPages, LeaveNoCookieBehind) {
  server.at("/feed", LocalWebServer::redirect("/there", "302 Found\r\nSet-Cookie: who=you; Path=/"));
  server.at("/there", LocalWebServer::page("x", "Set-Cookie: again=you; Path=/\r\n"));
  EXPECT_TRUE(get("/feed").ok());
  EXPECT_TRUE(get("/feed").ok());
  ASSERT_EQ(server.requests().size(), 4);
  for (const auto& request : server.requests()) {
    for (const QByteArray& header : request.headers) EXPECT_FALSE(header.toLower().startsWith("cookie"));
  }
}

TEST_F(WebPages, AreAskedForAgainEachTime) {
  server.at("/feed", LocalWebServer::page("x", "Cache-Control: max-age=86400\r\nETag: \"1\"\r\n"));
  EXPECT_TRUE(get("/feed").ok());
  server.at("/feed", LocalWebServer::page("y"));
  EXPECT_EQ(get("/feed").valueOr({}), "y");
  for (const QByteArray& header : server.requests().last().headers)
    EXPECT_FALSE(header.toLower().startsWith("if-")) << header.constData();
}

TEST_F(WebPages, AreFollowedToWhereTheyMoved) {
  server.at("/old", LocalWebServer::redirect("/newer"));
  server.at("/newer", LocalWebServer::redirect(server.url("/newest").toEncoded(), "308 Permanent Redirect"));
  server.at("/newest", LocalWebServer::page("here"));
  EXPECT_EQ(get("/old").valueOr({}), "here");
}

TEST_F(WebPages, AreNotFollowedInCircles) {
  server.at("/a", LocalWebServer::redirect("/b"));
  server.at("/b", LocalWebServer::redirect("/a"));
  EXPECT_EQ(get("/a").error(), "The server leads from one address to the next without end.");
  // The page and five moves, and Qt has a few more under way before it counts them.
  EXPECT_LE(server.requests().size(), 15);
}

TEST_F(EncryptedWebPages, ArriveFromAServerThatProvesWhoItIs) {
  encrypted.at("/feed", LocalWebServer::page("x"));
  EXPECT_EQ(get(encrypted.url("/feed")).error(), "A secure connection to the server could not be made.");
  EXPECT_TRUE(encrypted.requests().isEmpty());
  trustTheServer();
  EXPECT_EQ(get(encrypted.url("/feed")).valueOr({}), "x");
}

TEST_F(EncryptedWebPages, AreFollowedWhereTheConnectionIsAsSafe) {
  trustTheServer();
  server.at("/feed", LocalWebServer::redirect(encrypted.url("/a").toEncoded()));
  encrypted.at("/a", LocalWebServer::redirect("/b"));
  encrypted.at("/b", LocalWebServer::page("x"));
  EXPECT_EQ(get("/feed").valueOr({}), "x");
}

TEST_F(EncryptedWebPages, AreNotFollowedToWhereAnybodyCanRead) {
  trustTheServer();
  server.at("/feed", LocalWebServer::page("x"));
  encrypted.at("/feed", LocalWebServer::redirect(server.url("/feed").toEncoded()));
  EXPECT_EQ(get(encrypted.url("/feed")).error(), "The server leads to an address that is not safe.");
  EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(WebPages, AreNotFollowedOutOfTheWeb) {
  for (const char* location : {"file:///etc/passwd", "ftp://127.0.0.1/feed", "javascript:1"}) {
    server.at("/feed", LocalWebServer::redirect(location));
    EXPECT_EQ(get("/feed").error(), "The server leads to an address that is not safe.") << location;
  }
}

TEST_F(WebPages, ThatMovedNobodyKnowsWhereGiveTheirStatus) {
  server.at("/feed", LocalWebServer::status("302 Found"));
  EXPECT_EQ(get("/feed").error(), "The server answered with status 302.");
}

TEST_F(WebPages, ThatDoNotExistGiveTheirStatus) {
  EXPECT_EQ(get("/nowhere").error(), "The server answered with status 404.");
  for (const char* status :
       {"500 Internal Server Error", "204 No Content", "304 Not Modified", "418 Teapot"}) {
    server.at("/feed", LocalWebServer::status(status));
    EXPECT_EQ(get("/feed").error(),
              QString("The server answered with status %1.").arg(QString::fromLatin1(status).left(3)));
  }
}

TEST_F(WebPages, BehindAPasswordAskNobodyForIt) {
  server.at("/feed", LocalWebServer::status("401 Unauthorized", "WWW-Authenticate: Basic realm=\"x\"\r\n"));
  EXPECT_EQ(get("/feed").error(), "The server answered with status 401.");
}

TEST_F(WebPages, AreGivenUpWhereNobodyListens) {
  QUrl deserted;
  {
    const LocalWebServer gone;
    deserted = gone.url("/feed");
  }
  EXPECT_EQ(get(deserted).error(), "The server could not be reached.");
}

TEST_F(WebPages, AreGivenUpWhenTheServerStalls) {
  const QByteArray head = "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n";
  for (const QByteArray& before : {QByteArray(), head, head + "half a page"}) {
    server.at("/feed", LocalWebServer::stall(before));
    QElapsedTimer time;
    time.start();
    EXPECT_EQ(get("/feed", Short).error(), "The server took too long to answer.");
    EXPECT_LT(time.elapsed(), 5000);
    EXPECT_TRUE(serverIsAlone()) << "the connection is given up, too";
  }
}

TEST_F(WebPages, AreGivenUpWhenTheServerDripsWithoutEnd) {
  for (const QByteArray& head :
       {QByteArray("HTTP/1.1 200 OK\r\n\r\n"), QByteArray("HTTP/1.1 200 OK\r\nX-Long: ")}) {
    server.at("/feed", LocalWebServer::drip(head, 20));
    QElapsedTimer time;
    time.start();
    EXPECT_EQ(get("/feed", Short).error(), "The server took too long to answer.");
    EXPECT_GE(time.elapsed(), 250);
    EXPECT_LT(time.elapsed(), 5000);
    EXPECT_TRUE(serverIsAlone());
  }
}

TEST_F(WebPages, AreGivenUpWhenRedirectsTakeTheTime) {
  server.at("/feed", LocalWebServer::redirect("/next"));
  server.at("/next", LocalWebServer::stall());
  EXPECT_EQ(get("/feed", Short).error(), "The server took too long to answer.");
}

TEST_F(WebPages, Of50MegabytesAreBrokenOffWhileTheyArrive) {
  constexpr qint64 Huge = 50 * 1000 * 1000;
  const QByteArray announced = "HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(Huge) + "\r\n\r\n";
  const QByteArray secret = "HTTP/1.1 200 OK\r\n\r\n";
  for (const QByteArray& head : {announced, secret}) {
    const qint64 before = server.bytesSent();
    server.at("/feed", LocalWebServer::flood(head, Huge));
    EXPECT_EQ(get("/feed").error(), "The server's answer is too large.");
    EXPECT_TRUE(serverIsAlone());
    // The limit, and what lies in the buffers of two sockets on the way.
    EXPECT_LT(server.bytesSent() - before, 16 * 1024 * 1024);
  }
}

TEST_F(WebPages, MayBeAsLargeAsTheLimitAndNoLarger) {
  server.at("/feed", LocalWebServer::page(QByteArray(1000, 'x')));
  EXPECT_EQ(get("/feed", Ample, 1000).valueOr({}).size(), 1000);
  EXPECT_EQ(get("/feed", Ample, 999).error(), "The server's answer is too large.");
  server.at("/feed", LocalWebServer::raw("HTTP/1.1 200 OK\r\n\r\n" + QByteArray(200000, 'x')));
  EXPECT_EQ(get("/feed", Ample, 200000).valueOr({}).size(), 200000);
  EXPECT_EQ(get("/feed", Ample, 199999).error(), "The server's answer is too large.");
}

TEST_F(WebPages, AreNotUnpacked) {
  // What a packed page unpacks to has no limit that the server would have to keep.
  server.at("/feed", LocalWebServer::page("\x1f\x8b packed", "Content-Encoding: gzip\r\n"));
  EXPECT_EQ(get("/feed").valueOr({}), "\x1f\x8b packed");
}

TEST_F(WebPages, CutInTheMiddleAreNone) {
  server.at("/feed", LocalWebServer::raw("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nhalf a page"));
  EXPECT_EQ(get("/feed").error(), "The server broke the connection off.");
  server.at("/feed", LocalWebServer::raw("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n40\r\nhalf"));
  EXPECT_EQ(get("/feed").error(), "The server broke the connection off.");
  server.at("/feed", LocalWebServer::raw("HTTP/1.1 200 OK\r\nConte"));
  EXPECT_EQ(get("/feed").error(), "The server broke the connection off.");
}

TEST_F(WebPages, ThatAreNoAnswerAtAllAreNone) {
  for (const QByteArray& nonsense :
       {QByteArray(""), QByteArray("\r\n\r\n"), QByteArray("SSH-2.0-OpenSSH_9.2\r\n"),
        QByteArray("HTTP/1.1 two hundred\r\n\r\nx"), QByteArray("HTTP/9\r\n\r\n"), QByteArray(5000, '\0')}) {
    server.at("/feed", LocalWebServer::raw(nonsense));
    const WebAnswer answer = get("/feed");
    EXPECT_FALSE(answer.ok()) << nonsense.left(40).constData();
    EXPECT_TRUE(answer.error().endsWith('.')) << qPrintable(answer.error());
  }
}

TEST_F(WebPages, WithAnEndlessHeadAreGivenUpInTime) {
  for (const QByteArray& head :
       {QByteArray("HTTP/1.1 200 OK\r\nX-Long: "), QByteArray("HTTP/1.1 200 "), QByteArray("x")}) {
    server.at("/feed", LocalWebServer::flood(head, 1024 * 1024));
    QElapsedTimer time;
    time.start();
    EXPECT_FALSE(get("/feed", Short).ok());
    EXPECT_LT(time.elapsed(), 5000);
    EXPECT_TRUE(QTest::qWaitFor([this] { return server.openConnections() == 0; }, 20000));
  }
}

TEST_F(WebPages, AreWebPagesOnly) {
  for (const char* address :
       {"", "feed.xml", "file:///etc/passwd", "ftp://127.0.0.1/feed", "http://", "https:///feed",
        "data:text/plain,x", "qrc:/feed", "javascript:1", "unix+http://host/feed"}) {
    EXPECT_EQ(get(QUrl(address)).error(), "That is not the address of a web page.") << address;
  }
  EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(WebPages, AskedForTogetherGetTheirOwnAnswers) {
  QMap<QString, QByteArray> answers;
  for (const QString& path : {QString("/1"), QString("/2"), QString("/3")}) {
    server.at(path.toUtf8(), LocalWebServer::page("page " + path.toUtf8()));
    web->load(server.url(path), Ample, Limit, &owner,
              [&answers, path](const WebAnswer& answer) { answers.insert(path, answer.valueOr({})); });
  }
  ASSERT_TRUE(QTest::qWaitFor([&answers] { return answers.size() == 3; }));
  for (const QString& path : answers.keys()) EXPECT_EQ(answers.value(path), "page " + path.toUtf8());
}

TEST_F(WebPages, WhoseOwnerIsGoneAreBrokenOff) {
  server.at("/feed", LocalWebServer::stall());
  auto reader = std::make_unique<QObject>();
  bool called = false;
  web->load(server.url("/feed"), Ample, Limit, reader.get(), [&called](const WebAnswer&) { called = true; });
  ASSERT_TRUE(QTest::qWaitFor([this] { return server.requests().size() == 1; }));
  reader.reset();
  EXPECT_TRUE(serverIsAlone());
  EXPECT_FALSE(called);
}

TEST_F(WebPages, AreBrokenOffAtTheEndOfTheProgram) {
  server.at("/feed", LocalWebServer::stall());
  bool called = false;
  for (int i = 0; i < 3; ++i)
    web->load(server.url("/feed"), Ample, Limit, &owner, [&called](const WebAnswer&) { called = true; });
  ASSERT_TRUE(QTest::qWaitFor([this] { return server.requests().size() == 3; }));
  QElapsedTimer time;
  time.start();
  web.reset();
  EXPECT_LT(time.elapsed(), 1500);
  EXPECT_TRUE(serverIsAlone());
  EXPECT_FALSE(called);
}

TEST_F(WebPages, MayEndWithTheProgramBeforeTheyBegin) {
  web->load(server.url("/feed"), Ample, Limit, &owner, [](const WebAnswer&) { ADD_FAILURE(); });
  web.reset();
  QCoreApplication::processEvents();
}

TEST_F(WebPages, WaitWhileAnAlertIsOpen) {
  server.at("/feed", LocalWebServer::page("x"));
  std::optional<WebAnswer> answer;
  {
    const platform::RunLoop::ModalSession alert(runLoop);
    web->load(server.url("/feed"), Ample, Limit, &owner, [&answer](const WebAnswer& came) { answer = came; });
    ASSERT_TRUE(QTest::qWaitFor([this] { return server.requests().size() == 1; }));
    ASSERT_TRUE(serverIsAlone());
    // Long enough for what has arrived to come over from the other thread.
    QEventLoop events;
    QTimer::singleShot(100, &events, &QEventLoop::quit);
    events.exec();
    EXPECT_FALSE(answer);
  }
  ASSERT_TRUE(QTest::qWaitFor([&answer] { return answer.has_value(); }));
  EXPECT_EQ(answer->valueOr({}), "x");
}

TEST_F(WebPages, SurviveAReaderThatThrows) {
  const testkit::LogRecorder log;
  server.at("/feed", LocalWebServer::page("x"));
  web->load(server.url("/feed"), Ample, Limit, &owner,
            [](const WebAnswer&) { throw std::runtime_error("broken"); });
  ASSERT_TRUE(QTest::qWaitFor([&log] { return !log.lines().isEmpty(); }));
  EXPECT_EQ(log.lines(), QStringList{"timed call: broken"});
  EXPECT_TRUE(get("/feed").ok());
}

namespace {

/// A desktop that takes its time to say which proxy to use: as long as the test wants.
class SlowProxies : public QNetworkProxyFactory {
 public:
  explicit SlowProxies(const QUrl& proxy) : proxy_(proxy) {}

  static inline QSemaphore mayAnswer{0};
  static inline QSemaphore threadsThatEnded{0};

  QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery&) override {
    struct Farewell {
      ~Farewell() { threadsThatEnded.release(); }
    };
    thread_local const Farewell farewell;
    mayAnswer.acquire();
    return {QNetworkProxy(QNetworkProxy::HttpProxy, proxy_.host(), static_cast<quint16>(proxy_.port()))};
  }

 private:
  QUrl proxy_;
};

class WebPagesBehindAProxy : public WebPages {
 protected:
  WebPagesBehindAProxy() {
    QNetworkProxyFactory::setApplicationProxyFactory(new SlowProxies(server.url("/")));
    server.at(page.toEncoded(), LocalWebServer::page("x"));
  }
  ~WebPagesBehindAProxy() override {
    SlowProxies::mayAnswer.release(10);
    web.reset();
    EXPECT_TRUE(SlowProxies::threadsThatEnded.tryAcquire(1, 20000));
    SlowProxies::mayAnswer.tryAcquire(SlowProxies::mayAnswer.available());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QNetworkProxyFactory::setApplicationProxyFactory(nullptr);
  }

  // Nobody is asked for a proxy to this machine itself.
  const QUrl page{"http://updates.invalid/feed"};
};

}  // namespace

TEST_F(WebPagesBehindAProxy, ArriveThroughIt) {
  SlowProxies::mayAnswer.release();
  EXPECT_EQ(get(page).valueOr({}), "x");
}

TEST_F(WebPagesBehindAProxy, KeepNobodyWaitingWhileItIsLookedFor) {
  QElapsedTimer time;
  time.start();
  EXPECT_EQ(get(page, Short).error(), "The server took too long to answer.");
  EXPECT_LT(time.elapsed(), 5000);
  SlowProxies::mayAnswer.release(2);
  EXPECT_EQ(get(page).valueOr({}), "x") << "and the next one comes when there is a proxy";
}

TEST_F(WebPagesBehindAProxy, DoNotKeepTheProgramFromEndingWhileItIsLookedFor) {
  const testkit::LogRecorder log;
  web->load(page, Ample, Limit, &owner, [](const WebAnswer&) { ADD_FAILURE(); });
  QElapsedTimer time;
  time.start();
  web.reset();
  EXPECT_LT(time.elapsed(), 10000);
  EXPECT_EQ(log.lines(), QStringList{"The web was still busy at the end"});
}
