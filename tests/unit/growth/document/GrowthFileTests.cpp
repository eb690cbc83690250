// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QJsonObject>

#include "apps/growth/testing/GrowthApplication.h"
#include "testing/application/SealedFile.h"
#include "testing/files/Files.h"

using namespace velmora;
using namespace velmora::testkit;

using growth::GrowthApplication;
using user::textOf;

namespace {

/// A data file with that content.
QByteArray file(const QByteArray& content, int version = 1, const char* format = "org.velmora.growth") {
  return sealed(QByteArray("{\"format\": \"") + format + "\", \"version\": " + QByteArray::number(version) +
                ", \"application\": \"Growth 9.9\", \"content\": " + content + "}");
}

constexpr const char* goodContent = R"({"identifier": "A", "examinations": [{"weight": 3}]})";

}  // namespace

TEST(GrowthFile, SavedAndOpenedAgainIsTheSameRecord) {
  GrowthApplication application;
  GrowthDocument& document = application.typeBoy("17/1/2024", "14.25");
  user::enter(user::field(document, "heightField"), "90.5");
  user::click(user::button(document, "newStudyButton"));
  user::enter(user::field(document, "examDateField"), "1/6/2024");
  user::enter(user::field(document, "headField"), "49");
  document.synchronizeToData();
  const growth::GrowthRecord before = document.record();
  ASSERT_EQ(before.examinations.size(), 2);

  GrowthDocument& reopened = application.saveAndReopen();
  EXPECT_EQ(reopened.record(), before);
  EXPECT_FALSE(reopened.isDocumentEdited());
  EXPECT_EQ(textOf(reopened, "referenceIDField"), "BOY1");
  EXPECT_EQ(textOf(reopened, "birthDateField"), "01/01/2022");
  EXPECT_EQ(textOf(reopened, "examDateField"), "01/06/2024") << "it begins with the latest examination";
  EXPECT_EQ(textOf(reopened, "examNumberField"), "2 of 2");
  EXPECT_EQ(textOf(reopened, "headField"), "49");
  reopened.synchronizeToData();
  EXPECT_EQ(reopened.record(), before) << "what the window shows is what the record holds";
}

TEST(GrowthFile, SavedTwiceWithoutAChangeIsTheSameToTheByte) {
  GrowthApplication application;
  application.typeBoy("17/1/2024", "14.25");
  GrowthDocument& document = application.saveAndReopen();
  const QByteArray first = readFile(application.pathOfRecord("BOY1"));
  document.saveDocument();
  EXPECT_EQ(readFile(application.pathOfRecord("BOY1")), first);
}

TEST(GrowthFile, KeepsTextsThatCouldNotBeRead) {
  GrowthApplication application;
  GrowthDocument& document = application.typeBoy("after Easter", "about 14");
  user::enter(user::field(document, "heightField"), "90 cm");
  EXPECT_EQ(textOf(document, "examDateField"), "after Easter");

  GrowthDocument& reopened = application.saveAndReopen();
  EXPECT_EQ(textOf(reopened, "examDateField"), "after Easter");
  EXPECT_EQ(textOf(reopened, "weightField"), "about 14");
  EXPECT_EQ(textOf(reopened, "heightField"), "90 cm");
  EXPECT_EQ(textOf(reopened, "weightResultField"), "This is not a number.");
}

TEST(GrowthFile, IsJsonWithItsHeader) {
  GrowthApplication application;
  application.typeBoy("17/1/2024", "14.25");
  application.saveAndReopen();
  const QJsonObject json = QJsonDocument::fromJson(readFile(application.pathOfRecord("BOY1"))).object();
  EXPECT_EQ(json.value("format"), QJsonValue("org.velmora.growth"));
  EXPECT_EQ(json.value("version"), QJsonValue(1));
  EXPECT_EQ(json.value("application"), QJsonValue("Growth 0.1"));
  EXPECT_EQ(json.value("content").toObject().value("birthDate"), QJsonValue("2022-01-01"));
}

TEST(GrowthFile, ThatIsWholeOpens) {
  GrowthApplication application;
  EXPECT_EQ(application.whyNotOpened(file(goodContent)), "");
}

TEST(GrowthFile, ThatIsDamagedIsRefusedWithTheReason) {
  GrowthApplication application;
  const struct {
    QByteArray bytes;
    const char* reason;
  } cases[] = {
      {"", "The file is empty."},
      {file("null"), "The file is damaged (its header is incomplete)."},
      {file("[]"), "The file is damaged (its header is incomplete)."},
      {file(goodContent, 0), "The file is damaged (its header is incomplete)."},
      {file(goodContent, -1), "The file is damaged (its header is incomplete)."},
      {file(goodContent, 2), "The file was written by a newer version of the application (Growth 9.9)."},
      {file(goodContent, 1, "org.velmora.other"), "The file is not a record of this application."},
      {"{}", "The file is not a record of this application."},
      {"[1, 2]", "The file is not a record of this application."},
      {file("{}"), "The file is damaged (identifier)."},
      {file(R"({"identifier": "A"})"), "The file is damaged (examinations)."},
      {file(R"({"identifier": "A", "examinations": []})"), "The file is damaged (examinations)."},
      {file(R"({"identifier": "A", "examinations": [3]})"), "The file is damaged (examinations)."},
      {file(R"({"identifier": "A", "sex": "boy", "examinations": [{}]})"), "The file is damaged (sex)."},
      {file(R"({"identifier": "A", "birthDate": 1, "examinations": [{}]})"),
       "The file is damaged (birthDate)."},
      {file(R"({"identifier": "A", "examinations": [{"date": 1}]})"), "The file is damaged (date)."},
      {file(R"({"identifier": "A", "examinations": [{"weight": []}]})"), "The file is damaged (weight)."},
      {file(R"({"identifier": "A", "examinations": [{"height": true}]})"), "The file is damaged (height)."},
      {file(R"({"identifier": "A", "examinations": [{"head": null}]})"), "The file is damaged (head)."},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(application.whyNotOpened(each.bytes), each.reason) << each.bytes.toStdString();
    EXPECT_TRUE(application.controller.documents().isEmpty());
  }
}

TEST(GrowthFile, ThatIsNoJsonIsRefusedWithThePlace) {
  GrowthApplication application;
  for (const QByteArray& bytes : {QByteArray("no JSON"), QByteArray("\xff\xd8\xff\xe0 JFIF", 9),
                                  file(goodContent).chopped(5), QByteArray(1000, '\0')}) {
    const QString reason = application.whyNotOpened(bytes);
    EXPECT_TRUE(reason.startsWith("The file is damaged (")) << qPrintable(reason);
    EXPECT_TRUE(reason.contains(" at byte ")) << qPrintable(reason);
  }
}

TEST(GrowthFile, CutShortAnywhereIsRefused) {
  GrowthApplication application;
  const QByteArray whole = file(goodContent);
  for (qsizetype length = 0; length < whole.size(); ++length) {
    GrowthDocument document(application.desktop.services, application.controller, application.references);
    EXPECT_FALSE(document.readFromData(whole.left(length), "growth").ok()) << length;
    EXPECT_EQ(document.record(), growth::GrowthRecord{}) << length;
  }
}

TEST(GrowthFile, ThatIsRefusedIsTheUsersToKnow) {
  GrowthApplication application;
  const QString path = application.pathOfRecord("given");
  writeFile(path, file("{}"));
  application.desktop.panels.expectOpen({QUrl::fromLocalFile(path)});
  application.desktop.alerts.expect(
      {"The file 'given.growth' could not be opened.", "OK", "", "", "The file is damaged (identifier)."},
      platform::AlertDefaultReturn);
  application.controller.openDocument();
  EXPECT_EQ(readFile(path), file("{}")) << "and stays as it is";
}
