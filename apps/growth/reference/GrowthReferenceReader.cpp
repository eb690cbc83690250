// SPDX-License-Identifier: LGPL-3.0-or-later
#include "apps/growth/reference/GrowthReferenceReader.h"

#include <QCryptographicHash>
#include <QHash>
#include <QStringDecoder>
#include <cmath>

namespace growth {

using velmora::base::Failure;
using velmora::base::Result;

namespace {

constexpr int formatVersion = 1;

constexpr QLatin1String formatName("velmora-reference");

// The number written in `text`, or nothing when it is no plain finite decimal number.
std::optional<double> numberIn(const QString& text) {
  for (const QChar character : text) {
    if (!QStringLiteral("0123456789+-.eE").contains(character)) return std::nullopt;
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
  if (bytes_.size() > maximumSize)
    return Failure{QStringLiteral("The file is larger than %1 bytes.").arg(maximumSize)};
  if (!readFirstLine() || !readHeading() || !readTables() || !checkJoins() || !checkDigest())
    return Failure{error_};
  return reference_;
}

bool GrowthReferenceReader::fail(const QString& reason) {
  error_ = QStringLiteral("Line %1: %2").arg(qMax(1, lineNumber_)).arg(reason);
  return false;
}

// Steps to the next line that says something. Comments and empty lines say nothing.
bool GrowthReferenceReader::nextLine() {
  while (position_ < bytes_.size()) {
    ++lineNumber_;
    lineStart_ = position_;
    const qsizetype end = bytes_.indexOf('\n', position_);
    if (end < 0) return fail(QStringLiteral("the file is cut short within this line."));
    QStringDecoder decoder(QStringDecoder::Utf8);
    line_ = decoder(QByteArrayView(bytes_).sliced(position_, end - position_));
    position_ = end + 1;
    if (decoder.hasError() || line_.contains(QChar::Null))
      return fail(QStringLiteral("this is not UTF-8 text."));
    if (!line_.isEmpty() && !line_.startsWith(u'#')) return true;
  }
  ++lineNumber_;
  return fail(QStringLiteral("the file is cut short before this line."));
}

bool GrowthReferenceReader::readFirstLine() {
  const QString notOurs =
      QStringLiteral("this is not a reference file (it does not begin with \"%1\").").arg(formatName);
  if (!bytes_.startsWith(QByteArray(formatName.data(), formatName.size()) + ' ')) return fail(notOurs);
  if (!nextLine()) return false;
  bool isNumber = false;
  const int version = line_.mid(formatName.size() + 1).toInt(&isNumber);
  if (!isNumber || version < 1) return fail(notOurs);
  if (version > formatVersion) {
    return fail(QStringLiteral("the file has format %1; this program reads formats up to %2.")
                    .arg(version)
                    .arg(formatVersion));
  }
  return true;
}

bool GrowthReferenceReader::readHeading() {
  QSet<QString> seen;
  while (nextLine()) {
    if (line_.startsWith(u'[')) {
      for (const QString& key :
           {QStringLiteral("title"), QStringLiteral("short-title"), QStringLiteral("measurement"),
            QStringLiteral("unit"), QStringLiteral("variable"), QStringLiteral("variable-unit"),
            QStringLiteral("population"), QStringLiteral("source"), QStringLiteral("method"),
            QStringLiteral("method-source"), QStringLiteral("interpolation"), QStringLiteral("join")}) {
        if (!seen.contains(key))
          return fail(QStringLiteral("the heading above does not say \"%1\".").arg(key));
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
      {QStringLiteral("title"), &heading.title},
      {QStringLiteral("short-title"), &heading.shortTitle},
      {QStringLiteral("measurement"), &heading.measurement},
      {QStringLiteral("unit"), &heading.unit},
      {QStringLiteral("variable"), &heading.variable},
      {QStringLiteral("variable-unit"), &heading.variableUnit},
      {QStringLiteral("population"), &heading.population},
      {QStringLiteral("source"), &heading.source},
      {QStringLiteral("method-source"), &heading.method},
      {QStringLiteral("join"), &heading.join},
  };
  const qsizetype colon = line_.indexOf(QStringLiteral(": "));
  if (colon < 1) return fail(QStringLiteral("a heading line is a key, a colon, a space and a text."));
  const QString key = line_.first(colon);
  const QString value = line_.sliced(colon + 2).trimmed();
  if (value.isEmpty()) return fail(QStringLiteral("\"%1\" says nothing.").arg(key));
  if (seen.contains(key)) return fail(QStringLiteral("\"%1\" is said twice.").arg(key));
  seen.insert(key);

  if (QString* field = fields.value(key)) {
    *field = value;
    return true;
  }
  // Figures made for another method would give wrong answers without a sign of it.
  if (key == QStringLiteral("method"))
    return value == QStringLiteral("LMS") ||
           fail(QStringLiteral("the method \"%1\" is not known.").arg(value));
  if (key == QStringLiteral("interpolation")) {
    return value == QStringLiteral("linear") ||
           fail(QStringLiteral("the interpolation \"%1\" is not known.").arg(value));
  }
  return fail(QStringLiteral("\"%1\" is not known.").arg(key));
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
  if (!line_.startsWith(QStringLiteral("[table ")) || !line_.endsWith(u']'))
    return fail(QStringLiteral("this is no \"[table name]\"."));
  table.name = line_.sliced(7, line_.size() - 8);
  for (const GrowthTable& other : reference_.tables_) {
    if (other.name == table.name) return fail(QStringLiteral("there are two tables \"%1\".").arg(table.name));
  }

  while (nextLine()) {
    if (line_.startsWith(u'[') || line_.startsWith(QStringLiteral("sha256: "))) {
      if (!checkCoverage(table)) return false;
      reference_.tables_.append(table);
      return true;
    }
    const bool isRead = line_.startsWith(QStringLiteral("rows "))
                            ? readRows(table)
                            : readTableLine(table, line_.section(QStringLiteral(": "), 0, 0),
                                            line_.section(QStringLiteral(": "), 1).trimmed());
    if (!isRead) return false;
  }
  return false;
}

bool GrowthReferenceReader::readTableLine(GrowthTable& table, const QString& key, const QString& value) {
  if (value.isEmpty())
    return fail(QStringLiteral("a line of a table is a key, a colon, a space and a text, or begins rows."));
  if (key == QStringLiteral("use")) return readUse(table, value);
  QString* field = key == QStringLiteral("title")     ? &table.title
                   : key == QStringLiteral("figures") ? &table.figures
                                                      : nullptr;
  if (!field) return fail(QStringLiteral("\"%1\" is not known.").arg(key));
  if (!field->isEmpty()) return fail(QStringLiteral("\"%1\" is said twice.").arg(key));
  *field = value;
  return true;
}

// "from 0 below 24" or "from 24 through 240".
bool GrowthReferenceReader::readUse(GrowthTable& table, const QString& value) {
  if (table.from < table.to) return fail(QStringLiteral("\"use\" is said twice."));
  const QStringList words = value.split(u' ');
  const std::optional<double> from = words.size() == 4 ? numberIn(words[1]) : std::nullopt;
  const std::optional<double> to = words.size() == 4 ? numberIn(words[3]) : std::nullopt;
  const bool isUnderstood = from && to && *from < *to && words[0] == QStringLiteral("from") &&
                            (words[2] == QStringLiteral("below") || words[2] == QStringLiteral("through"));
  if (!isUnderstood)
    return fail(QStringLiteral("\"use\" is \"from a below b\" or \"from a through b\", with a less than b."));
  table.from = *from;
  table.to = *to;
  table.toIncluded = words[2] == QStringLiteral("through");
  return true;
}

// "rows boys 38", then as many rows.
bool GrowthReferenceReader::readRows(GrowthTable& table) {
  const QStringList words = line_.split(u' ');
  bool isNumber = false;
  const int count = words.size() == 3 ? words[2].toInt(&isNumber) : 0;
  if (!isNumber || count < 2 || count > maximumRows ||
      (words[1] != QStringLiteral("boys") && words[1] != QStringLiteral("girls"))) {
    return fail(QStringLiteral("rows begin with \"rows boys\" or \"rows girls\" and their number, 2 to %1.")
                    .arg(maximumRows));
  }
  QList<GrowthTable::Row>& rows =
      table.rows[static_cast<int>(words[1] == QStringLiteral("boys") ? Sex::Male : Sex::Female)];
  if (!rows.isEmpty()) return fail(QStringLiteral("the table has \"%1\" twice.").arg(words[1]));
  rows.reserve(count);
  for (int row = 0; row < count; ++row) {
    if (!nextLine() || !readRow(rows)) return false;
  }
  return true;
}

bool GrowthReferenceReader::readRow(QList<GrowthTable::Row>& rows) {
  const QStringList words = line_.split(u' ');
  if (words.size() != 4)
    return fail(QStringLiteral("a row is four numbers with one space between: x L M S."));
  double numbers[4];
  for (int column = 0; column < 4; ++column) {
    const std::optional<double> number = numberIn(words[column]);
    if (!number) return fail(QStringLiteral("\"%1\" is not a number.").arg(words[column]));
    numbers[column] = *number;
  }
  const GrowthTable::Row row{numbers[0], {numbers[1], numbers[2], numbers[3]}};
  if (row.lms.M <= 0.0) return fail(QStringLiteral("M is not above 0."));
  if (row.lms.S <= 0.0) return fail(QStringLiteral("S is not above 0."));
  if (!rows.isEmpty() && row.x <= rows.last().x)
    return fail(QStringLiteral("x does not rise from row to row."));
  rows.append(row);
  return true;
}

// A table must say where it is used, and must have figures wherever it is used.
bool GrowthReferenceReader::checkCoverage(const GrowthTable& table) {
  if (table.title.isEmpty()) return fail(QStringLiteral("the table above does not say \"title\"."));
  if (table.figures.isEmpty()) return fail(QStringLiteral("the table above does not say \"figures\"."));
  if (!(table.from < table.to)) return fail(QStringLiteral("the table above does not say \"use\"."));
  if (table.rows[0].isEmpty() && table.rows[1].isEmpty())
    return fail(QStringLiteral("the table above has no rows."));
  for (const QList<GrowthTable::Row>& rows : table.rows) {
    if (!rows.isEmpty() && (rows.first().x > table.from || rows.last().x < table.to)) {
      return fail(QStringLiteral("the table above is used where it has no rows."));
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
        return fail(
            QStringLiteral("the tables \"%1\" and \"%2\" do not join.").arg(previous->name, table.name));
      }
      previous = &table;
    }
    if (previous && !previous->toIncluded) {
      return fail(QStringLiteral("nothing follows the table \"%1\", which is used \"below\" its end.")
                      .arg(previous->name));
    }
  }
  return true;
}

// One changed digit would give a wrong z-score that nobody sees, so the last line carries the digest of all
// before it.
bool GrowthReferenceReader::checkDigest() {
  const QByteArray digest =
      QCryptographicHash::hash(QByteArrayView(bytes_).first(lineStart_), QCryptographicHash::Sha256).toHex();
  if (line_ != QStringLiteral("sha256: ") + QString::fromLatin1(digest)) {
    return fail(QStringLiteral("the file was changed after it was made (its SHA-256 is another)."));
  }
  if (position_ != bytes_.size()) return fail(QStringLiteral("the file goes on after its last line."));
  return true;
}

}  // namespace growth
