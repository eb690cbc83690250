// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include "bridge/pacs/StowMessage.h"
#include "bridge/pacs/WebPacs.h"
#include "bridge/testing/PacsOutcome.h"
#include "tests/unit/bridge/pacs/WebScriptedArchive.h"

namespace bridge {
namespace {

using web_testing::answer;
using web_testing::json;
using web_testing::ScriptedArchive;

const QString Uid = QStringLiteral("2.25.101");
const QString SecondaryCapture = QStringLiteral("1.2.840.10008.5.1.4.1.1.7");

QByteArray item(const QByteArray& uid, const QByteArray& reason = {}) {
  return R"({"00081155":{"vr":"UI","Value":[")" + uid + "\"]}" +
         (reason.isEmpty() ? QByteArray() : R"(,"00081197":{"vr":"US","Value":[)" + reason + "]}") + "}";
}
QByteArray stored(const QByteArray& uid) { return R"({"00081199":{"vr":"SQ","Value":[)" + item(uid) + "]}}"; }
QByteArray failed(const QByteArray& uid, const QByteArray& reason) {
  return R"({"00081198":{"vr":"SQ","Value":[)" + item(uid, reason) + "]}}";
}

PacsResult<> store(const ScriptedArchive& archive, const QByteArray& file = "the file") {
  return WebPacs(archive.settings()).store(file, SecondaryCapture, Uid);
}

TEST(WebStore, SendsTheFileAsItIs) {
  QByteArray file;
  for (int byte = 0; byte < 70000; ++byte) file.append(static_cast<char>(byte * 7));
  file += "\r\n--velmora-\r\n\r\n";
  ScriptedArchive archive(json(stored("2.25.101")));
  const PacsResult<> result = store(archive, file);
  ASSERT_TRUE(result.ok()) << qPrintable(result.error());
  ASSERT_EQ(archive.requests().size(), 1);
  const auto request = archive.requests().first();
  EXPECT_EQ(request.method, "POST");
  EXPECT_EQ(request.path, "/dicom-web/studies");
  EXPECT_EQ(request.header("Accept"), "application/dicom+json");
  const QByteArray type = request.header("Content-Type");
  const QByteArray start = "multipart/related; type=\"application/dicom\"; boundary=";
  ASSERT_TRUE(type.startsWith(start)) << type.constData();
  const QByteArray boundary = type.mid(start.size());
  EXPECT_EQ(request.body, "--" + boundary + "\r\nContent-Type: application/dicom\r\n\r\n" + file + "\r\n--" +
                              boundary + "--\r\n");
}

TEST(WebStore, AsksUnderTheAddressAsItWasWritten) {
  ScriptedArchive archive(json(stored("2.25.101")));
  PacsSettings settings = archive.settings();
  settings.url.setPath(QStringLiteral("/a%2Fb%25c/dicom-web/"), QUrl::StrictMode);
  EXPECT_TRUE(WebPacs(settings).store("the file", SecondaryCapture, Uid).ok());
  ASSERT_EQ(archive.requests().size(), 1);
  EXPECT_EQ(archive.requests().first().path, "/a%2Fb%25c/dicom-web/studies");
}

TEST(WebStore, TakesABoundaryThatTheFileDoesNotHold) {
  QList<QByteArray> candidates{"aaa", "bbb", "ccc"};
  const StowMessage message = stowMessage("xaaax bbb", [&] { return candidates.takeFirst(); });
  EXPECT_TRUE(message.contentType.endsWith("boundary=ccc"));
  EXPECT_TRUE(message.body.startsWith("--ccc\r\n"));
  EXPECT_NE(randomBoundary(), randomBoundary());
}

TEST(WebStore, IsDoneOnlyWhenTheArchiveNamesTheInstance) {
  ScriptedArchive ours(json("[" + stored("2.25.101") + "]"));
  EXPECT_TRUE(store(ours).ok());
  ScriptedArchive warned(answer("202 Accepted", stored("2.25.101")));
  EXPECT_TRUE(store(warned).ok());
  for (const QByteArray& body :
       {stored("2.25.1010"), QByteArray("{}"), QByteArray(), QByteArray("<NativeDicomModel/>"),
        QByteArray(R"({"00081199":{"vr":"SQ"}})"), QByteArray(50000, '[')}) {
    SCOPED_TRACE(body.left(60).constData());
    ScriptedArchive archive(json(body));
    const PacsResult<> result = store(archive);
    EXPECT_EQ(outcomeOf(result), Outcome::TryAgain);
    EXPECT_EQ(result.error(), QStringLiteral("the archive does not say that it has stored the chart"));
  }
}

TEST(WebStore, DecidesByTheFailureReason) {
  const auto outcomeOf = [](const QByteArray& reason, const QByteArray& status) {
    ScriptedArchive archive(answer(status, failed("2.25.101", reason)));
    return bridge::outcomeOf(store(archive));
  };
  for (const QByteArray& status : {QByteArray("409 Conflict"), QByteArray("202 Accepted"),
                                   QByteArray("400 Bad Request"), QByteArray("200 OK")}) {
    SCOPED_TRACE(status.constData());
    EXPECT_EQ(outcomeOf("42752", status), Outcome::TryAgain);  // A700, out of resources
    EXPECT_EQ(outcomeOf("42753", status), Outcome::TryAgain);  // A701
    EXPECT_EQ(outcomeOf("272", status), Outcome::TryAgain);    // 0110, processing failure
    EXPECT_EQ(outcomeOf("292", status), Outcome::TryAgain);    // 0124, not authorised
    EXPECT_EQ(outcomeOf("531", status), Outcome::TryAgain);    // 0213, resource limitation
    EXPECT_EQ(outcomeOf("\"272\"", status), Outcome::TryAgain);
    EXPECT_EQ(outcomeOf("290", status), Outcome::Never);    // 0122, SOP class not supported
    EXPECT_EQ(outcomeOf("43264", status), Outcome::Never);  // A900, does not match the SOP class
    EXPECT_EQ(outcomeOf("49152", status), Outcome::Never);  // C000, cannot understand
    EXPECT_EQ(outcomeOf("279", status), Outcome::Never);    // 0117, invalid object
    EXPECT_EQ(outcomeOf("273", status), Outcome::Done);     // 0111, there already
    EXPECT_NE(outcomeOf("45056", status), Outcome::Done);   // B000, a warning, and yet among the failed
  }
  ScriptedArchive silent(answer("409 Conflict", failed("2.25.101", "\"\"")));
  EXPECT_EQ(bridge::outcomeOf(store(silent)), Outcome::Never);
}

TEST(WebStore, LeavesTheFailureOfAnotherInstanceAside) {
  ScriptedArchive archive(answer("200 OK", R"({"00081198":{"Value":[)" + item("2.25.9", "290") +
                                               R"(]},"00081199":{"Value":[)" + item("2.25.8") + "," +
                                               item("2.25.101") + "]}}"));
  EXPECT_TRUE(store(archive).ok());
}

TEST(WebStore, TellsWhatCanBeMendedFromWhatCannot) {
  struct Case {
    QByteArray status;
    Outcome outcome;
    const char* reason;
  };
  const QList<Case> cases{
      {"400 Bad Request", Outcome::Never, "the archive refuses the request (status 400 "},
      {"401 Unauthorized", Outcome::TryAgain,
       "the archive does not accept the user or the password (status 401 "},
      {"403 Forbidden", Outcome::TryAgain, "the archive does not permit this (status 403 "},
      {"404 Not Found", Outcome::TryAgain, "there is no DICOMweb service at this address (status 404 "},
      {"405 Method Not Allowed", Outcome::TryAgain, "there is no DICOMweb service"},
      {"408 Request Timeout", Outcome::TryAgain, "the archive is busy (status 408 "},
      {"409 Conflict", Outcome::Never, "the archive refuses the request (status 409 "},
      {"413 Content Too Large", Outcome::Never, "the chart is too large for the archive (status 413 "},
      {"415 Unsupported Media Type", Outcome::Never, "the archive refuses the request (status 415 "},
      {"429 Too Many Requests", Outcome::TryAgain, "the archive is busy (status 429 "},
      {"500 Internal Server Error", Outcome::TryAgain, "the archive failed (status 500 "},
      {"503 Service Unavailable", Outcome::TryAgain, "the archive is busy (status 503 "},
      {"507 Insufficient Storage", Outcome::TryAgain, "the archive has no room for the chart (status 507 "}};
  for (const Case& each : cases) {
    SCOPED_TRACE(each.status.constData());
    ScriptedArchive archive(answer(each.status, "sorry"));
    const PacsResult<> result = store(archive);
    EXPECT_EQ(outcomeOf(result), each.outcome);
    EXPECT_TRUE(result.error().startsWith(QLatin1String(each.reason))) << qPrintable(result.error());
    EXPECT_TRUE(result.error().endsWith(QStringLiteral("/dicom-web/studies)"))) << qPrintable(result.error());
  }
}

}  // namespace
}  // namespace bridge
