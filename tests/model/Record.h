// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QSet>
#include <QString>

namespace model {

inline const QString BundleIdentifier = QStringLiteral("org.velmora.traced");
inline const QString Extension = QStringLiteral("rec");

/// One examination. Its token is given once, when it is made, and never to another: by it an examination is
/// known wherever it turns up.
struct Exam {
  int token = 0;
  QString date;
  QString measure;

  bool operator==(const Exam&) const = default;
  /// Whether there is anything in it that could be lost.
  bool holdsSomething() const { return !date.isEmpty() || !measure.isEmpty(); }
};

/// What a data file holds.
struct Record {
  QString identifier;
  QString birth;
  QList<Exam> exams;
  /// Bytes that no application can read.
  bool damaged = false;

  bool operator==(const Record&) const = default;
};

QJsonObject contentOf(const Record& record);
Record recordOf(const QJsonObject& content);

/// The data file of a record, as the application writes it.
QByteArray encoded(const Record& record);
/// The record of a data file; a damaged one when the bytes are none.
Record decoded(const QByteArray& bytes);

/// Sorts by date, those without one last; gives where the examination at `current` has got to.
qsizetype sortByDate(QList<Exam>& exams, qsizetype current);

/// One line for a failure's message.
QString described(const Record& record);
/// What would be lost with an examination: its token and everything entered into it.
QString version(const Exam& exam);
/// The versions of all examinations of a record that hold something.
QSet<QString> versions(const Record& record);

}  // namespace model
