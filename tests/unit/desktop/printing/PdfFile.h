// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QFile>
#include <QMap>
#include <QRectF>
#include <QRegularExpression>
#include <QSizeF>
#include <QString>
#include <QTransform>
#include <QtEndian>

namespace testing_support {

/// What stands in a PDF file that Qt wrote with one font: as much of the format (ISO 32000-1) as that takes.
class PdfFile {
 public:
  explicit PdfFile(const QString& path) {
    QFile file(path);
    if (file.open(QIODevice::ReadOnly)) bytes_ = file.readAll();
    latin1_ = QString::fromLatin1(bytes_);
  }

  bool isPdf() const { return bytes_.startsWith("%PDF-") && bytes_.trimmed().endsWith("%%EOF"); }
  qsizetype pageCount() const {
    static const QRegularExpression page("/Type\\s*/Page\\b(?!s)");
    return latin1_.count(page);
  }
  /// Of the first page, in points.
  QSizeF pageSize() const {
    static const QRegularExpression box(R"(/MediaBox\s*\[\s*\S+\s+\S+\s+(\S+)\s+([\d.]+))");
    const auto found = box.match(latin1_);
    return {found.captured(1).toDouble(), found.captured(2).toDouble()};
  }
  /// The document's own title, big-endian UTF-16 behind a byte order mark, special characters escaped.
  QString title() const {
    const QByteArray opening("/Title (\xFE\xFF");
    const qsizetype start = bytes_.indexOf(opening);
    if (start < 0) return {};
    const qsizetype first = start + opening.size();
    const QByteArray raw = bytes_.mid(first, bytes_.indexOf(")\n", first) - first);
    QString text;
    for (qsizetype i = 0; i + 1 < raw.size(); i += 2)
      text += QChar(qFromBigEndian<char16_t>(raw.constData() + i));
    return text;
  }
  /// The text on the pages, in the order in which it was drawn.
  QString text() const {
    const QMap<int, QChar> characters = characterMap();
    static const QRegularExpression shown("<([0-9A-F]{4})>\\s*Tj");
    QString all;
    for (const QByteArray& stream : streams()) {
      auto glyphs = shown.globalMatch(QString::fromLatin1(stream));
      while (glyphs.hasNext())
        all += characters.value(glyphs.next().captured(1).toInt(nullptr, 16), QChar(0xFFFD));
    }
    return all;
  }
  /// Where the picture on the page stands, in points from the lower left corner. A picture is drawn as the
  /// unit square of the coordinate system that the operators cm, q and Q have made.
  QRectF pictureOnPage() const {
    for (const QByteArray& stream : streams()) {
      if (!stream.contains(" Do")) continue;
      QList<QTransform> saved;
      QTransform current;
      QStringList operands;
      for (const QString& token :
           QString::fromLatin1(stream).split(QRegularExpression("\\s+"), Qt::SkipEmptyParts)) {
        if (token == "Do") return current.mapRect(QRectF(0, 0, 1, 1));
        if (token == "q") saved.append(current);
        if (token == "Q" && !saved.isEmpty()) current = saved.takeLast();
        if (token == "cm" && operands.size() >= 6) {
          const auto number = [&operands](int fromEnd) {
            return operands.at(operands.size() - fromEnd).toDouble();
          };
          current = QTransform(number(6), number(5), number(4), number(3), number(2), number(1)) * current;
        }
        operands.append(token);
      }
    }
    return {};
  }

 private:
  QList<QByteArray> streams() const {
    QList<QByteArray> all;
    static const QByteArray opening("stream\n");
    for (qsizetype at = 0; (at = bytes_.indexOf(opening, at)) >= 0;) {
      const qsizetype start = at + opening.size();
      const qsizetype end = bytes_.indexOf("endstream", start);
      const QByteArray raw = bytes_.mid(start, end - start);
      // Only zlib's data (it begins with 0x78) is compressed; qUncompress wants a guess at the size before
      // it.
      all.append(raw.startsWith('\x78') ? qUncompress(QByteArray("\0\1\0\0", 4) + raw) : raw);
      at = end + opening.size() + 3;
    }
    return all;
  }
  /// What the glyph numbers of the font mean, from its map to Unicode.
  QMap<int, QChar> characterMap() const {
    QMap<int, QChar> map;
    static const QRegularExpression range("<([0-9A-F]{4})> <[0-9A-F]{4}> \\[([^\\]]*)\\]");
    static const QRegularExpression value("<([0-9A-F]{4})>");
    for (const QByteArray& stream : streams()) {
      if (!stream.contains("begincmap")) continue;
      auto ranges = range.globalMatch(QString::fromLatin1(stream));
      while (ranges.hasNext()) {
        const auto found = ranges.next();
        int glyph = found.captured(1).toInt(nullptr, 16);
        auto values = value.globalMatch(found.captured(2));
        while (values.hasNext()) {
          const QChar character(static_cast<char16_t>(values.next().captured(1).toInt(nullptr, 16)));
          // Tab and space are one glyph, and Qt writes the tab.
          map.insert(glyph++, character.isSpace() ? QChar(' ') : character);
        }
      }
    }
    return map;
  }

  QByteArray bytes_;
  QString latin1_;
};

}  // namespace testing_support
