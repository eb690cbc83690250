// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include "bridge/dicom/CharacterSet.h"
#include "tests/unit/bridge/dicom/DicomTesting.h"

using bridge::decodedText;

namespace {

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

struct Row {
  const char* characterSet;
  QByteArray bytes;
  const char* expected;
};

void expectRows(const QList<Row>& rows) {
  for (const Row& row : rows) {
    EXPECT_EQ(decodedText(row.bytes, row.characterSet), text(row.expected))
        << row.characterSet << " " << row.bytes.toPercentEncoding().constData();
  }
}

}  // namespace

TEST(CharacterSet, ReadsTheSingleOnes) {
  expectRows({{"", "Smith^John", "Smith^John"},
              {"ISO_IR 6", "Smith", "Smith"},
              {"ISO_IR 100", "M\xfcller", "Müller"},
              {"ISO_IR 101", "Wa\xb3\xeasa", "Wałęsa"},
              {"ISO_IR 109", "\xa6", "Ĥ"},
              {"ISO_IR 110", "\xa3", "Ŗ"},
              {"ISO_IR 144", "\xbb\xee\xda", "Люк"},
              {"ISO_IR 127", "\xe2\xc8\xc7\xe6\xea", "قباني"},
              {"ISO_IR 126", "\xc4\xe9\xef\xed\xf5\xf3\xe9\xef\xf2", "Διονυσιος"},
              {"ISO_IR 138", "\xf9\xf8\xe5\xef", "שרון"},
              {"ISO_IR 148", "\xc7\xfd\xfe", "Çış"},
              {"ISO_IR 203", "\xa4", "€"},
              {"ISO_IR 166", "\xb9\xd2", "นา"},
              {"ISO_IR 13", "\xd4\xcf\xc0\xde^\xc0\xdb\xb3", "ﾔﾏﾀﾞ^ﾀﾛｳ"},
              {"ISO_IR 13", "a~", "a‾"},
              {"ISO_IR 192", "Wang^XiaoDong=王^小東=", "Wang^XiaoDong=王^小東="},
              {"GB18030", "Wang^XiaoDong=\xcd\xf5^\xd0\xa1\xb6\xab=", "Wang^XiaoDong=王^小东="},
              {"GBK", "\xcd\xf5", "王"}});
}

// The names of PS3.5 annexes H, I and K.
TEST(CharacterSet, ReadsCodeExtensions) {
  expectRows({{"\\ISO 2022 IR 87",
               "Yamada^Tarou=\033$B;3ED\033(B^\033$BB@O:\033(B=\033$B$d$^$@\033(B^\033$B$?$m$&\033(B",
               "Yamada^Tarou=山田^太郎=やまだ^たろう"},
              {"ISO 2022 IR 13\\ISO 2022 IR 87",
               "\xd4\xcf\xc0\xde^\xc0\xdb\xb3=\033$B;3ED\033(J^\033$BB@O:\033(J=\033$B$d$^$@\033(J^\033$B$?$"
               "m$&\033(J",
               "ﾔﾏﾀﾞ^ﾀﾛｳ=山田^太郎=やまだ^たろう"},
              {"\\ISO 2022 IR 159", "\033$(D0!\033(B", "丂"},
              {"\\ISO 2022 IR 149",
               "Hong^Gildong=\033$)C\xfb\xf3^\033$)C\xd1\xce\xd4\xd7=\033$)C\xc8\xab^\033$)C\xb1\xe6\xb5\xbf",
               "Hong^Gildong=洪^吉洞=홍^길동"},
              {"\\ISO 2022 IR 58",
               "Zhang^XiaoDong=\033$)A\xd5\xc5^\033$)A\xd0\xa1\xb6\xab=", "Zhang^XiaoDong=张^小东="},
              {"ISO 2022 IR 100\\ISO 2022 IR 144", "J\xe9r\xf4me=\033-L\xbb\xee", "Jérôme=Лю"},
              // A delimiter ends what an escape sequence began.
              {"ISO 2022 IR 100\\ISO 2022 IR 144", "\033-L\xbb^\xe9", "Л^é"},
              // The second byte of a kanji may look like a delimiter.
              {"\\ISO 2022 IR 87", "\033$B8=\033(B^x", "現^x"}});
}

TEST(CharacterSet, ReadsWhatTheFieldWrites) {
  expectRows({{"ISO-IR 100", "M\xfcller", "Müller"},
              {"ISO_IR_100 ", "M\xfcller", "Müller"},
              {"iso ir 100", "M\xfcller", "Müller"},
              {"ISO 2022 IR 100", "M\xfcller", "Müller"},
              {"UTF-8", "Müller", "Müller"},
              {"ISO 2022 IR 87", "\033$B;3ED\033(B", "山田"},
              // The escape sequence says what the attribute forgot.
              {"", "\033$B;3ED\033(B", "山田"},
              {"ISO_IR 100", "\033$B;3ED\033(B", "山田"}});
}

TEST(CharacterSet, FallsBackWhereItIsUnknownOrUntrue) {
  expectRows({{"ISO_IR 999", "Müller", "Müller"},
              {"KLINGON", "M\xfcller", "Müller"},
              {"ISO_IR", "M\xfcller", "Müller"},
              {"ISO_IR 99999999999999999999", "x", "x"},
              {"", "Müller", "Müller"},
              {"", "M\xfcller", "Müller"},
              {"ISO_IR 192", "M\xfcller", "Müller"},
              {"GB18030", "M\xfc", "Mü"},
              {"\\ISO 2022 IR 87", "\033$B;", "\033$B;"},
              {"\\ISO 2022 IR 87", "\033$B\x7f\x7f\033(B", "\033$B\x7f\x7f\033(B"},
              {"\\ISO 2022 IR 149", "\033$)C\xb1", "\033$)C±"},
              {"\\ISO 2022 IR 87", "\033", "\033"},
              {"\\\\\\\\", "x", "x"}});
  EXPECT_EQ(decodedText(QByteArray(), "ISO_IR 100"), QString());
}
