// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "bridge/orthanc/PageScript.h"

namespace {

using bridge::PageScript;
using bridge::pageScript;

/// The list that stands before the script.
QJsonArray applicationsOf(const PageScript& script) {
  const QByteArray start = "var velmoraApplications = ";
  const QByteArray line = script.javaScript.left(script.javaScript.indexOf(";\n"));
  EXPECT_TRUE(line.startsWith(start));
  return QJsonDocument::fromJson(line.mid(start.size())).array();
}

PageScript scriptFor(const QByteArray& applications) {
  return pageScript(R"({"RegisteredUsers":{"nurse":"topsecret"},"Velmora":{"Applications":)" + applications +
                    "}}");
}

TEST(PageScript, HoldsTheApplicationsAndNothingElseOfTheConfiguration) {
  const PageScript script =
      scriptFor(R"([{"Name":" Größe ","BundleIdentifier":"org.velmora.growth","Other":1}])");
  EXPECT_TRUE(script.complaints.isEmpty());
  EXPECT_EQ(
      applicationsOf(script),
      QJsonArray{(QJsonObject{{QStringLiteral("name"), QStringLiteral("Größe")},
                              {QStringLiteral("bundleIdentifier"), QStringLiteral("org.velmora.growth")}})});
  EXPECT_FALSE(script.javaScript.contains("topsecret"));
  EXPECT_TRUE(script.javaScript.trimmed().endsWith("}(velmoraApplications));"));
}

TEST(PageScript, NeedsNoSectionOfItsOwn) {
  for (const QByteArray& configuration :
       {QByteArray("{}"), QByteArray(), QByteArray("not JSON"), QByteArray(R"({"Velmora":{}})")}) {
    const PageScript script = pageScript(configuration);
    EXPECT_TRUE(script.complaints.isEmpty()) << configuration.constData();
    EXPECT_TRUE(applicationsOf(script).isEmpty());
  }
}

TEST(PageScript, SaysWhatIsWrongAndUsesWhatIsRight) {
  const PageScript script = scriptFor(
      R"([{"Name":"A","BundleIdentifier":"a b"},{"BundleIdentifier":"a"},7,{"Name":"B","BundleIdentifier":"b"}])");
  EXPECT_EQ(script.complaints.size(), 3);
  EXPECT_TRUE(
      script.complaints.at(0).startsWith(QStringLiteral("the \"BundleIdentifier\" of application 1 ")));
  EXPECT_TRUE(
      script.complaints.at(1).startsWith(QStringLiteral("application 2 of \"Velmora\" has no \"Name\"")));
  EXPECT_TRUE(script.complaints.at(2).startsWith(QStringLiteral("application 3 ")));
  EXPECT_EQ(applicationsOf(script).size(), 1);
  for (const QByteArray& wrong : {QByteArray(R"("x")"), QByteArray("{}"), QByteArray("1")}) {
    EXPECT_EQ(scriptFor(wrong).complaints,
              QStringList{QStringLiteral("\"Velmora\" must be {\"Applications\": [...]}")});
  }
  EXPECT_EQ(pageScript(R"({"Velmora":[]})").complaints.size(), 1);
}

TEST(PageScript, HoldsATextThatWouldEndAScriptAsAString) {
  const PageScript script =
      scriptFor(R"([{"Name":"\"];alert(1);//</script>\n","BundleIdentifier":"org.velmora.growth"}])");
  EXPECT_EQ(applicationsOf(script).first().toObject().value(QLatin1String("name")).toString(),
            QStringLiteral("\"];alert(1);//</script>"));
}

}  // namespace
