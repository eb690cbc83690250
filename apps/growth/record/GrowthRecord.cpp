// SPDX-License-Identifier: LGPL-3.0-or-later
#include "apps/growth/record/GrowthRecord.h"

#include <QJsonArray>
#include <QLocale>
#include <QRegularExpression>
#include <algorithm>
#include <cmath>
#include <numeric>

#include "apps/growth/record/Age.h"
#include "base/CalendarDay.h"
#include "platform/text/Localization.h"

using namespace velmora;

namespace growth {

using velmora::base::Failure;
using velmora::base::Result;

namespace {

Failure damaged(const QString& what) {
  return Failure{platform::localizedString("VelmoraDocument", "The file is damaged (%1).").arg(what)};
}

QJsonValue dateToJson(const RecordDate& date) {
  return date.day.isValid() ? date.day.toString(Qt::ISODate) : date.unread;
}

RecordDate dateFromJson(const QJsonValue& json) {
  const QString text = json.toString();
  const QDate day = base::dayFromIso(text);
  return day.isValid() ? RecordDate{day, {}} : RecordDate{{}, text};
}

QJsonObject examinationToJson(const Examination& examination) {
  QJsonObject json;
  if (examination.date != RecordDate{}) json.insert(QStringLiteral("date"), dateToJson(examination.date));
  for (const Measure measure : measures) {
    const Measurement& measured = examination.of(measure);
    if (measured.value) json.insert(wordFor(measure), *measured.value);
    if (!measured.unread.isEmpty()) json.insert(wordFor(measure), measured.unread);
  }
  return json;
}

Result<Examination> examinationFromJson(const QJsonValue& json) {
  Examination examination;
  if (!json.isObject()) return damaged(QStringLiteral("examinations"));
  const QJsonValue date = json[QStringLiteral("date")];
  if (!date.isUndefined() && !date.isString()) return damaged(QStringLiteral("date"));
  examination.date = dateFromJson(date);
  for (const Measure measure : measures) {
    const QJsonValue measured = json[wordFor(measure)];
    if (measured.isUndefined()) continue;
    if (measured.isDouble()) {
      examination.of(measure).value = measured.toDouble();
    } else if (measured.isString()) {
      examination.of(measure).unread = measured.toString();
    } else {
      return damaged(wordFor(measure));
    }
  }
  return examination;
}

}  // namespace

std::optional<double> GrowthRecord::ageAt(const Examination& examination) const {
  return ageInMonths(birthDate.day, examination.date.day);
}

qsizetype GrowthRecord::sortExaminations(qsizetype current) {
  QList<qsizetype> order(examinations.size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(), [this](qsizetype a, qsizetype b) {
    const QDate& first = examinations.at(a).date.day;
    const QDate& second = examinations.at(b).date.day;
    if (first.isValid() != second.isValid()) return first.isValid();
    return first < second;
  });
  QList<Examination> sorted;
  for (const qsizetype index : order) sorted.append(examinations.at(index));
  examinations = sorted;
  return std::max<qsizetype>(0, order.indexOf(current));
}

QJsonObject GrowthRecord::toJson() const {
  QJsonArray all;
  for (const Examination& examination : examinations) all.append(examinationToJson(examination));
  QJsonObject json{{QStringLiteral("identifier"), identifier}, {QStringLiteral("examinations"), all}};
  if (birthDate != RecordDate{}) json.insert(QStringLiteral("birthDate"), dateToJson(birthDate));
  if (sex) {
    json.insert(QStringLiteral("sex"),
                *sex == Sex::Female ? QStringLiteral("female") : QStringLiteral("male"));
  }
  return json;
}

Result<GrowthRecord> GrowthRecord::fromJson(const QJsonObject& json) {
  GrowthRecord read;
  const QJsonValue identifier = json.value(QStringLiteral("identifier"));
  // Half a character would be left out of the file's name, and the record be saved as another patient's.
  if (!identifier.isString() || !identifier.toString().isValidUtf16())
    return damaged(QStringLiteral("identifier"));
  read.identifier = identifier.toString();
  const QJsonValue birthDate = json.value(QStringLiteral("birthDate"));
  if (!birthDate.isUndefined() && !birthDate.isString()) return damaged(QStringLiteral("birthDate"));
  read.birthDate = dateFromJson(birthDate);
  const QJsonValue sex = json.value(QStringLiteral("sex"));
  if (sex == QStringLiteral("female")) {
    read.sex = Sex::Female;
  } else if (sex == QStringLiteral("male")) {
    read.sex = Sex::Male;
  } else if (!sex.isUndefined()) {
    return damaged(QStringLiteral("sex"));
  }
  const QJsonArray examinations = json.value(QStringLiteral("examinations")).toArray();
  if (examinations.isEmpty()) return damaged(QStringLiteral("examinations"));
  read.examinations.clear();
  for (const auto& each : examinations) {
    const Result<Examination> examination = examinationFromJson(each);
    if (!examination.ok()) return examination.failure();
    read.examinations.append(*examination);
  }
  return read;
}

Measurement measurementFromText(const QString& text) {
  const QString trimmed = text.trimmed();
  if (trimmed.isEmpty()) return {};
  QLocale locale;
  locale.setNumberOptions(QLocale::RejectGroupSeparator);
  bool isNumber = false;
  double value = locale.toDouble(trimmed, &isNumber);
  QLocale withPoint = QLocale::c();
  withPoint.setNumberOptions(QLocale::RejectGroupSeparator);
  if (!isNumber) value = withPoint.toDouble(trimmed, &isNumber);
  // Many hands type the comma whatever the desktop's language. With three digits behind it, it might mean
  // thousands.
  static const QRegularExpression decimalComma(QStringLiteral("^[+-]?\\d+,\\d{1,2}$"));
  if (!isNumber && decimalComma.match(trimmed).hasMatch()) {
    value = QLocale::c().toDouble(QString(trimmed).replace(QLatin1Char(','), QLatin1Char('.')), &isNumber);
  }
  if (!isNumber || !std::isfinite(value)) return {std::nullopt, trimmed};
  return {value, {}};
}

QString textOf(const Measurement& measurement) {
  if (!measurement.value) return measurement.unread;
  QLocale locale;
  locale.setNumberOptions(QLocale::OmitGroupSeparator);
  const QString shown = locale.toString(*measurement.value, 'g', QLocale::FloatingPointShortest);
  // Some languages write powers of ten, or a minus sign, as they themselves cannot be read.
  if (measurementFromText(shown).value == measurement.value) return shown;
  return QLocale::c().toString(*measurement.value, 'g', QLocale::FloatingPointShortest);
}

}  // namespace growth
