// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/dicom/JpegImage.h"

#include <csetjmp>
#include <cstdio>  // jpeglib.h needs it before itself

#include <jpeglib.h>

#include <jerror.h>

#include <QString>

namespace bridge {
namespace {

using velmora::base::Failure;
using velmora::base::Result;

Failure refusal(const QString& why) { return {QStringLiteral("the JPEG image ") + why}; }
QString hexadecimal(int number) { return QStringLiteral("0x%1").arg(number, 2, 16, QLatin1Char('0')); }

// ITU-T T.81, table B.1.
enum Marker : int {
  BaselineFrame = 0xc0,
  HuffmanTable = 0xc4,
  LastFrame = 0xcf,
  EndOfImage = 0xd9,
  StartOfScan = 0xda,
  QuantizationTable = 0xdb,
  NumberOfLines = 0xdc,
  RestartInterval = 0xdd,
  Application0 = 0xe0,
  Application15 = 0xef,
  Comment = 0xfe,
  Fill = 0xff,
};

/// Looks from marker to marker (B.1.1.2) up to the first scan for what libjpeg
/// decodes and the baseline process does not have. Where the markers are damaged, libjpeg says so.
Result<> checkBaseline(const QByteArray& jpeg) {
  const auto byteAt = [&](qsizetype place) {
    return place < jpeg.size() ? static_cast<unsigned char>(jpeg.at(place)) : -1;
  };
  for (qsizetype place = 2; byteAt(place) == Fill;) {
    const int marker = byteAt(place + 1);
    if (marker == Fill) {
      ++place;
      continue;
    }
    const bool isOther = marker > BaselineFrame && marker <= LastFrame && marker != HuffmanTable;
    if (isOther) return refusal(QStringLiteral("is not baseline JPEG (process %1)").arg(hexadecimal(marker)));
    if (marker == NumberOfLines) return refusal(QStringLiteral("says its height only at its end"));
    if (marker == EndOfImage || marker == StartOfScan) break;
    const bool isKnown = marker == BaselineFrame || marker == HuffmanTable || marker == QuantizationTable ||
                         marker == RestartInterval || marker == Comment ||
                         (marker >= Application0 && marker <= Application15);
    if (!isKnown && marker >= 0) {
      return refusal(QStringLiteral("has an unknown marker (%1)").arg(hexadecimal(marker)));
    }
    const qsizetype end = place + 2 + (byteAt(place + 2) << 8 | byteAt(place + 3));
    constexpr qsizetype TableSize = 65;
    for (qsizetype table = place + 4; marker == QuantizationTable && table < end; table += TableSize) {
      if (byteAt(table) > 3) return refusal(QStringLiteral("is not baseline JPEG (quantization)"));
    }
    place = end;
  }
  return {};
}

/// One image in libjpeg's hands. libjpeg is C: nothing may throw through it, and it ends at an error by a
/// jump. So nothing here, nor in decodeFully(), has a destructor that would be jumped over.
struct Decoding {
  jpeg_decompress_struct decoder;
  jpeg_error_mgr errors;
  std::jmp_buf refused;
};

[[noreturn]] void refuse(j_common_ptr decoder) noexcept {
  std::longjmp(static_cast<Decoding*>(decoder->client_data)->refused, 1);
}

void warned(j_common_ptr decoder, int level) noexcept {
  // A decoder continues where something is missing or damaged, and shows grey. The two exceptions concern
  // markers that all decoders read alike.
  const int code = decoder->err->msg_code;
  if (level < 0 && code != JWRN_ADOBE_XFORM && code != JWRN_JFIF_MAJOR) refuse(decoder);
}

void silent(j_common_ptr) noexcept {}

// What libjpeg decodes but a chart must not be; above libjpeg's own codes.
enum Objection { ColourCount = 10000, Chrominances, HuffmanTables, MissingScan, Trailer };

[[noreturn]] void reject(Decoding& decoding, Objection objection) {
  decoding.errors.msg_code = objection;
  refuse(reinterpret_cast<j_common_ptr>(&decoding.decoder));
}

void checkHeader(Decoding& decoding) {
  const jpeg_decompress_struct& decoder = decoding.decoder;
  if (decoder.num_components != 1 && decoder.num_components != 3) reject(decoding, ColourCount);
  for (int i = 1; i < decoder.num_components; ++i) {
    const bool isFiner = decoder.comp_info[i].h_samp_factor > decoder.comp_info[0].h_samp_factor ||
                         decoder.comp_info[i].v_samp_factor > decoder.comp_info[0].v_samp_factor;
    if (isFiner) reject(decoding, Chrominances);
  }
}

void checkTables(Decoding& decoding) {
  for (int i = 2; i < NUM_HUFF_TBLS; ++i) {
    if (decoding.decoder.dc_huff_tbl_ptrs[i] || decoding.decoder.ac_huff_tbl_ptrs[i]) {
      reject(decoding, HuffmanTables);
    }
  }
}

/// Decodes the image to its end. Returns false when libjpeg or we reject it; errors.msg_code says why. Either
/// way the caller must destroy the decoder, which keeps what it has read.
bool decodeFully(Decoding& decoding, const unsigned char* bytes, unsigned long size) {
  jpeg_decompress_struct& decoder = decoding.decoder;
  decoder.err = jpeg_std_error(&decoding.errors);
  decoding.errors.error_exit = refuse;
  decoding.errors.emit_message = warned;
  decoding.errors.output_message = silent;
  decoder.client_data = &decoding;
  if (setjmp(decoding.refused) != 0) return false;
  jpeg_create_decompress(&decoder);
  // A chart whose colours come in separate scans takes a fraction of it.
  decoder.mem->max_memory_to_use = 1024L * 1024 * 1024;
  jpeg_mem_src(&decoder, bytes, size);
  jpeg_read_header(&decoder, TRUE);
  checkHeader(decoding);
  checkTables(decoding);
  // At an eighth of the size all pixels are decoded with little computation.
  decoder.scale_num = 1;
  decoder.scale_denom = 8;
  jpeg_start_decompress(&decoder);
  JSAMPARRAY row =
      decoder.mem->alloc_sarray(reinterpret_cast<j_common_ptr>(&decoder), JPOOL_IMAGE,
                                decoder.output_width * static_cast<JDIMENSION>(decoder.output_components), 1);
  while (decoder.output_scanline < decoder.output_height) jpeg_read_scanlines(&decoder, row, 1);
  for (int i = 0; i < decoder.num_components; ++i) {
    if (!decoder.comp_info[i].quant_table) reject(decoding, MissingScan);  // no scan had this component
  }
  jpeg_finish_decompress(&decoder);
  checkTables(decoding);
  if (decoder.src->bytes_in_buffer > 0) reject(decoding, Trailer);
  return true;
}

QString reason(const Decoding& decoding) {
  switch (decoding.errors.msg_code) {
    case JERR_NO_SOI:
      return QStringLiteral("is none: it does not begin as JPEG does");
    case JWRN_JPEG_EOF:
      return QStringLiteral("breaks off");
    case JERR_NO_IMAGE:
      return QStringLiteral("has no frame");
    case JERR_SOF_DUPLICATE:
      return QStringLiteral("has two frames");
    case JERR_BAD_PRECISION:
      return QStringLiteral("has not 8 bits a sample");
    case JERR_EMPTY_IMAGE:
      return QStringLiteral("has no size");
    case JERR_IMAGE_TOO_BIG:
    case JERR_NO_BACKING_STORE:
    case JERR_OUT_OF_MEMORY:
      return QStringLiteral("is too large");
    case ColourCount:
      return QStringLiteral("has %1 colours, not 1 or 3").arg(decoding.decoder.num_components);
    case Chrominances:
      return QStringLiteral("has more places for its second or third colour than for its first");
    case HuffmanTables:
      return QStringLiteral("is not baseline JPEG (Huffman tables)");
    case JERR_NO_HUFF_TABLE:
    case JERR_NO_QUANT_TABLE:
      return QStringLiteral("lacks tables that it needs");
    case JERR_SOF_NO_SOS:
    case JWRN_HIT_MARKER:
    case MissingScan:
      return QStringLiteral("is incomplete");
    case Trailer:
      return QStringLiteral("has something behind its end");
    default:
      return QStringLiteral("is damaged");
  }
}

JpegImage::Colour colourOf(J_COLOR_SPACE space) {
  if (space == JCS_GRAYSCALE) return JpegImage::Colour::Grey;
  return space == JCS_RGB ? JpegImage::Colour::Rgb : JpegImage::Colour::YCbCr;
}

}  // namespace

Result<JpegImage> jpegImage(const QByteArray& jpeg) {
  if (jpeg.isEmpty()) return refusal(QStringLiteral("is empty"));
  if (jpeg.startsWith("\xff\xd8")) {
    const Result<> baseline = checkBaseline(jpeg);
    if (!baseline.ok()) return baseline.failure();
  }
  Decoding decoding{};
  const bool isWhole = decodeFully(decoding, reinterpret_cast<const unsigned char*>(jpeg.constData()),
                                   static_cast<unsigned long>(jpeg.size()));
  const jpeg_decompress_struct& decoder = decoding.decoder;
  const JpegImage image{static_cast<int>(decoder.image_width), static_cast<int>(decoder.image_height),
                        colourOf(decoder.jpeg_color_space)};
  const QString why = isWhole ? QString() : reason(decoding);
  jpeg_destroy_decompress(&decoding.decoder);
  if (!isWhole) return refusal(why);
  return image;
}

}  // namespace bridge
