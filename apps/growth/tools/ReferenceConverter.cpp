// SPDX-License-Identifier: LGPL-3.0-or-later
#include "apps/growth/tools/ReferenceConverter.h"

#include <QCryptographicHash>
#include <QList>

#include "apps/growth/reference/GrowthReference.h"

namespace growth {

using namespace Qt::StringLiterals;

namespace {

// The rows of a published table in the lines of a reference file: first the boys, then the girls.
std::optional<QByteArray> rowsOfPublishedTable(const QByteArray& table, QString* error) {
  QList<QByteArray> rows[2];
  int lineNumber = 0;
  for (const QByteArray& line : table.split('\n')) {
    ++lineNumber;
    const QList<QByteArray> fields = line.trimmed().split(',');
    if (lineNumber == 1) {
      if (fields.size() < 5 || fields[0] != "Sex" ||
          fields.sliced(2, 3) != QList<QByteArray>{"L", "M", "S"}) {
        *error = u"line 1 does not begin with the columns Sex, x, L, M, S"_s;
        return std::nullopt;
      }
      continue;
    }
    if (fields == QList<QByteArray>{QByteArray()}) continue;
    if (fields.size() < 5 || (fields[0] != "1" && fields[0] != "2")) {
      *error = u"line %1 is no row of a boy or a girl"_s.arg(lineNumber);
      return std::nullopt;
    }
    rows[fields[0] == "1" ? 0 : 1].append(fields.sliced(1, 4).join(' '));
  }

  QByteArray lines;
  for (int sex = 0; sex < 2; ++sex) {
    if (rows[sex].isEmpty()) continue;
    lines += (sex == 0 ? "rows boys " : "rows girls ") + QByteArray::number(rows[sex].size()) + '\n';
    lines += rows[sex].join('\n') + '\n';
  }
  return lines;
}

}  // namespace

std::optional<QByteArray> convertReference(const QByteArray& heading, const PublishedTables& tables,
                                           QString* error) {
  QByteArray reference;
  QByteArray rows;
  for (const QByteArray& line : heading.trimmed().split('\n')) {
    // The rows of a table stand at its end: before the line that begins the next one.
    if (line.startsWith('[') && !rows.isEmpty()) reference += std::exchange(rows, {}) + '\n';
    const bool followsRows = line.isEmpty() && !rows.isEmpty();
    if (!followsRows) reference += line + '\n';

    if (!line.startsWith("figures: ")) continue;
    const QString fileName = QString::fromUtf8(line.mid(9).trimmed());
    const std::optional<QByteArray> table = tables(fileName);
    if (!table) {
      *error = u"There is no \"%1\"."_s.arg(fileName);
      return std::nullopt;
    }
    QString reason;
    const std::optional<QByteArray> lines = rowsOfPublishedTable(*table, &reason);
    if (!lines) {
      *error = u"%1: %2."_s.arg(fileName, reason);
      return std::nullopt;
    }
    rows = *lines;
  }
  reference += rows + '\n';
  reference += "sha256: " + QCryptographicHash::hash(reference, QCryptographicHash::Sha256).toHex() + '\n';

  // What is written here can be read there.
  if (!GrowthReference::fromBytes(reference, error)) return std::nullopt;
  return reference;
}

}  // namespace growth
