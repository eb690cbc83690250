// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include <QTcpServer>
#include <memory>

#include "bridge/pacs/WebExchange.h"
#include "bridge/pacs/WebPacs.h"
#include "bridge/testing/PacsOutcome.h"
#include "testing/web/LocalWebServer.h"
#include "tests/unit/bridge/pacs/WebScriptedArchive.h"

namespace bridge {
namespace {

using velmora::testkit::LocalWebServer;
using web_testing::answer;
using web_testing::json;
using web_testing::ScriptedArchive;

StudyQuery anyStudy() {
  StudyQuery query;
  query.patientID = QStringLiteral("P");
  return query;
}

/// What comes of storing, on a server that behaves badly.
PacsResult<> storeOn(LocalWebServer& server, LocalWebServer::Handler handler, int seconds = 60) {
  server.at("/studies", std::move(handler));
  PacsSettings settings;
  settings.url = server.url(QString());
  settings.timeout = std::chrono::seconds(seconds);
  return WebPacs(settings).store("file", QStringLiteral("1.2"), QStringLiteral("1.2.3"));
}

TEST(WebConnection, SaysThatNothingListens) {
  QTcpServer server;
  ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
  PacsSettings settings;
  settings.url = QUrl(QStringLiteral("http://127.0.0.1:%1/dicom-web").arg(server.serverPort()));
  server.close();
  const PacsResult<> result = WebPacs(settings).check();
  EXPECT_EQ(outcomeOf(result), Outcome::TryAgain);
  EXPECT_EQ(result.error(), QStringLiteral("nothing listens at 127.0.0.1:%1").arg(settings.url.port()));
}

TEST(WebConnection, SaysThatAnAddressIsNone) {
  for (const char* address : {"", "file:///etc/passwd", "ftp://127.0.0.1/", "/dicom-web", "http://"}) {
    SCOPED_TRACE(address);
    PacsSettings settings;
    settings.url = QUrl(QLatin1String(address));
    const PacsResult<> result = WebPacs(settings).check();
    EXPECT_EQ(outcomeOf(result), Outcome::TryAgain);
    EXPECT_TRUE(result.error().endsWith(QStringLiteral("is no web address"))) << qPrintable(result.error());
  }
}

TEST(WebConnection, SendsUserAndPasswordWithTheFirstRequestAndShowsThemNowhere) {
  ScriptedArchive archive(answer("401 Unauthorized", "no", "WWW-Authenticate: Basic realm=\"x\"\r\n"));
  PacsSettings settings = archive.settings();
  settings.url.setUserInfo(QStringLiteral("other:hidden"));
  settings.user = QStringLiteral("jürgen");
  settings.password = QStringLiteral("ge:heim");
  const PacsResult<QList<Study>> result = WebPacs(settings).findStudies(anyStudy());
  EXPECT_EQ(outcomeOf(result), Outcome::TryAgain);
  EXPECT_TRUE(
      result.error().startsWith(QStringLiteral("the archive does not accept the user or the password")))
      << qPrintable(result.error());
  EXPECT_FALSE(result.error().contains(QStringLiteral("hidden")));
  EXPECT_FALSE(result.error().contains(QStringLiteral("heim")));
  ASSERT_EQ(archive.requests().size(), 1);
  EXPECT_EQ(archive.requests().first().header("Authorization"),
            "Basic " + QByteArray("jürgen:ge:heim").toBase64());
}

TEST(WebConnection, SendsNoUserWhenNoneIsConfigured) {
  ScriptedArchive archive(json("[]"));
  studiesOf(WebPacs(archive.settings()).findStudies(anyStudy()));
  EXPECT_TRUE(archive.requests().first().header("Authorization").isNull());
}

TEST(WebConnection, DoesNotFollowARedirection) {
  ScriptedArchive elsewhere(json("[]"));
  const QByteArray target = elsewhere.settings().url.toEncoded();
  for (const QByteArray& status : {QByteArray("301 Moved"), QByteArray("302 Found"),
                                   QByteArray("307 Temporary"), QByteArray("308 Permanent")}) {
    SCOPED_TRACE(status.constData());
    ScriptedArchive archive(answer(status, {}, "Location: " + target + "\r\n"));
    const PacsResult<> result =
        WebPacs(archive.settings()).store("file", QStringLiteral("1.2"), QStringLiteral("1.2.3"));
    EXPECT_EQ(outcomeOf(result), Outcome::TryAgain);
    EXPECT_TRUE(result.error().startsWith(
        QStringLiteral("the archive sends us on to %1").arg(QString::fromUtf8(target))))
        << qPrintable(result.error());
    EXPECT_EQ(outcomeOf(WebPacs(archive.settings()).findStudies(anyStudy())), Outcome::TryAgain);
  }
  EXPECT_TRUE(elsewhere.requests().isEmpty());
}

TEST(WebConnection, GivesUpWhenTheTimeIsUp) {
  LocalWebServer server;
  const PacsResult<> silent = storeOn(server, LocalWebServer::stall(), 1);
  EXPECT_EQ(outcomeOf(silent), Outcome::TryAgain);
  EXPECT_TRUE(silent.error().endsWith(QStringLiteral("did not answer within 1 seconds")))
      << qPrintable(silent.error());
  // Bytes that keep coming do not make the time longer.
  const PacsResult<> slow =
      storeOn(server, LocalWebServer::drip("HTTP/1.1 200 OK\r\nContent-Length: 100000\r\n\r\n", 20), 1);
  EXPECT_EQ(slow.error(), silent.error());
}

TEST(WebConnection, ReadsNoAnswerWithoutEnd) {
  const qint64 gigabyte = qint64{1} << 30;
  LocalWebServer announced;
  const PacsResult<> first = storeOn(
      announced, LocalWebServer::flood("HTTP/1.1 200 OK\r\nContent-Length: 1073741824\r\n\r\n", gigabyte));
  EXPECT_EQ(outcomeOf(first), Outcome::TryAgain);
  EXPECT_TRUE(first.error().endsWith(QStringLiteral("answers with more than 16 MB")))
      << qPrintable(first.error());
  LocalWebServer unannounced;
  const PacsResult<> second =
      storeOn(unannounced, LocalWebServer::flood("HTTP/1.1 200 OK\r\n\r\n", gigabyte));
  EXPECT_EQ(outcomeOf(second), Outcome::TryAgain);
  EXPECT_TRUE(second.error().endsWith(QStringLiteral("answers with more than 16 MB")))
      << qPrintable(second.error());
  EXPECT_LT(announced.bytesSent() + unannounced.bytesSent(), 200 * 1024 * 1024);
}

TEST(WebConnection, TakesAnAnswerThatBreaksOffForNone) {
  LocalWebServer server;
  const PacsResult<> cut =
      storeOn(server, LocalWebServer::raw("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n{}"));
  EXPECT_EQ(outcomeOf(cut), Outcome::TryAgain);
  EXPECT_TRUE(cut.error().endsWith(QStringLiteral("broke the connection off"))) << qPrintable(cut.error());
  EXPECT_EQ(outcomeOf(storeOn(server, LocalWebServer::raw("SSH-2.0-OpenSSH_9.2\r\n"))), Outcome::TryAgain);
  EXPECT_EQ(outcomeOf(storeOn(server, LocalWebServer::raw("HTTP/1.1 999999 x\r\n\r\n"))), Outcome::TryAgain);
}

TEST(WebConnection, TellsWhatIsWrongWithACertificate) {
  LocalWebServer server(LocalWebServer::Connection::Encrypted);
  const PacsResult<> result = storeOn(server, LocalWebServer::page("{}"));
  EXPECT_EQ(outcomeOf(result), Outcome::TryAgain);
  EXPECT_TRUE(result.error().contains(QStringLiteral(" does not prove that it is the archive: ")))
      << qPrintable(result.error());
  EXPECT_TRUE(server.requests().isEmpty());
}

TEST(WebCheck, FindsNothingWrongWithAnArchiveThatAnswers) {
  ScriptedArchive archive([](const ScriptedArchive::Request& request) {
    return request.method == "GET" ? json("[]") : answer("400 Bad Request", "nothing to store");
  });
  const PacsResult<> result = WebPacs(archive.settings()).check();
  EXPECT_TRUE(result.ok()) << qPrintable(result.error());
  ASSERT_EQ(archive.requests().size(), 2);
  EXPECT_FALSE(archive.requests().last().body.contains("application/dicom\r\n"));
}

TEST(WebCheck, HearsThatFindingIsPermittedAndStoringIsNot) {
  ScriptedArchive archive([](const ScriptedArchive::Request& request) {
    return request.method == "GET" ? json("[]") : answer("403 Forbidden", "no");
  });
  const PacsResult<> result = WebPacs(archive.settings()).check();
  EXPECT_EQ(outcomeOf(result), Outcome::TryAgain);
  EXPECT_TRUE(result.error().startsWith(QStringLiteral("the archive does not permit this")))
      << qPrintable(result.error());
}

}  // namespace
}  // namespace bridge
