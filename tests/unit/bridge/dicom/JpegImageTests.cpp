// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include "bridge/dicom/JpegImage.h"
#include "tests/unit/bridge/dicom/DicomTesting.h"

using bridge::JpegImage;
using bridge::jpegImage;
using namespace dicom_testing;

namespace {

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

/// Where the segment with this marker begins.
qsizetype segment(const QByteArray& bytes, unsigned char marker) {
  const char both[] = {'\xff', static_cast<char>(marker)};
  return bytes.indexOf(QByteArray(both, 2));
}

QByteArray patched(QByteArray bytes, qsizetype place, unsigned char value) {
  bytes[place] = static_cast<char>(value);
  return bytes;
}

/// Of three colours, which all are the same grey picture.
QByteArray jpegOfThreeScans() {
  const QByteArray colours = jpeg(JpegKind::Full);
  const QByteArray grey = jpeg(JpegKind::Grey);
  QByteArray scan = grey.mid(segment(grey, 0xda)).chopped(2);
  QByteArray image = colours.left(segment(colours, 0xda));
  for (char colour = 1; colour <= 3; ++colour) {
    scan[5] = colour;
    image += scan;
  }
  return image + "\xff\xd9";
}

/// 24 x 8 grey pixels with these sampling factors (ITU-T T.81, B.2.2) of its three colours, and these bits of
/// its one MCU.
QByteArray jpegSampled(unsigned char first, unsigned char second, unsigned char third, const char* bits) {
  QByteArray image = jpeg(JpegKind::Full);
  const qsizetype frame = segment(image, 0xc0);
  image = patched(patched(image, frame + 6, 8), frame + 8, 24);
  image = patched(patched(patched(image, frame + 11, first), frame + 14, second), frame + 17, third);
  return image.left(segment(image, 0xda) + 14) + QByteArray::fromHex(bits) + "\xff\xd9";
}

}  // namespace

TEST(JpegImageHeader, IsReadForEveryKind) {
  const struct {
    JpegKind kind;
    JpegImage::Colour colour;
  } rows[] = {{JpegKind::Full, JpegImage::Colour::YCbCr},
              {JpegKind::Reduced420, JpegImage::Colour::YCbCr},
              {JpegKind::Reduced422, JpegImage::Colour::YCbCr},
              {JpegKind::Grey, JpegImage::Colour::Grey},
              {JpegKind::AdobeRgb, JpegImage::Colour::Rgb}};
  for (const auto& row : rows) {
    const auto image = jpegImage(jpeg(row.kind, 123, 45));
    ASSERT_TRUE(image.ok()) << qPrintable(image.error());
    EXPECT_EQ(image->columns, 123);
    EXPECT_EQ(image->rows, 45);
    EXPECT_EQ(image->colour, row.colour);
    EXPECT_EQ(image->samplesPerPixel(), row.kind == JpegKind::Grey ? 1 : 3);
  }
}

TEST(JpegImageHeader, KnowsTheColoursAsDecodersDo) {
  const QByteArray rgb = jpeg(JpegKind::AdobeRgb);
  const QByteArray ycc = jpeg(JpegKind::Full);
  constexpr qsizetype Adobe = 16;  // its segment, with the marker
  constexpr qsizetype Jfif = 18;
  EXPECT_EQ(jpegImage(patched(rgb, 2 + Adobe - 1, 1))->colour, JpegImage::Colour::YCbCr);
  // JFIF, which is always luminance and chrominances, outdoes Adobe's marker.
  EXPECT_EQ(jpegImage(ycc.left(2 + Jfif) + rgb.mid(2))->colour, JpegImage::Colour::YCbCr);
  // As long as it is one.
  const QByteArray shortJfif = QByteArray("\xff\xe0\0\x07", 4) + QByteArray("JFIF\0", 5);
  EXPECT_EQ(jpegImage(rgb.left(2) + shortJfif + rgb.mid(2))->colour, JpegImage::Colour::Rgb);
  // Without either, the names of the components.
  QByteArray bare = rgb;
  bare.remove(2, Adobe);
  EXPECT_EQ(jpegImage(bare)->colour, JpegImage::Colour::YCbCr);
  const qsizetype frame = segment(bare, 0xc0);
  const qsizetype scan = segment(bare, 0xda);
  for (int i = 0; i < 3; ++i) {
    bare = patched(patched(bare, frame + 10 + 3 * i, static_cast<unsigned char>("RGB"[i])), scan + 5 + 2 * i,
                   static_cast<unsigned char>("RGB"[i]));
  }
  EXPECT_EQ(jpegImage(bare)->colour, JpegImage::Colour::Rgb);
  EXPECT_TRUE(jpegImage(bare).ok());
}

TEST(JpegImageHeader, TakesFillBytesAndOtherSegments) {
  QByteArray bytes = jpeg(JpegKind::Full);
  bytes.insert(2, QByteArray("\xff\xff\xff\xfe\x00\x05"
                             "abc",
                             9));
  bytes.insert(2, QByteArray("\xff\xe1\x00\x04\xff\xd9", 6));  // the end of an image within a segment is none
  EXPECT_TRUE(jpegImage(bytes).ok()) << qPrintable(jpegImage(bytes).error());
}

TEST(JpegImageHeader, TakesColoursThatHaveAScanEach) {
  const QByteArray image = jpegOfThreeScans();
  EXPECT_TRUE(jpegImage(image).ok()) << qPrintable(jpegImage(image).error());
  // Those have to be held in memory all at once.
  const qsizetype frame = segment(image, 0xc0);
  EXPECT_EQ(jpegImage(patched(patched(image, frame + 5, 0xff), frame + 7, 0xff)).error(),
            text("the JPEG image is too large"));
}

TEST(JpegImageHeader, IsRefusedWithoutAllOfItsPixels) {
  const QByteArray whole = jpeg(JpegKind::Full);
  const qsizetype pixels = segment(whole, 0xda) + 14;
  EXPECT_EQ(jpegImage(whole.left(pixels + 100) + whole.right(2)).error(),
            text("the JPEG image is incomplete"));
}

TEST(JpegImageHeader, IsRefusedWithColoursThatLibjpegCannotScale) {
  // Blocks without any difference: 001010 for the luminance, 0000 for a chrominance (Annex K.3), then ones.
  EXPECT_TRUE(jpegImage(jpegSampled(0x31, 0x11, 0x11, "28a2803f")).ok()) << "a third is a whole fraction";
  EXPECT_EQ(jpegImage(jpegSampled(0x31, 0x21, 0x11, "28a28003")).error(), text("the JPEG image is damaged"));
}

TEST(JpegImageHeader, IsRefusedWhereverItBreaksOff) {
  for (const JpegKind kind : {JpegKind::Full, JpegKind::Grey, JpegKind::AdobeRgb}) {
    const QByteArray whole = jpeg(kind, 24, 17);
    ASSERT_TRUE(jpegImage(whole).ok());
    for (qsizetype size = 0; size < whole.size(); ++size) {
      EXPECT_FALSE(jpegImage(whole.left(size)).ok()) << size;
    }
  }
}

TEST(JpegImageHeader, IsRefusedWithWhatIsWrong) {
  const QByteArray good = jpeg(JpegKind::Full);
  const qsizetype frame = segment(good, 0xc0);
  const qsizetype scan = segment(good, 0xda);
  const auto error = [](const QByteArray& bytes) {
    const QString said = jpegImage(bytes).error();
    return said.startsWith(text("the JPEG image ")) ? said.mid(15) : said;
  };
  EXPECT_EQ(error(QByteArray()), text("is empty"));
  EXPECT_EQ(error("GIF89a"), text("is none: it does not begin as JPEG does"));
  EXPECT_EQ(error(QByteArray("\xff\xd8\xff\xd9")), text("has no frame"));
  EXPECT_EQ(error(good + '\0'), text("has something behind its end"));
  EXPECT_EQ(error(good + good), text("has something behind its end"));
  EXPECT_EQ(error(good.chopped(2)), text("breaks off"));
  EXPECT_EQ(error(patched(good, frame + 1, 0xc2)), text("is not baseline JPEG (process 0xc2)"));
  EXPECT_EQ(error(patched(good, frame + 1, 0xc1)), text("is not baseline JPEG (process 0xc1)"));
  EXPECT_EQ(error(patched(good, frame + 1, 0xc9)), text("is not baseline JPEG (process 0xc9)"));
  EXPECT_EQ(error(patched(good, frame + 4, 12)), text("has not 8 bits a sample"));
  EXPECT_EQ(error(patched(good, frame + 6, 0)), text("has no size"));
  EXPECT_EQ(error(patched(good, frame + 8, 0)), text("has no size"));
  // A small image that claims to be a huge one.
  EXPECT_EQ(error(patched(patched(good, frame + 5, 0xff), frame + 7, 0xff)), text("is incomplete"));
  EXPECT_EQ(error(patched(good, segment(good, 0xdb) + 4, 0x10)), text("is not baseline JPEG (quantization)"));
  EXPECT_EQ(error(patched(good, segment(good, 0xc4) + 4, 0x02)),
            text("is not baseline JPEG (Huffman tables)"));
  EXPECT_EQ(error(patched(good, scan + 5, 77)), text("is damaged"));
  EXPECT_EQ(error(patched(good, scan + 1, 0x01)), text("has an unknown marker (0x01)"));
  EXPECT_EQ(error(patched(good, scan + 1, 0xdc)), text("says its height only at its end"));
  QByteArray twoFrames = good;
  twoFrames.insert(frame, good.mid(frame, 19));
  EXPECT_EQ(error(twoFrames), text("has two frames"));
  QByteArray withoutTables = good;
  const qsizetype tables = segment(good, 0xdb);
  withoutTables.remove(tables, 2 + 67);
  EXPECT_EQ(error(withoutTables), text("lacks tables that it needs"));
  // A scan of the luminance alone.
  const QByteArray grey = jpeg(JpegKind::Grey);
  EXPECT_EQ(error(good.left(scan) + grey.mid(segment(grey, 0xda))), text("is incomplete"));
  // More codes of one bit than there can be.
  const qsizetype codes = segment(good, 0xc4) + 5;
  const int moved = static_cast<unsigned char>(good.at(codes + 2));
  ASSERT_GT(moved, 2);
  EXPECT_EQ(error(patched(patched(good, codes, static_cast<unsigned char>(moved)), codes + 2, 0)),
            text("is damaged"));
  // Four colours, as for print.
  QByteArray cmyk = good;
  cmyk = patched(patched(cmyk, frame + 3, 20), frame + 9, 4);
  cmyk.insert(frame + 19, QByteArray("\x04\x11\x00", 3));
  EXPECT_EQ(error(cmyk), text("has 4 colours, not 1 or 3"));
  // The chrominances finer than the luminance.
  EXPECT_EQ(error(patched(good, frame + 14, 0x22)),
            text("has more places for its second or third colour than for its first"));
}
