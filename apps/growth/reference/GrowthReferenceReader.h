// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QList>
#include <QSet>

#include "apps/growth/reference/GrowthReference.h"

namespace growth {

/// Reads a reference file, line by line, and refuses whatever it does not fully understand.
class GrowthReferenceReader {
 public:
  explicit GrowthReferenceReader(const QByteArray& bytes) : bytes_(bytes) {}

  velmora::base::Result<GrowthReference> read();

  /// Largest file taken, in bytes. The largest reference shipped has about 23,000.
  static constexpr qsizetype maximumSize = 1024 * 1024;
  /// Most rows of one sex in one table.
  static constexpr int maximumRows = 5000;

 private:
  bool fail(const QString& reason);
  bool nextLine();
  bool readFirstLine();
  bool readHeading();
  bool readHeadingLine(QSet<QString>& seen);
  bool readTables();
  bool readTable();
  bool readTableLine(GrowthTable& table, const QString& key, const QString& value);
  bool readUse(GrowthTable& table, const QString& value);
  bool readRows(GrowthTable& table);
  bool readRow(QList<GrowthTable::Row>& rows);
  bool checkCoverage(const GrowthTable& table);
  bool checkJoins();
  bool checkDigest();

  QByteArray bytes_;
  qsizetype lineStart_ = 0;  ///< of `line_`, in bytes
  qsizetype position_ = 0;   ///< of the line after it
  int lineNumber_ = 0;
  QString line_;
  QString error_;
  GrowthReference reference_;
};

}  // namespace growth
