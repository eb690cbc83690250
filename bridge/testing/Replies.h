// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QBuffer>
#include <QDateTime>
#include <QImage>
#include <QString>
#include <QVariantMap>

#include "bridge/dicom/Study.h"

/// What applications send back for a study, for tests of those who receive it.
namespace bridge_testing {

/// Letters of a test's own.
inline QString text(const char* utf8) { return QString::fromUtf8(utf8); }

/// Applications that send charts.
inline const QString Growth = QStringLiteral("org.velmora.growth");
inline const QString Vision = QStringLiteral("org.velmora.vision");

/// A small baseline JPEG; one for each number.
inline QByteArray jpeg(int number = 1) {
  QImage image(16, 16, QImage::Format_RGB32);
  image.fill(QColor::fromHsv(number * 37 % 360, 200, 220));
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, "JPEG", 90);
  return bytes;
}

/// A calendar date as it travels.
inline QDateTime noon(const QDate& day) { return QDateTime(day, QTime(12, 0)).toUTC(); }

/// A study of an invented child, of which the archive knows the least.
inline bridge::Study study(const char* uid, const char* patientID, QDate day = QDate(2024, 5, 2)) {
  bridge::Study study;
  study.studyInstanceUID = text(uid);
  study.patientID = text(patientID);
  study.patientName = text("Muster^Max");
  study.birthDate = QDate(2019, 3, 14);
  study.studyDate = day;
  return study;
}

/// What an application sends for a study that it got the whole request of.
inline QVariantMap replyTo(const bridge::Study& study, int number = 1) {
  QString identifier = study.patientID;
  return {{text("Identifier"), identifier.replace(QLatin1Char('/'), QLatin1Char('-'))},
          {text("Name"), text("Max Muster")},
          {text("DateOfBirth"), noon(study.birthDate)},
          {text("DateOfStudy"), noon(study.studyDate)},
          {text("OsiriXStudyID"), study.studyInstanceUID},
          {text("StudyDescription"), text("Growth Chart")},
          {text("JPEG"), jpeg(number)}};
}

}  // namespace bridge_testing
