// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QPointF>
#include <QString>
#include <array>
#include <optional>

#include "apps/growth/reference/Lms.h"
#include "base/Result.h"

namespace growth {

enum class Sex { Male, Female };

/// The centile curves that a growth chart shows.
inline constexpr std::array<int, 9> chartPercentiles{3, 5, 10, 25, 50, 75, 90, 95, 97};

/// One published table: L, M and S at rising values of the independent variable, for boys and for girls.
struct GrowthTable {
  struct Row {
    double x;
    Lms lms;
  };

  QString name;     ///< a word, unique in its reference
  QString title;    ///< as published
  QString figures;  ///< the published file that the figures come from
  double from = 0;  ///< the part of the table that its reference uses
  double to = 0;
  bool toIncluded = true;
  QList<Row> rows[2];  ///< by Sex; empty where the table has no such children

  const QList<Row>& rowsOf(Sex sex) const { return rows[static_cast<int>(sex)]; }
  /// L, M and S at x, interpolated linearly between rows, over the whole published table, used or not.
  /// Nothing outside.
  std::optional<Lms> parametersAt(Sex sex, double x) const;
};

/// What a reference says of itself.
struct GrowthReferenceHeading {
  QString title;         ///< "Weight for age"
  QString shortTitle;    ///< for a legend: "CDC 2000"
  QString measurement;   ///< "weight"
  QString unit;          ///< "kg"
  QString variable;      ///< the independent variable: "age" or "length"
  QString variableUnit;  ///< "months", "cm"
  QString population;
  QString source;  ///< full citation
  QString method;  ///< full citation of the method
  QString join;    ///< in words, which table holds where
};

/// A reference for one measurement, read from a reference file (reference/FORMAT.md): one or more published
/// tables that follow each other along the independent variable. Every question about a place outside the
/// range that the file states, or about children whom it does not cover, is answered with nothing: no value
/// is ever extrapolated.
class GrowthReference {
 public:
  /// Reads a reference file. Fails when it is damaged, foreign or of a newer format, and says why, with the
  /// line.
  static velmora::base::Result<GrowthReference> fromBytes(const QByteArray& bytes);

  const GrowthReferenceHeading& heading() const { return heading_; }
  /// The tables in the order in which they follow each other.
  const QList<GrowthTable>& tables() const { return tables_; }

  struct Range {
    double from;
    double to;  ///< included
  };
  /// Where the reference holds for these children; nothing when it holds nowhere.
  std::optional<Range> range(Sex sex) const;

  std::optional<Lms> parametersAt(Sex sex, double x) const;
  /// Nothing, too, for a value that is not a positive finite number.
  std::optional<double> zScore(Sex sex, double x, double value) const;
  std::optional<double> valueAt(Sex sex, double x, double z) const;

  /// The curve of a percentile (above 0, below 100) for a chart, over the part of [from, to] where the
  /// reference holds: its ends and every tabulated place between. Where one table ends at another value than
  /// the next begins with, a point that is not a number stands between them and interrupts the curve.
  QList<QPointF> centileCurve(Sex sex, double percentile, double from, double to) const;

 private:
  friend class GrowthReferenceReader;

  const GrowthTable* tableAt(Sex sex, double x) const;

  GrowthReferenceHeading heading_;
  QList<GrowthTable> tables_;
};

}  // namespace growth
