// SPDX-License-Identifier: LGPL-3.0-or-later
#include "apps/growth/tools/ReferenceConverter.h"

#include <QCryptographicHash>
#include <QList>

#include "apps/growth/reference/GrowthReference.h"

namespace growth {

using velmora::base::Failure;
using velmora::base::Result;

namespace {

// The rows of a published table in the lines of a reference file: first the boys, then the girls.
Result<QByteArray> rowsOfPublishedTable(const QByteArray& table) {
  QList<QByteArray> rows[2];
  int lineNumber = 0;
  for (const QByteArray& line : table.split('\n')) {
    ++lineNumber;
    const QList<QByteArray> fields = line.trimmed().split(',');
    if (lineNumber == 1) {
      if (fields.size() < 5 || fields[0] != "Sex" ||
          fields.sliced(2, 3) != QList<QByteArray>{"L", "M", "S"}) {
        return Failure{QStringLiteral("line 1 does not begin with the columns Sex, x, L, M, S")};
      }
      continue;
    }
    if (fields == QList<QByteArray>{QByteArray()}) continue;
    if (fields.size() < 5 || (fields[0] != "1" && fields[0] != "2"))
      return Failure{QStringLiteral("line %1 is no row of a boy or a girl").arg(lineNumber)};
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

Result<QByteArray> convertReference(const QByteArray& heading, const PublishedTables& tables) {
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
    if (!table) return Failure{QStringLiteral("There is no \"%1\".").arg(fileName)};
    const Result<QByteArray> lines = rowsOfPublishedTable(*table);
    if (!lines.ok()) return Failure{QStringLiteral("%1: %2.").arg(fileName, lines.error())};
    rows = *lines;
  }
  reference += rows + '\n';
  reference += "sha256: " + QCryptographicHash::hash(reference, QCryptographicHash::Sha256).toHex() + '\n';

  // What is written here can be read there.
  const Result<GrowthReference> read = GrowthReference::fromBytes(reference);
  if (!read.ok()) return read.failure();
  return reference;
}

}  // namespace growth
