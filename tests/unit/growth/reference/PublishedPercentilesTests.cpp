// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Every percentile that was published with L, M and S comes out of the references shipped.
#include <gtest/gtest.h>
#include <QSet>
#include <algorithm>
#include <cmath>

#include "tests/unit/growth/reference/ReferenceFiles.h"

using growth::GrowthReference;
using growth::GrowthTable;
using growth::Sex;

namespace {

struct Agreement {
  int checks = 0;
  int used = 0;  ///< of these, places where the reference itself answers with this table
  double largestDifference = 0;
};

// Computes every percentile of a published table and compares it with the one printed there.
Agreement compare(const GrowthReference& reference, const GrowthTable& table) {
  Agreement agreement;
  const QList<QByteArray> lines =
      referenceFolderFile(QStringLiteral("cdc2000/") + table.figures).trimmed().split('\n');
  const QList<QByteArray> columns = lines.first().split(',');
  for (const QByteArray& line : lines.sliced(1)) {
    const QList<QByteArray> fields = line.split(',');
    const Sex sex = fields[0] == "1" ? Sex::Male : Sex::Female;
    const double x = fields[1].toDouble();
    const auto lms = table.parametersAt(sex, x);
    EXPECT_TRUE(lms) << line.constData();
    if (!lms) continue;
    for (qsizetype column = 5; column < fields.size(); ++column) {
      const double published = fields[column].toDouble();
      const double z = growth::standardNormalQuantile(columns[column].mid(1).toInt() / 100.0);
      const double difference = std::abs(*growth::valueOf(*lms, z) - published);
      agreement.largestDifference = std::max(agreement.largestDifference, difference);
      ++agreement.checks;
      if (const auto value = reference.valueAt(sex, x, z); value && *value == *growth::valueOf(*lms, z))
        ++agreement.used;
    }
  }
  return agreement;
}

}  // namespace

TEST(PublishedPercentiles, ComeOutOfTheReferencesInEveryRow) {
  int checks = 0;
  QSet<QString> files;
  for (const char* name : shippedReferences) {
    const GrowthReference reference = shippedReference(QString::fromLatin1(name));
    for (const GrowthTable& table : reference.tables()) {
      const Agreement agreement = compare(reference, table);
      // The recumbent lengths were published with percentiles of fewer true digits.
      const double tolerance = table.figures == QStringLiteral("lenageinf.csv") ? 2e-5 : 1e-6;
      EXPECT_LE(agreement.largestDifference, tolerance) << qPrintable(table.figures);
      EXPECT_GT(agreement.used, 0) << qPrintable(table.figures);
      checks += agreement.checks;
      files.insert(table.figures);
    }
  }
  EXPECT_EQ(files.size(), 8);
  // Rows of both sexes times percentiles: 9 in most tables, 10 (with P85) in those of body mass index and
  // stature.
  EXPECT_EQ(checks, (76 + 436 + 74 + 436 + 76 + 120) * 9 + (438 + 92) * 10);
}

TEST(PublishedPercentiles, AreTheCurvesOfTheChart) {
  const GrowthReference weight = shippedReference(QStringLiteral("weight"));
  int checks = 0;
  for (const QByteArray& line :
       referenceFolderFile(QStringLiteral("cdc2000/wtage.csv")).trimmed().split('\n')) {
    const QList<QByteArray> fields = line.split(',');
    if (fields[0] != "2") continue;
    const QList<QPointF> curve = weight.centileCurve(Sex::Female, 97, 24, 240);
    const auto point = std::find_if(curve.begin(), curve.end(), [&](const QPointF& candidate) {
      return candidate.x() == fields[1].toDouble();
    });
    ASSERT_NE(point, curve.end()) << line.constData();
    EXPECT_NEAR(point->y(), fields.last().toDouble(), 1e-6);
    ++checks;
  }
  EXPECT_EQ(checks, 218);
}
