// SPDX-License-Identifier: LGPL-3.0-or-later
#include "tests/model/Record.h"

#include <QDate>
#include <QJsonArray>
#include <QJsonDocument>
#include <algorithm>
#include <numeric>

#include "orv/documents/OrvChecksum.h"

using namespace velmora;

namespace model {

QJsonObject contentOf(const Record& record) {
  QJsonArray exams;
  for (const Exam& exam : record.exams) {
    exams.append(QJsonObject{{QStringLiteral("token"), exam.token},
                             {QStringLiteral("date"), exam.date},
                             {QStringLiteral("measure"), exam.measure}});
  }
  return {{QStringLiteral("identifier"), record.identifier},
          {QStringLiteral("birth"), record.birth},
          {QStringLiteral("exams"), exams}};
}

Record recordOf(const QJsonObject& content) {
  Record record;
  record.identifier = content.value(QStringLiteral("identifier")).toString();
  record.birth = content.value(QStringLiteral("birth")).toString();
  for (const QJsonValue value : content.value(QStringLiteral("exams")).toArray()) {
    record.exams.append({value[QStringLiteral("token")].toInt(), value[QStringLiteral("date")].toString(),
                         value[QStringLiteral("measure")].toString()});
  }
  return record;
}

QByteArray encoded(const Record& record) {
  if (record.damaged) return QByteArrayLiteral("{ this is the beginning of something that never");
  const QJsonObject file{{QStringLiteral("format"), BundleIdentifier},
                         {QStringLiteral("version"), 1},
                         {QStringLiteral("application"), QStringLiteral("Traced 1.0")},
                         {QStringLiteral("checksum"), QString::fromLatin1(orv::emptyChecksum())},
                         {QStringLiteral("content"), contentOf(record)}};
  return orv::withChecksum(QJsonDocument(file).toJson(QJsonDocument::Indented));
}

Record decoded(const QByteArray& bytes) {
  const QJsonObject file = QJsonDocument::fromJson(bytes).object();
  const QJsonValue content = file.value(QStringLiteral("content"));
  if (!content.isObject() || !orv::checksumHolds(bytes)) return {{}, {}, {}, true};
  return recordOf(content.toObject());
}

qsizetype sortByDate(QList<Exam>& exams, qsizetype current) {
  const auto day = [&exams](qsizetype index) {
    const QDate date = QDate::fromString(exams.at(index).date, QStringLiteral("dd/MM/yyyy"));
    return date.isValid() ? date : QDate(9999, 12, 31);
  };
  QList<qsizetype> order(exams.size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(), [&](qsizetype a, qsizetype b) { return day(a) < day(b); });
  QList<Exam> sorted;
  for (const qsizetype index : order) sorted.append(exams.at(index));
  exams = sorted;
  return order.indexOf(current);
}

QString version(const Exam& exam) {
  return QStringLiteral("#%1 %2 %3").arg(exam.token).arg(exam.date, exam.measure);
}

QSet<QString> versions(const Record& record) {
  QSet<QString> all;
  for (const Exam& exam : record.exams) {
    if (exam.holdsSomething()) all.insert(version(exam));
  }
  return all;
}

QString described(const Record& record) {
  if (record.damaged) return QStringLiteral("damaged");
  QStringList exams;
  for (const Exam& exam : record.exams) exams.append(version(exam));
  return QStringLiteral("'%1' born '%2' {%3}")
      .arg(record.identifier, record.birth, exams.join(QStringLiteral("; ")));
}

}  // namespace model
