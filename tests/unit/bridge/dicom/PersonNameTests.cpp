// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include "bridge/dicom/PersonName.h"
#include "tests/unit/bridge/dicom/DicomTesting.h"

namespace {

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

struct Row {
  const char* dicom;
  const char* readable;
};

void expectRows(const QList<Row>& rows) {
  for (const Row& row : rows) {
    EXPECT_EQ(bridge::readablePersonName(text(row.dicom)), text(row.readable)) << row.dicom;
  }
}

}  // namespace

TEST(PersonName, PutsTheGivenNameFirst) {
  expectRows({{"Adams^John Robert Quincy^^Rev.^B.A. M.Div.", "Rev. John Robert Quincy Adams, B.A. M.Div."},
              {"Morrison-Jones^Susan^^^Ph.D., Chief Executive Officer",
               "Susan Morrison-Jones, Ph.D., Chief Executive Officer"},
              {"Doe^John^Middle^Dr.", "Dr. John Middle Doe"},
              {"Müller^Jörg", "Jörg Müller"},
              {"Doe", "Doe"},
              {"^John", "John"},
              {"^^^^Jr.", "Jr."},
              {"Doe^^^^Jr.", "Doe, Jr."},
              {"Люкceмбypг", "Люкceмбypг"},
              {"قباني^لنزار", "لنزار قباني"}});
}

// PS3.5 annexes H to K.
TEST(PersonName, ShowsTheIdeographicGroupInParentheses) {
  expectRows({{"Yamada^Tarou=山田^太郎=やまだ^たろう", "Tarou Yamada (山田 太郎)"},
              {"ﾔﾏﾀﾞ^ﾀﾛｳ=山田^太郎=やまだ^たろう", "ﾔﾏﾀﾞ ﾀﾛｳ (山田 太郎)"},
              {"Hong^Gildong=洪^吉洞=홍^길동", "Gildong Hong (洪 吉洞)"},
              {"Wang^XiaoDong=王^小東=", "XiaoDong Wang (王 小東)"},
              {"Zhang^XiaoDong=张^小东=", "XiaoDong Zhang (张 小东)"}});
}

TEST(PersonName, TakesTheFirstGroupThatSaysSomething) {
  expectRows({{"=山田^太郎=やまだ^たろう", "山田 太郎"},
              {"==やまだ^たろう", "やまだ たろう"},
              {"^^=^=홍^길동", "홍 길동"},
              {"Yamada^Tarou==やまだ^たろう", "Tarou Yamada"},
              {"山田^太郎=山田^太郎", "山田 太郎"}});
}

TEST(PersonName, StaysOnOneLineWhateverItIs) {
  expectRows({{"", ""},
              {"^^^^", ""},
              {"==", ""},
              {"=^^=^", ""},
              {"  Doe ^  John  Jim ", "John Jim Doe"},
              {"Do\ne^Jo\x1b[2Jhn\t", "Jo[2Jhn Doe"},
              {"Doe\u2028^John\u202e", "John Doe"},
              {"%1^%2=%3^%1", "%2 %1 (%1 %3)"},
              {"a^b^c^d^e^f^g", "d b c a, e, f, g"},
              {"a=b=c=d", "a (b)"},
              {"𠮷田^太郎", "𠮷田 太郎"}});
  EXPECT_EQ(bridge::readablePersonName(QString(1000, QLatin1Char('^')) + QString(1000, QLatin1Char('='))),
            QString());
}
