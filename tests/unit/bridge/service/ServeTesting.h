// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QStringList>
#include <QTemporaryDir>
#include <functional>

#include "bridge/pacs/Pacs.h"
#include "bridge/spool/SpoolEntry.h"
#include "testing/files/Files.h"
#include "testing/files/FullDisk.h"
#include "testing/main/Shown.h"

/// What the tests of the spool and of the service share.
namespace serve_testing {

using namespace velmora::testkit;

inline QString text(const char* utf8) { return QString::fromUtf8(utf8); }

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

/// While one lives the file cannot be opened, by the superuser neither: a link that leads to itself is in its
/// place.
class UnreadableFile {
 public:
  explicit UnreadableFile(const QString& path) : path_(path) {
    EXPECT_TRUE(QFile::rename(path_, hidden()));
    EXPECT_TRUE(QFile::link(path_, path_));
  }
  ~UnreadableFile() {
    EXPECT_TRUE(QFile::remove(path_));
    EXPECT_TRUE(QFile::rename(hidden(), path_));
  }
  UnreadableFile(const UnreadableFile&) = delete;
  UnreadableFile& operator=(const UnreadableFile&) = delete;

 private:
  QString hidden() const { return path_ + QStringLiteral(".hidden"); }
  QString path_;
};

/// An archive in memory that does what the test says.
class ScriptedPacs : public bridge::Pacs {
 public:
  struct Stored {
    QString uid;
    QByteArray file;
  };

  bridge::PacsResult<QList<bridge::Study>> findStudies(const bridge::StudyQuery& query) override {
    queries.append(query);
    if (!findResult.ok()) return findResult.failure();
    QList<bridge::Study> found;
    for (const bridge::Study& each : studies) {
      const bool right =
          (query.studyInstanceUID.isEmpty() || query.studyInstanceUID == each.studyInstanceUID) &&
          (query.patientID.isEmpty() || query.patientID == each.patientID.trimmed()) &&
          (!query.studyDate.isValid() || query.studyDate == each.studyDate);
      if (right) found.append(each);
    }
    return found;
  }
  bridge::PacsResult<> store(const QByteArray& file, const QString&, const QString& uid) override {
    ++stores;
    const bridge::PacsResult<> result = storeResult ? storeResult(uid) : bridge::PacsResult<>();
    if (result.ok()) stored.append({uid, file});
    return result;
  }
  bridge::PacsResult<> check() override { return findResult; }

  QStringList storedUids() const {
    QStringList uids;
    for (const Stored& each : stored) uids.append(each.uid);
    return uids;
  }

  QList<bridge::Study> studies;
  bridge::PacsResult<> findResult;
  std::function<bridge::PacsResult<>(const QString& uid)> storeResult;
  QList<bridge::StudyQuery> queries;
  QList<Stored> stored;
  int stores = 0;
};

inline const bridge::PacsResult<> Away = bridge::PacsFailure::tryAgain(QStringLiteral("nobody there"));
inline const bridge::PacsResult<> Refused = bridge::PacsFailure::never(QStringLiteral("not wanted"));

}  // namespace serve_testing
