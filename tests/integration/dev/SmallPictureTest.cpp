// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>
#include <QImage>

#include "demo/guide/SmallPicture.h"

namespace {

constexpr QRgb White = 0xffffffff;
constexpr QRgb Blue = 0xff0000ff;

TEST(SmallPicture, KeepsEveryColourOfAPictureWithFew) {
  QImage picture(300, 2, QImage::Format_ARGB32);
  picture.fill(White);
  for (int x = 0; x < 255; ++x) picture.setPixel(x, 1, qRgb(x, 0, 0));
  const QImage small = demo::withFewColours(picture);
  EXPECT_EQ(small.format(), QImage::Format_Indexed8);
  EXPECT_EQ(small.convertToFormat(QImage::Format_RGB32), picture.convertToFormat(QImage::Format_RGB32));
}

TEST(SmallPicture, GivesARareColourItsNearestFrequentOne) {
  // 300 colours; each of the first 255 in two pixels, and blue in many.
  QImage picture(300, 3, QImage::Format_RGB32);
  picture.fill(Blue);
  for (int x = 0; x < 300; ++x) {
    picture.setPixel(x, 0, qRgb(x / 2, 100 + x % 2, 0));
    if (x < 255) picture.setPixel(x, 1, qRgb(x / 2, 100 + x % 2, 0));
  }
  const QImage small = demo::withFewColours(picture);
  EXPECT_LE(small.colorCount(), 256);
  EXPECT_EQ(small.pixel(0, 2), Blue);
  EXPECT_EQ(small.pixel(254, 0), qRgb(127, 100, 0));
  EXPECT_EQ(small.pixel(298, 0), qRgb(127, 100, 0));
  EXPECT_EQ(demo::withFewColours(picture), small);
}

}  // namespace
