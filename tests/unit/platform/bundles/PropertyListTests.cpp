// SPDX-License-Identifier: LGPL-3.0-or-later
#include "platform/bundles/PropertyList.h"

#include <plist/plist.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTimeZone>

#include "testing/files/Files.h"
#include "testing/main/Shown.h"
#include "testing/standins/LogRecorder.h"

using namespace velmora;

using velmora::platform::bundleWithPath;
using velmora::platform::propertyListFromData;

namespace {

QByteArray xml(const QByteArray& value) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
         "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n<plist version=\"1.0\">" +
         value + "</plist>\n";
}

/// The same property list in its binary form.
QByteArray binary(const QByteArray& xmlList) {
  plist_t root = nullptr;
  plist_from_xml(xmlList.constData(), static_cast<uint32_t>(xmlList.size()), &root);
  char* bytes = nullptr;
  uint32_t length = 0;
  plist_to_bin(root, &bytes, &length);
  const QByteArray result(bytes, static_cast<qsizetype>(length));
  plist_to_bin_free(bytes);
  plist_free(root);
  return result;
}

const QByteArray Everything =
    xml("<dict><key>name</key><string>Größe &amp; Gewicht</string><key>empty</key><string></string>"
        "<key>count</key><integer>42</integer><key>below</key><integer>-7</integer>"
        "<key>ratio</key><real>0.1</real><key>on</key><true/><key>off</key><false/>"
        "<key>date</key><date>2024-03-31T02:30:15Z</date><key>data</key><data>AAEC/w==</data>"
        "<key>list</key><array><string>a</string><integer>2</integer><array/></array>"
        "<key>inner</key><dict><key>schlüssel</key><string>v</string></dict></dict>");

const QVariantMap EverythingAsValues{
    {"name", QStringLiteral("Größe & Gewicht")},
    {"empty", ""},
    {"count", qint64(42)},
    {"below", qint64(-7)},
    {"ratio", 0.1},
    {"on", true},
    {"off", false},
    // An hour that local time leaves out: the clocks go forward in Berlin.
    {"date", QDateTime(QDate(2024, 3, 31), QTime(2, 30, 15), QTimeZone::utc())},
    {"data", QByteArray("\x00\x01\x02\xff", 4)},
    {"list", QVariantList{"a", qint64(2), QVariantList{}}},
    {"inner", QVariantMap{{QStringLiteral("schlüssel"), "v"}}},
};

class PropertyLists : public testing::TestWithParam<bool> {
 protected:
  static QByteArray form(const QByteArray& xmlList) { return GetParam() ? binary(xmlList) : xmlList; }
};

TEST_P(PropertyLists, GiveEveryValueItsType) {
  const QVariant read = propertyListFromData(form(Everything)).valueOr({});
  ASSERT_EQ(read.typeId(), QMetaType::QVariantMap);
  const QVariantMap map = read.toMap();
  EXPECT_EQ(map.keys(), EverythingAsValues.keys());
  for (auto expected = EverythingAsValues.begin(); expected != EverythingAsValues.end(); ++expected) {
    const QVariant value = map.value(expected.key());
    EXPECT_EQ(value.typeId(), expected.value().typeId()) << qPrintable(expected.key());
    EXPECT_TRUE(value == expected.value())
        << qPrintable(expected.key()) << ": " << qPrintable(value.toString());
  }
}

TEST_P(PropertyLists, NeedNotBeDictionaries) {
  EXPECT_EQ(propertyListFromData(form(xml("<string>alone</string>"))).valueOr({}), QVariant("alone"));
  EXPECT_EQ(propertyListFromData(form(xml("<array><true/></array>"))).valueOr({}),
            QVariant(QVariantList{true}));
}

TEST_P(PropertyLists, AreNothingWhenTheyAreCutShort) {
  const QByteArray whole = form(Everything);
  for (const qsizetype length :
       {qsizetype(0), qsizetype(1), qsizetype(7), qsizetype(8), whole.size() / 3, whole.size() / 2}) {
    EXPECT_FALSE(propertyListFromData(whole.left(length)).ok()) << length;
  }
}

TEST_P(PropertyLists, SurviveEveryDamagedByte) {
  const QByteArray whole = form(Everything);
  for (qsizetype i = 0; i < whole.size(); ++i) {
    for (const int damage : {0x00, 0xFF, ~whole.at(i) & 0xFF, whole.at(i) ^ 1}) {
      QByteArray damaged = whole;
      damaged[i] = static_cast<char>(damage);
      std::ignore = propertyListFromData(damaged);  // whatever it gives, it gives it without harm
    }
  }
}

INSTANTIATE_TEST_SUITE_P(XmlAndBinary, PropertyLists, testing::Bool(),
                         [](const auto& form) { return form.param ? "Binary" : "Xml"; });

TEST(PropertyListFromData, FailsForWhatIsNone) {
  for (const char* data : {"", "no property list", "<html><body/></html>", "{\"json\": true}",
                           "<?xml version=\"1.0\"?>", "bplist00", "<plist><dict><key>a</key></plist>"}) {
    EXPECT_FALSE(propertyListFromData(data).ok()) << data;
  }
}

TEST(PropertyListFromData, EndsAtAnAbsurdNesting) {
  const QByteArray deep = xml(QByteArray("<array>").repeated(200) + QByteArray("</array>").repeated(200));
  QVariant value = propertyListFromData(deep).valueOr({});
  int depth = 0;
  while (value.typeId() == QMetaType::QVariantList && !value.toList().isEmpty()) {
    value = value.toList().first();
    ++depth;
  }
  EXPECT_LT(depth, 100);
}

class Bundles : public testing::Test {
 protected:
  void write(const QByteArray& list) const { testkit::writeFile(folder.path() + "/Info.plist", list); }
  const QByteArray info =
      xml("<dict><key>CFBundleIdentifier</key><string>org.velmora.growth</string>"
          "<key>CFBundleName</key><string>Growth</string></dict>");
  QTemporaryDir folder;
};

TEST_F(Bundles, HaveTheirInformationFromEitherForm) {
  for (const QByteArray& list : {info, binary(info)}) {
    write(list);
    const platform::Bundle bundle = bundleWithPath(folder.path());
    EXPECT_EQ(bundle.bundleIdentifier(), "org.velmora.growth");
    EXPECT_EQ(bundle.stringForInfoDictionaryKey("CFBundleName"), "Growth");
    EXPECT_FALSE(bundle.objectForInfoDictionaryKey("CFBundleVersion").isValid());
    EXPECT_EQ(bundle.resourcePath(), folder.path());
  }
}

TEST_F(Bundles, MayHaveAllThatTheyHoldOneFolderDeeper) {
  testkit::writeFile(folder.path() + "/Contents/Info.plist", binary(info));
  EXPECT_EQ(bundleWithPath(folder.path()).bundleIdentifier(), "org.velmora.growth");
  EXPECT_EQ(bundleWithPath(folder.path()).resourcePath(), folder.path() + "/Contents/Resources");
  write(xml("<dict><key>CFBundleIdentifier</key><string>nearer</string></dict>"));
  EXPECT_EQ(bundleWithPath(folder.path()).bundleIdentifier(), "nearer");
  EXPECT_EQ(bundleWithPath(folder.path()).resourcePath(), folder.path());
}

TEST_F(Bundles, AreEmptyWithALogLineWithoutInformation) {
  for (const QByteArray& list : {QByteArray(), QByteArray("damaged"), xml("<array/>")}) {
    write(list);
    const testkit::LogRecorder log;
    EXPECT_EQ(bundleWithPath(folder.path()).bundleIdentifier(), "");
    ASSERT_EQ(log.lines().size(), 1);
    EXPECT_TRUE(log.lines().first().contains(folder.path() + "/Info.plist"));
  }
  const testkit::LogRecorder log;
  EXPECT_EQ(bundleWithPath(folder.path() + "/absent").bundleIdentifier(), "");
  EXPECT_EQ(log.lines().size(), 1);
}

}  // namespace
