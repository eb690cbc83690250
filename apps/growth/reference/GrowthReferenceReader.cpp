// SPDX-License-Identifier: LGPL-3.0-or-later
#include "apps/growth/reference/GrowthReferenceReader.h"

#include <QCryptographicHash>
#include <QHash>
#include <QStringDecoder>
#include <cmath>

namespace growth {

using namespace Qt::StringLiterals;
using velmora::base::Failure;
using velmora::base::Result;

namespace {

constexpr int formatVersion = 1;

constexpr QLatin1StringView formatName = "velmora-reference"_L1;

// The number written in `text`, or nothing when it is no plain finite decimal number.
std::optional<double> numberIn(const QString& text) {
  for (const QChar character : text) {
    if (!u"0123456789+-.eE"_s.contains(character)) return std::nullopt;
  }
  bool isNumber = false;
  const double number = text.toDouble(&isNumber);
  return isNumber && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

}  // namespace

Result<GrowthReference> GrowthReference::fromBytes(const QByteArray& bytes) {
  return GrowthReferenceReader(bytes).read();
}

Result<GrowthReference> GrowthReferenceReader::read() {
  if (bytes_.size() > maximumSize) return Failure{u"The file is larger than %1 bytes."_s.arg(maximumSize)};
  if (!readFirstLine() || !readHeading() || !readTables() || !checkJoins() || !checkDigest())
    return Failure{error_};
  return reference_;
}

bool GrowthReferenceReader::fail(const QString& reason) {
  error_ = u"Line %1: %2"_s.arg(qMax(1, lineNumber_)).arg(reason);
  return false;
}

// Steps to the next line that says something. Comments and empty lines say nothing.
bool GrowthReferenceReader::nextLine() {
  while (position_ < bytes_.size()) {
    ++lineNumber_;
    lineStart_ = position_;
    const qsizetype end = bytes_.indexOf('\n', position_);
    if (end < 0) return fail(u"the file is cut short within this line."_s);
    QStringDecoder decoder(QStringDecoder::Utf8);
    line_ = decoder(QByteArrayView(bytes_).sliced(position_, end - position_));
    position_ = end + 1;
    if (decoder.hasError() || line_.contains(QChar::Null)) return fail(u"this is not UTF-8 text."_s);
    if (!line_.isEmpty() && !line_.startsWith(u'#')) return true;
  }
  ++lineNumber_;
  return fail(u"the file is cut short before this line."_s);
}

bool GrowthReferenceReader::readFirstLine() {
  const QString notOurs = u"this is not a reference file (it does not begin with \"%1\")."_s.arg(formatName);
  if (!bytes_.startsWith(QByteArray(formatName.data(), formatName.size()) + ' ')) return fail(notOurs);
  if (!nextLine()) return false;
  bool isNumber = false;
  const int version = line_.mid(formatName.size() + 1).toInt(&isNumber);
  if (!isNumber || version < 1) return fail(notOurs);
  if (version > formatVersion) {
    return fail(
        u"the file has format %1; this program reads formats up to %2."_s.arg(version).arg(formatVersion));
  }
  return true;
}

bool GrowthReferenceReader::readHeading() {
  QSet<QString> seen;
  while (nextLine()) {
    if (line_.startsWith(u'[')) {
      for (const QString& key :
           {u"title"_s, u"short-title"_s, u"measurement"_s, u"unit"_s, u"variable"_s, u"variable-unit"_s,
            u"population"_s, u"source"_s, u"method"_s, u"method-source"_s, u"interpolation"_s, u"join"_s}) {
        if (!seen.contains(key)) return fail(u"the heading above does not say \"%1\"."_s.arg(key));
      }
      return true;
    }
    if (!readHeadingLine(seen)) return false;
  }
  return false;
}

bool GrowthReferenceReader::readHeadingLine(QSet<QString>& seen) {
  GrowthReferenceHeading& heading = reference_.heading_;
  const QHash<QString, QString*> fields{
      {u"title"_s, &heading.title},
      {u"short-title"_s, &heading.shortTitle},
      {u"measurement"_s, &heading.measurement},
      {u"unit"_s, &heading.unit},
      {u"variable"_s, &heading.variable},
      {u"variable-unit"_s, &heading.variableUnit},
      {u"population"_s, &heading.population},
      {u"source"_s, &heading.source},
      {u"method-source"_s, &heading.method},
      {u"join"_s, &heading.join},
  };
  const qsizetype colon = line_.indexOf(u": "_s);
  if (colon < 1) return fail(u"a heading line is a key, a colon, a space and a text."_s);
  const QString key = line_.first(colon);
  const QString value = line_.sliced(colon + 2).trimmed();
  if (value.isEmpty()) return fail(u"\"%1\" says nothing."_s.arg(key));
  if (seen.contains(key)) return fail(u"\"%1\" is said twice."_s.arg(key));
  seen.insert(key);

  if (QString* field = fields.value(key)) {
    *field = value;
    return true;
  }
  // Figures made for another method would give wrong answers without a sign of it.
  if (key == u"method"_s) return value == u"LMS"_s || fail(u"the method \"%1\" is not known."_s.arg(value));
  if (key == u"interpolation"_s) {
    return value == u"linear"_s || fail(u"the interpolation \"%1\" is not known."_s.arg(value));
  }
  return fail(u"\"%1\" is not known."_s.arg(key));
}

// Reads tables up to the line with the digest. The current line is the "[" line of the first.
bool GrowthReferenceReader::readTables() {
  while (line_.startsWith(u'[')) {
    if (!readTable()) return false;
  }
  return true;
}

bool GrowthReferenceReader::readTable() {
  GrowthTable table;
  if (!line_.startsWith(u"[table "_s) || !line_.endsWith(u']'))
    return fail(u"this is no \"[table name]\"."_s);
  table.name = line_.sliced(7, line_.size() - 8);
  for (const GrowthTable& other : reference_.tables_) {
    if (other.name == table.name) return fail(u"there are two tables \"%1\"."_s.arg(table.name));
  }

  while (nextLine()) {
    if (line_.startsWith(u'[') || line_.startsWith(u"sha256: "_s)) {
      if (!checkCoverage(table)) return false;
      reference_.tables_.append(table);
      return true;
    }
    const bool isRead = line_.startsWith(u"rows "_s) ? readRows(table)
                                                     : readTableLine(table, line_.section(u": "_s, 0, 0),
                                                                     line_.section(u": "_s, 1).trimmed());
    if (!isRead) return false;
  }
  return false;
}

bool GrowthReferenceReader::readTableLine(GrowthTable& table, const QString& key, const QString& value) {
  if (value.isEmpty())
    return fail(u"a line of a table is a key, a colon, a space and a text, or begins rows."_s);
  if (key == u"use"_s) return readUse(table, value);
  QString* field = key == u"title"_s ? &table.title : key == u"figures"_s ? &table.figures : nullptr;
  if (!field) return fail(u"\"%1\" is not known."_s.arg(key));
  if (!field->isEmpty()) return fail(u"\"%1\" is said twice."_s.arg(key));
  *field = value;
  return true;
}

// "from 0 below 24" or "from 24 through 240".
bool GrowthReferenceReader::readUse(GrowthTable& table, const QString& value) {
  if (table.from < table.to) return fail(u"\"use\" is said twice."_s);
  const QStringList words = value.split(u' ');
  const std::optional<double> from = words.size() == 4 ? numberIn(words[1]) : std::nullopt;
  const std::optional<double> to = words.size() == 4 ? numberIn(words[3]) : std::nullopt;
  const bool isUnderstood = from && to && *from < *to && words[0] == u"from"_s &&
                            (words[2] == u"below"_s || words[2] == u"through"_s);
  if (!isUnderstood)
    return fail(u"\"use\" is \"from a below b\" or \"from a through b\", with a less than b."_s);
  table.from = *from;
  table.to = *to;
  table.toIncluded = words[2] == u"through"_s;
  return true;
}

// "rows boys 38", then as many rows.
bool GrowthReferenceReader::readRows(GrowthTable& table) {
  const QStringList words = line_.split(u' ');
  bool isNumber = false;
  const int count = words.size() == 3 ? words[2].toInt(&isNumber) : 0;
  if (!isNumber || count < 2 || count > maximumRows || (words[1] != u"boys"_s && words[1] != u"girls"_s)) {
    return fail(
        u"rows begin with \"rows boys\" or \"rows girls\" and their number, 2 to %1."_s.arg(maximumRows));
  }
  QList<GrowthTable::Row>& rows =
      table.rows[static_cast<int>(words[1] == u"boys"_s ? Sex::Male : Sex::Female)];
  if (!rows.isEmpty()) return fail(u"the table has \"%1\" twice."_s.arg(words[1]));
  rows.reserve(count);
  for (int row = 0; row < count; ++row) {
    if (!nextLine() || !readRow(rows)) return false;
  }
  return true;
}

bool GrowthReferenceReader::readRow(QList<GrowthTable::Row>& rows) {
  const QStringList words = line_.split(u' ');
  if (words.size() != 4) return fail(u"a row is four numbers with one space between: x L M S."_s);
  double numbers[4];
  for (int column = 0; column < 4; ++column) {
    const std::optional<double> number = numberIn(words[column]);
    if (!number) return fail(u"\"%1\" is not a number."_s.arg(words[column]));
    numbers[column] = *number;
  }
  const GrowthTable::Row row{numbers[0], {numbers[1], numbers[2], numbers[3]}};
  if (row.lms.M <= 0.0) return fail(u"M is not above 0."_s);
  if (row.lms.S <= 0.0) return fail(u"S is not above 0."_s);
  if (!rows.isEmpty() && row.x <= rows.last().x) return fail(u"x does not rise from row to row."_s);
  rows.append(row);
  return true;
}

// A table must say where it is used, and must have figures wherever it is used.
bool GrowthReferenceReader::checkCoverage(const GrowthTable& table) {
  if (table.title.isEmpty()) return fail(u"the table above does not say \"title\"."_s);
  if (table.figures.isEmpty()) return fail(u"the table above does not say \"figures\"."_s);
  if (!(table.from < table.to)) return fail(u"the table above does not say \"use\"."_s);
  if (table.rows[0].isEmpty() && table.rows[1].isEmpty()) return fail(u"the table above has no rows."_s);
  for (const QList<GrowthTable::Row>& rows : table.rows) {
    if (!rows.isEmpty() && (rows.first().x > table.from || rows.last().x < table.to)) {
      return fail(u"the table above is used where it has no rows."_s);
    }
  }
  return true;
}

// Tables follow each other without a gap or an overlap, and the last one includes its end.
bool GrowthReferenceReader::checkJoins() {
  for (const Sex sex : {Sex::Male, Sex::Female}) {
    const GrowthTable* previous = nullptr;
    for (const GrowthTable& table : reference_.tables_) {
      if (table.rowsOf(sex).isEmpty()) continue;
      if (previous && (previous->toIncluded || previous->to != table.from)) {
        return fail(u"the tables \"%1\" and \"%2\" do not join."_s.arg(previous->name, table.name));
      }
      previous = &table;
    }
    if (previous && !previous->toIncluded) {
      return fail(
          u"nothing follows the table \"%1\", which is used \"below\" its end."_s.arg(previous->name));
    }
  }
  return true;
}

// One changed digit would give a wrong z-score that nobody sees, so the last line carries the digest of all
// before it.
bool GrowthReferenceReader::checkDigest() {
  const QByteArray digest =
      QCryptographicHash::hash(QByteArrayView(bytes_).first(lineStart_), QCryptographicHash::Sha256).toHex();
  if (line_ != u"sha256: "_s + QString::fromLatin1(digest)) {
    return fail(u"the file was changed after it was made (its SHA-256 is another)."_s);
  }
  if (position_ != bytes_.size()) return fail(u"the file goes on after its last line."_s);
  return true;
}

}  // namespace growth
