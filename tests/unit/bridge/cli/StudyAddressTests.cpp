// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include <QDate>
#include <string>
#include <vector>

#include "bridge/cli/StudyAddress.h"

using bridge::studyAddress;

namespace {

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

QString query(const std::string& query) { return text("velmora-link:study?") + text(query.c_str()); }

}  // namespace

TEST(StudyAddress, SaysWhichStudyAndWhichApplication) {
  const auto address = studyAddress(
      text("velmora-link:study?uid=1.2.840.99.7&accession=A-1&patient=P%2D1&date=2024-02-29&application="
           "org.velmora.growth"));
  EXPECT_TRUE(address.ok()) << qPrintable(address.error());
  EXPECT_EQ(address->query.studyInstanceUID, text("1.2.840.99.7"));
  EXPECT_EQ(address->query.accessionNumber, text("A-1"));
  EXPECT_EQ(address->query.patientID, text("P-1"));
  EXPECT_EQ(address->query.studyDate, QDate(2024, 2, 29));
  EXPECT_EQ(address->application, text("org.velmora.growth"));
}

TEST(StudyAddress, DecodesUtf8AndLeavesAPlusSignAlone) {
  EXPECT_EQ(studyAddress(text("velmora-link:study?patient=%C3%85%20b+c")).value().query.patientID,
            text("Å b+c"));
  EXPECT_EQ(studyAddress(text("velmora-link:study?patient=100%2525")).value().query.patientID,
            text("100%25"));
  EXPECT_EQ(studyAddress(text("velmora-link:study?patient=a=b%26c")).value().query.patientID, text("a=b&c"));
  EXPECT_EQ(studyAddress(text("velmora-link:study?patient=%F0%A0%AE%B7")).value().query.patientID,
            text("𠮷"));
}

TEST(StudyAddress, TakesItsSchemeInCapitals) {
  EXPECT_TRUE(studyAddress(text("VELMORA-Link:study?uid=1.2")).ok());
  EXPECT_FALSE(studyAddress(text("velmora-link:STUDY?uid=1.2")).ok());
}

TEST(StudyAddress, TakesWhatIsJustShortEnough) {
  EXPECT_TRUE(studyAddress(query("uid=1." + std::string(62, '1'))).ok());
  EXPECT_TRUE(studyAddress(query("patient=" + std::string(64, 'x'))).ok());
  std::string umlauts;
  for (int count = 0; count < 64; ++count) umlauts += "%C3%85";
  EXPECT_TRUE(studyAddress(query("accession=" + umlauts)).ok());
}

TEST(StudyAddress, RefusesWhatIsNoSuchAddress) {
  std::string umlauts;
  for (int count = 0; count < 65; ++count) umlauts += "%C3%85";
  const std::vector<std::string> hostile{
      "",
      "-",
      "--help",
      "--config=/etc/passwd",
      "study?uid=1.2",
      "velmora-link:",
      "velmora-link:study",
      "velmora-link:study?",
      "velmora-link://study?uid=1.2",
      "velmora-link:/study?uid=1.2",
      "velmora-link:study/../open?uid=1.2",
      "velmora-link:study?study?uid=1.2",
      "file:///etc/passwd",
      "http://example.org/study?uid=1.2",
      " velmora-link:study?uid=1.2",
      "velmora-link:study?uid=1.2 ",
      "velmora-link:study?uid=1.2\n",
      "velmora-link:study?uid=1.2#part",
      "velmora-link:study?uid=1.2\xc3\x85",
      "velmora-link:study?uid=1.2&uid=1.3",
      "velmora-link:study?uid=1.2&&patient=x",
      "velmora-link:study?uid=1.2&",
      "velmora-link:study?uid",
      "velmora-link:study?=1.2",
      "velmora-link:study?uid=",
      "velmora-link:study?uid=1.2%00",
      "velmora-link:study?uid=1.2%0a",
      "velmora-link:study?uid=1.2*",
      "velmora-link:study?uid=1.a",
      "velmora-link:study?uid=1.2%5c1.3",
      "velmora-link:study?uid=%D9%A1.%D9%A2",  // digits, but of another script
      "velmora-link:study?uid=1." + std::string(63, '1'),
      "velmora-link:study?%75id=1.2",
      "velmora-link:study?UID=1.2",
      "velmora-link:study?uid=1.2&file=/etc/passwd",
      "velmora-link:study?file=/etc/passwd",
      "velmora-link:study?uid=1.2&config=/tmp/x",
      "velmora-link:study?uid=1.2&host=evil.example",
      "velmora-link:study?patient=",
      "velmora-link:study?patient=%20",
      "velmora-link:study?patient=*",
      "velmora-link:study?patient=%2A",
      "velmora-link:study?patient=a%3Fb",
      "velmora-link:study?patient=a?b",
      "velmora-link:study?patient=a%5Cb",
      "velmora-link:study?patient=a%0Ab",
      "velmora-link:study?patient=a%1Bb",
      "velmora-link:study?patient=a%7Fb",
      "velmora-link:study?patient=a%C2%85b",     // a control character beyond ASCII
      "velmora-link:study?patient=a%E2%80%AEb",  // turns the text round
      "velmora-link:study?patient=a%E2%80%A8b",  // a line separator
      "velmora-link:study?patient=%EF%BB%BFa",   // a byte order mark
      "velmora-link:study?patient=%ED%A0%80",    // half of a pair
      "velmora-link:study?patient=%C0%AF",       // a slash, the long way
      "velmora-link:study?patient=%FF",
      "velmora-link:study?patient=%E5%B1",  // cut off
      "velmora-link:study?patient=%",
      "velmora-link:study?patient=%4",
      "velmora-link:study?patient=%zz",
      "velmora-link:study?patient=%u0041",
      "velmora-link:study?patient=" + std::string(65, 'x'),
      "velmora-link:study?accession=" + umlauts,
      "velmora-link:study?date=2024-02-29",
      "velmora-link:study?patient=x&date=2023-02-29",
      "velmora-link:study?patient=x&date=20240229",
      "velmora-link:study?patient=x&date=2024-02-29-2024-03-01",
      "velmora-link:study?application=org.velmora.growth",
      "velmora-link:study?uid=1.2&application=",
      "velmora-link:study?uid=1.2&application=a%20b",
      "velmora-link:study?uid=1.2&application=$(reboot)",
      "velmora-link:study?uid=1.2&application=" + std::string(256, 'a'),
      "velmora-link:study?patient=x&accession=" + std::string(2048, 'x'),
  };
  for (const std::string& each : hostile) {
    const auto address = studyAddress(QString::fromStdString(each));
    EXPECT_FALSE(address.ok()) << each;
    EXPECT_TRUE(address.ok() || !address.error().isEmpty()) << each;
  }
}
