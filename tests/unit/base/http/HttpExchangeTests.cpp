// SPDX-License-Identifier: LGPL-3.0-or-later
#include "base/http/HttpExchange.h"

#include <gtest/gtest.h>

#include <QEventLoop>
#include <QTcpServer>

#include "testing/web/LocalWebServer.h"

using velmora::base::HttpAnswer;
using velmora::base::HttpExchange;
using velmora::testkit::LocalWebServer;
using End = HttpAnswer::End;

namespace {

constexpr qint64 Limit = 1000;  // bytes
constexpr std::chrono::milliseconds Short{50};

/// Exchanges with a server of the test's own.
class Exchange : public testing::Test {
 protected:
  /// The answer to a request for "/page".
  HttpAnswer answerOf(LocalWebServer::Handler handler, std::chrono::milliseconds timeout = {}) {
    server.at("/page", std::move(handler));
    return answerTo(server.url("/page"), timeout);
  }
  static HttpAnswer answerTo(const QUrl& url, std::chrono::milliseconds timeout = {}) {
    QEventLoop loop;
    HttpAnswer answer;
    int calls = 0;
    const HttpExchange exchange(HttpExchange::plainRequest(url, "tests"), std::nullopt, {Limit, timeout},
                                HttpExchange::Proxy::None, [&](const HttpAnswer& came) {
                                  answer = came;
                                  ++calls;
                                  loop.quit();
                                });
    loop.exec();
    EXPECT_EQ(calls, 1);
    return answer;
  }

  LocalWebServer server;
};

TEST_F(Exchange, BringsStatusHeadersAndBody) {
  const HttpAnswer answer = answerOf(LocalWebServer::page("hello", "X-Colour: Green\r\n"));
  EXPECT_EQ(answer.end, End::Finished);
  EXPECT_EQ(answer.error, QNetworkReply::NoError);
  EXPECT_EQ(answer.status, 200);
  EXPECT_EQ(answer.body, "hello");
  EXPECT_EQ(answer.header("x-colour"), "Green");
  EXPECT_TRUE(answer.header("X-Size").isNull());
}

TEST_F(Exchange, TellsNothingAboutTheSenderButItsName) {
  answerOf(LocalWebServer::page("hello"));
  ASSERT_EQ(server.requests().size(), 1);
  QList<QByteArray> headers = server.requests().first().headers;
  headers.removeIf([](const QByteArray& each) { return each.startsWith("Host: "); });
  std::sort(headers.begin(), headers.end());
  EXPECT_EQ(headers, (QList<QByteArray>{"Accept-Encoding: identity", "Accept-Language: *",
                                        "Connection: Keep-Alive", "User-Agent: tests"}));
}

TEST_F(Exchange, TakesABodyUpToTheLimitAndNoByteMore) {
  const QByteArray atLimit(Limit, 'x');
  for (const bool announced : {true, false}) {
    SCOPED_TRACE(announced);
    const auto sent = [announced](const QByteArray& body) {
      return announced ? LocalWebServer::page(body) : LocalWebServer::raw("HTTP/1.1 200 OK\r\n\r\n" + body);
    };
    const HttpAnswer whole = answerOf(sent(atLimit));
    EXPECT_EQ(whole.end, End::Finished);
    EXPECT_EQ(whole.body, atLimit);
    EXPECT_EQ(answerOf(sent(atLimit + 'x')).end, End::TooLarge);
  }
}

TEST_F(Exchange, DoesNotWaitForABodyThatIsAnnouncedAsTooLarge) {
  const HttpAnswer answer =
      answerOf(LocalWebServer::stall("HTTP/1.1 200 OK\r\nContent-Length: 1001\r\n\r\nx"));
  EXPECT_EQ(answer.end, End::TooLarge);
  EXPECT_EQ(answer.status, 200);
}

TEST_F(Exchange, EndsAtItsDeadlineHoweverMuchStillComes) {
  const HttpAnswer silent = answerOf(LocalWebServer::stall(), Short);
  EXPECT_EQ(silent.end, End::TimedOut);
  EXPECT_EQ(silent.status, 0);
  const HttpAnswer slow = answerOf(LocalWebServer::drip("HTTP/1.1 200 OK\r\n\r\n", 5), Short);
  EXPECT_EQ(slow.end, End::TimedOut);
  EXPECT_EQ(slow.status, 200);
}

TEST_F(Exchange, TellsARefusedConnection) {
  QTcpServer closed;
  ASSERT_TRUE(closed.listen(QHostAddress::LocalHost));
  const QUrl url(QStringLiteral("http://127.0.0.1:%1/").arg(closed.serverPort()));
  closed.close();
  const HttpAnswer answer = answerTo(url);
  EXPECT_EQ(answer.end, End::Finished);
  EXPECT_EQ(answer.status, 0);
  EXPECT_EQ(answer.error, QNetworkReply::ConnectionRefusedError);
  EXPECT_FALSE(answer.errorText.isEmpty());
}

TEST_F(Exchange, BringsTheBodyOfARefusalToo) {
  const HttpAnswer answer = answerOf(LocalWebServer::status("503 Service Unavailable"));
  EXPECT_EQ(answer.end, End::Finished);
  EXPECT_EQ(answer.status, 503);
  EXPECT_EQ(answer.body, "sorry");
  EXPECT_EQ(answer.error, QNetworkReply::ServiceUnavailableError);
}

TEST_F(Exchange, TellsAnAnswerThatBreaksOff) {
  const HttpAnswer answer =
      answerOf(LocalWebServer::raw("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nhalf"));
  EXPECT_EQ(answer.end, End::Finished);
  EXPECT_EQ(answer.error, QNetworkReply::RemoteHostClosedError);
}

TEST_F(Exchange, FollowsNoRedirection) {
  server.at("/elsewhere", LocalWebServer::page("elsewhere"));
  for (const char* status : {"301 Moved Permanently", "302 Found", "307 Temporary Redirect"}) {
    SCOPED_TRACE(status);
    const HttpAnswer answer = answerOf(LocalWebServer::redirect("/elsewhere", status));
    EXPECT_EQ(answer.status, QByteArray(status).left(3).toInt());
    EXPECT_EQ(answer.header("Location"), "/elsewhere");
  }
  for (const LocalWebServer::Request& request : server.requests()) EXPECT_EQ(request.path, "/page");
}

TEST_F(Exchange, NamesWhatIsWrongWithACertificate) {
  LocalWebServer encrypted(LocalWebServer::Connection::Encrypted);
  const HttpAnswer answer = answerTo(encrypted.url("/page"));
  EXPECT_EQ(answer.error, QNetworkReply::SslHandshakeFailedError);
  EXPECT_FALSE(answer.tlsErrors.isEmpty());
  EXPECT_TRUE(encrypted.requests().isEmpty());
}

TEST_F(Exchange, IsCancelledWithoutACallWhenItIsDestroyed) {
  QEventLoop loop;
  server.at("/page", [&loop](QTcpSocket& socket) {
    QObject::connect(&socket, &QTcpSocket::disconnected, &loop, &QEventLoop::quit);
    loop.quit();
  });
  int calls = 0;
  auto exchange = std::make_unique<HttpExchange>(
      HttpExchange::plainRequest(server.url("/page"), "tests"), std::nullopt, HttpExchange::Limits{Limit},
      HttpExchange::Proxy::None, [&calls](const HttpAnswer&) { ++calls; });
  loop.exec();  // until the server is asked
  exchange.reset();
  loop.exec();  // until the connection is gone
  EXPECT_EQ(calls, 0);
}

}  // namespace
