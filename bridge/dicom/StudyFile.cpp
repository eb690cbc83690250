// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/dicom/StudyFile.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include "bridge/dicom/DicomHeader.h"

namespace bridge {
namespace {

StudyFileResult failed(const QString& error) { return {Study(), error}; }

StudyFileResult studyFromDevice(QIODevice& device) {
  const DicomHeader header = readDicomHeader(device);
  const Study study = studyOf(header.values);
  // The identifier of the study stands behind all about the patient: with it, those have been read.
  if (!study.studyInstanceUID.isEmpty()) return {study, QString()};
  if (!header.error.isNull()) return failed(header.error);
  return failed(QStringLiteral("it is of no study (no Study Instance UID)"));
}

StudyFileResult studyFromFile(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return failed(file.errorString());
  return studyFromDevice(file);
}

/// Collects the studies of a folder's files.
class FolderStudies {
 public:
  /// A null string, or why the folder cannot be looked through.
  QString lookThrough(const QString& path, int depth = 0) {
    if (depth > DeepestFolder)
      return QStringLiteral("there are folders in folders more than %1 deep").arg(DeepestFolder);
    // Ordered, so that the same folder gives the same study, whatever the file system.
    const QFileInfoList entries = QDir(path).entryInfoList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    for (const QFileInfo& entry : entries) {
      if (entry.isSymLink()) continue;
      if (entry.isDir()) {
        const QString error = lookThrough(entry.filePath(), depth + 1);
        if (!error.isNull()) return error;
      } else if (entry.isFile()) {
        if (++files_ > MostFiles) return QStringLiteral("it holds more than %1 files").arg(MostFiles);
        const StudyFileResult file = studyFromFile(entry.filePath());
        if (file.ok()) add(file.study);
      }
    }
    return QString();
  }

  StudyFileResult result() const {
    if (studies_.isEmpty()) return failed(QStringLiteral("no file in it is a DICOM file of a study"));
    if (!contradictory_.isNull()) {
      return failed(QStringLiteral("its files name different patients for the study %1").arg(contradictory_));
    }
    if (studies_.size() == 1) return {studies_.constFirst(), QString()};
    QStringList lines;
    for (const Study& study : studies_) {
      lines.append(
          QStringLiteral("%1 (%2, patient %3)")
              .arg(study.studyInstanceUID,
                   study.studyDate.isValid() ? study.studyDate.toString(Qt::ISODate)
                                             : QStringLiteral("no date"),
                   study.patientID.isEmpty() ? QStringLiteral("without identifier") : study.patientID));
    }
    if (more_) lines.append(QStringLiteral("and more"));
    return failed(QStringLiteral("it holds several studies: %1").arg(lines.join(QStringLiteral("; "))));
  }

 private:
  static constexpr qsizetype Named = 10;

  void add(const Study& study) {
    for (const Study& known : std::as_const(studies_)) {
      if (known.studyInstanceUID != study.studyInstanceUID) continue;
      if (known.patientID != study.patientID || known.birthDate != study.birthDate) {
        contradictory_ = study.studyInstanceUID;
      }
      return;
    }
    more_ = more_ || studies_.size() == Named;
    if (!more_) studies_.append(study);
  }

  QList<Study> studies_;
  QString contradictory_;  ///< a study that is said to be of two patients
  bool more_ = false;
  int files_ = 0;
};

}  // namespace

StudyFileResult studyFromPath(const QString& path) {
  const QFileInfo info(path);
  StudyFileResult result;
  if (info.isFile()) {
    result = studyFromFile(path);
  } else if (info.isDir()) {
    FolderStudies studies;
    const QString error = studies.lookThrough(path);
    result = error.isNull() ? studies.result() : failed(error);
  } else {
    result = failed(info.exists() ? QStringLiteral("it is neither a file nor a folder")
                                  : QStringLiteral("there is no such file or folder"));
  }
  if (!result.ok()) result.error = QStringLiteral("%1: %2").arg(path, result.error);
  return result;
}

StudyFileResult studyFromBytes(const QByteArray& file) {
  QBuffer buffer;
  buffer.setData(file);
  buffer.open(QIODevice::ReadOnly);
  return studyFromDevice(buffer);
}

}  // namespace bridge
