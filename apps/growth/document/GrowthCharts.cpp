// SPDX-License-Identifier: LGPL-3.0-or-later
#include "apps/growth/document/GrowthCharts.h"

#include <QLocale>
#include <algorithm>
#include <cmath>
#include <limits>

#include "orv/chart/OrvGraphView.h"
#include "platform/text/Localization.h"

using velmora::platform::localizedString;

namespace growth {

namespace {

/// Published charts come in two pieces, birth to 36 months and 2 to 20 years, and this follows them: a child
/// with examinations on both sides gets the whole. The second piece ends where the child's next years do, so
/// that a kindergarten child's points are not squeezed into the corner of a chart for adolescents.
OrvGraphRange ageRange(const ChartPoints& points, const std::optional<GrowthReference::Range>& reference) {
  constexpr double InfantEnd = 36;
  constexpr double ChildStart = 24;
  const double end = reference ? reference->to : 240;
  double youngest = end;
  double oldest = 0;
  for (const QPointF& point : points.points) {
    youngest = std::min(youngest, point.x());
    oldest = std::max(oldest, point.x());
  }
  if (oldest <= InfantEnd || end <= InfantEnd) return {0, InfantEnd};
  const double start = youngest >= ChildStart ? ChildStart : 0;
  for (const double shorter : {72.0, 120.0, 180.0}) {
    if (oldest <= shorter) return {start, std::min(shorter, end)};
  }
  return {start, end};
}

/// The distance of labelled ticks on the age axis, in months.
double ageTicks(const OrvGraphRange& ages) {
  const double length = ages.upper - ages.lower;
  if (length <= 36) return 3;
  if (length <= 72) return 6;
  return length <= 120 ? 12 : 24;
}

QList<OrvReferenceCurve> curvesOf(const GrowthReference& reference, Sex sex, const OrvGraphRange& ages) {
  QList<OrvReferenceCurve> curves;
  for (const int percentile : chartPercentiles) {
    curves.append({QString::number(percentile),
                   reference.centileCurve(sex, percentile, ages.lower, ages.upper), percentile == 50});
  }
  return curves;
}

/// What the curves span, with room above and below.
OrvGraphRange valueRange(const QList<OrvReferenceCurve>& curves, Measure measure) {
  double lowest = std::numeric_limits<double>::infinity();
  double highest = -lowest;
  for (const OrvReferenceCurve& curve : curves) {
    for (const QPointF& point : curve.points) {
      if (!std::isfinite(point.y())) continue;
      lowest = std::min(lowest, point.y());
      highest = std::max(highest, point.y());
    }
  }
  if (lowest < highest) {
    const double room = (highest - lowest) * 0.06;
    return {std::max(0.0, lowest - room), highest + room};
  }
  switch (measure) {  // without a reference: the first years
    case Measure::Weight:
      return {0, 20};
    case Measure::Height:
      return {40, 110};
    case Measure::Head:
      break;
  }
  return {30, 55};
}

QString axisTitle(Measure measure) {
  switch (measure) {
    case Measure::Weight:
      return localizedString("VelmoraDocument", "Weight (kg)");
    case Measure::Height:
      return localizedString("VelmoraDocument", "Length or height (cm)");
    case Measure::Head:
      break;
  }
  return localizedString("VelmoraDocument", "Head circumference (cm)");
}

QString referenceTitle(const GrowthReference* reference, const std::optional<Sex>& sex) {
  if (!reference) return {};
  if (!sex) return localizedString("VelmoraDocument", "Choose the sex to see the reference");
  return QStringLiteral("%1, %2").arg(reference->heading().shortTitle,
                                      *sex == Sex::Female ? localizedString("VelmoraDocument", "girls")
                                                          : localizedString("VelmoraDocument", "boys"));
}

}  // namespace

std::optional<qsizetype> ChartPoints::pointOf(qsizetype examination) const {
  const qsizetype index = examinations.indexOf(examination);
  return index < 0 ? std::nullopt : std::optional(index);
}

ChartPoints chartPoints(const GrowthRecord& record, Measure measure) {
  ChartPoints chart;
  for (qsizetype i = 0; i < record.examinations.size(); ++i) {
    const Examination& examination = record.examinations.at(i);
    const std::optional<double> age = record.ageAt(examination);
    const std::optional<double> value = examination.of(measure).value;
    if (!age || !value || *value <= 0) continue;
    chart.points.append(QPointF(*age, *value));
    chart.examinations.append(i);
  }
  return chart;
}

void showChart(OrvGraphView& view, const GrowthRecord& record, Measure measure,
               const GrowthReference* reference, qsizetype currentExamination) {
  const ChartPoints points = chartPoints(record, measure);
  std::optional<GrowthReference::Range> range;
  if (reference) range = reference->range(record.sex.value_or(Sex::Female));
  const OrvGraphRange ages = ageRange(points, range);
  QList<OrvReferenceCurve> curves;
  if (reference && record.sex) curves = curvesOf(*reference, *record.sex, ages);
  view.setAxes(localizedString("VelmoraDocument", "Age (months)"), axisTitle(measure), ages,
               valueRange(curves, measure));
  view.setTickSteps(ageTicks(ages), 0);
  view.setLegend(localizedString("VelmoraDocument", "Patient"), referenceTitle(reference, record.sex));
  view.setReferenceCurves(curves);
  view.setDataPoints(points.points);
  view.setHighlightedPoint(points.pointOf(currentExamination));
}

QString resultText(const GrowthRecord& record, const Examination& examination, Measure measure,
                   const GrowthReference* reference) {
  const Measurement& measured = examination.of(measure);
  if (!measured.unread.isEmpty()) return localizedString("VelmoraDocument", "This is not a number.");
  if (!measured.value) return {};
  if (*measured.value <= 0) return localizedString("VelmoraDocument", "A measurement is above zero.");
  const std::optional<double> age = record.ageAt(examination);
  if (!age && record.birthDate.day.isValid() && examination.date.day.isValid()) {
    return localizedString("VelmoraDocument", "The examination lies before the birth.");
  }
  if (!age) return localizedString("VelmoraDocument", "Needs birth and exam date.");
  if (!record.sex) return localizedString("VelmoraDocument", "Needs the sex.");
  if (!reference) return localizedString("VelmoraDocument", "No reference.");
  const std::optional<GrowthReference::Range> range = reference->range(*record.sex);
  if (!range || *age < range->from || *age > range->to)
    return localizedString("VelmoraDocument", "The reference does not cover this age.");
  const std::optional<double> z = reference->zScore(*record.sex, *age, *measured.value);
  if (!z) return localizedString("VelmoraDocument", "Beyond what the reference describes.");
  const double centile = centileOf(*z);
  const QLocale locale;
  QString centileText = locale.toString(centile, 'f', 1);
  if (centile < 0.1) centileText = QStringLiteral("< ") + locale.toString(0.1, 'f', 1);
  if (centile > 99.9) centileText = QStringLiteral("> ") + locale.toString(99.9, 'f', 1);
  const double shown = std::abs(*z) < 0.005 ? 0 : *z;  // no "-0.00"
  return localizedString("VelmoraDocument", "z-score %1, centile %2")
      .arg(locale.toString(shown, 'f', 2), centileText);
}

}  // namespace growth
