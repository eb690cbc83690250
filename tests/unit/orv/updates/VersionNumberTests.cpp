// SPDX-License-Identifier: LGPL-3.0-or-later
#include "orv/updates/OrvVersionNumber.h"

#include <gtest/gtest.h>

#include <QStringList>
#include <vector>

#include "testing/main/Shown.h"

using namespace velmora;

namespace {

constexpr auto Same = std::strong_ordering::equal;
constexpr auto Before = std::strong_ordering::less;

struct Pair {
  const char* left;
  const char* right;
  std::strong_ordering order;
};

const Pair Pairs[] = {
    {"1.9", "1.10", Before},
    {"9", "10", Before},
    {"1.0", "1.0.0", Same},
    {"1", "1.0.0.0", Same},
    {"1.0", "1.0.1", Before},
    {"1.0.0.9", "1.0.1", Before},
    {"1.01", "1.1", Same},
    {"007", "7", Same},
    {"0", "", Same},
    {"", "0.0.1", Before},
    {"1,2", "1.2", Same},
    {" 1.2 ", "1.2", Same},
    {"1..2", "1.2", Same},
    {"v1.2", "1.2", Same},
    {"V1.9", "v1.10", Before},
    // What leads up to a release.
    {"1.0b2", "1.0", Before},
    {"1.0b2", "1.0b10", Before},
    {"1.0a9", "1.0b1", Before},
    {"1.0B1", "1.0b1", Same},
    {"1.0 beta", "1.0 rc", Before},
    {"1.0-beta.2", "1.0-beta.10", Before},
    {"1.0-rc1", "1.0", Before},
    {"1.0b4", "1.0.0b4", Same},
    {"1.0.0b3", "1.0b4", Before},
    {"1.0b", "1.0b1", Before},
    {"0.9", "1.0b1", Before},
    {"1.0", "1.0.1b1", Before},
    {"1.0.1b1", "1.0.1", Before},
    {"2.0b1", "2.0.1b1", Before},
    {"beta", "1", Before},
    // More digits than any number type holds, dates and numbers of commits.
    {"18446744073709551615", "18446744073709551616", Before},
    {"1.99999999999999999999999999999999999999", "1.100000000000000000000000000000000000000", Before},
    {"1.000000000000000000000000000000000000001", "1.1", Same},
    {"20240502", "20241101", Before},
    // Digits of other scripts are not those of a version; letters are letters.
    {"1.\u0661", "1", Same},
    {"1.0\u03b2", "1.0", Before},
    {"1.0\u0391", "1.0\u03b1", Same},
};

}  // namespace

TEST(VersionNumbers, AreComparedByNumber) {
  for (const Pair& pair : Pairs) {
    const QString left = QString::fromUtf8(pair.left);
    const QString right = QString::fromUtf8(pair.right);
    const auto reversed = pair.order == Same ? Same : std::strong_ordering::greater;
    EXPECT_TRUE(orv::compareVersions(left, right) == pair.order) << pair.left << " and " << pair.right;
    EXPECT_TRUE(orv::compareVersions(right, left) == reversed) << pair.right << " and " << pair.left;
    EXPECT_TRUE(orv::compareVersions(left, left) == Same) << pair.left;
  }
}

TEST(VersionNumbers, AreInOneOrder) {
  // Any three of them, however they are written, agree with each other.
  QStringList versions;
  for (const Pair& pair : Pairs) versions << QString::fromUtf8(pair.left) << QString::fromUtf8(pair.right);
  const auto count = static_cast<size_t>(versions.size());
  std::vector<std::vector<bool>> notAfter(count, std::vector<bool>(count));
  for (size_t a = 0; a < count; ++a) {
    for (size_t b = 0; b < count; ++b)
      notAfter[a][b] = orv::compareVersions(versions.at(static_cast<qsizetype>(a)),
                                            versions.at(static_cast<qsizetype>(b))) <= 0;
  }
  for (size_t a = 0; a < count; ++a) {
    for (size_t b = 0; b < count; ++b) {
      for (size_t c = 0; notAfter[a][b] && c < count; ++c) {
        if (notAfter[b][c] && !notAfter[a][c]) {
          ADD_FAILURE() << Pairs[a / 2].left << ", " << Pairs[b / 2].left << ", " << Pairs[c / 2].left;
        }
      }
    }
  }
}

TEST(VersionNumbers, OfAnyLengthAreCompared) {
  const QString long1 = QString("1.").repeated(100000) + "1";
  const QString long2 = QString("1.").repeated(100000) + "2";
  EXPECT_TRUE(orv::compareVersions(long1, long2) < 0);
  EXPECT_TRUE(orv::compareVersions(QString(1000000, '9'), "1" + QString(1000000, '0')) < 0);
}
