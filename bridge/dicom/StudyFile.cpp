// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/dicom/StudyFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include "bridge/dicom/StudyReader.h"

namespace bridge {
namespace {

using velmora::base::Failure;
using velmora::base::Result;

Result<Study> studyFromFile(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return Failure{file.errorString()};
  return studyFromDevice(file);
}

/// Collects the studies of a folder's files.
class FolderStudies {
 public:
  Result<> lookThrough(const QString& path, int depth = 0) {
    if (depth > DeepestFolder) {
      return Failure{QStringLiteral("there are folders in folders more than %1 deep").arg(DeepestFolder)};
    }
    // Sorted, so that the same folder gives the same study on any file system.
    const QFileInfoList entries = QDir(path).entryInfoList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    for (const QFileInfo& entry : entries) {
      if (entry.isSymLink()) continue;
      if (entry.isDir()) {
        const Result<> below = lookThrough(entry.filePath(), depth + 1);
        if (!below.ok()) return below;
      } else if (entry.isFile()) {
        if (++files_ > MostFiles) {
          return Failure{QStringLiteral("it holds more than %1 files").arg(MostFiles)};
        }
        const Result<Study> study = studyFromFile(entry.filePath());
        if (study.ok()) add(*study);
      }
    }
    return {};
  }

  Result<Study> result() const {
    if (studies_.isEmpty()) return Failure{QStringLiteral("no file in it is a DICOM file of a study")};
    if (contradictory_) {
      return Failure{
          QStringLiteral("its files name different patients for the study %1").arg(*contradictory_)};
    }
    if (studies_.size() == 1) return studies_.constFirst();
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
    return Failure{QStringLiteral("it holds several studies: %1").arg(lines.join(QStringLiteral("; ")))};
  }

 private:
  static constexpr qsizetype Named = 10;

  void add(const Study& study) {
    for (Study& known : studies_) {
      if (known.studyInstanceUID != study.studyInstanceUID) continue;
      // An identifier that is empty may be one that could not be trusted: no other file's speaks for it.
      if (known.patientID.isEmpty() != study.patientID.isEmpty() || contradiction(known, study)) {
        contradictory_ = study.studyInstanceUID;
      }
      complete(known, study);
      return;
    }
    more_ = more_ || studies_.size() == Named;
    if (!more_) studies_.append(study);
  }

  /// Adds what another file of the study says of the patient and `study` does not, so that a third one is
  /// compared with both.
  static void complete(Study& study, const Study& other) {
    if (study.issuerOfPatientID.isEmpty()) study.issuerOfPatientID = other.issuerOfPatientID;
    if (!study.birthDate.isValid()) study.birthDate = other.birthDate;
    if (study.sex.isEmpty()) study.sex = other.sex;
    if (study.patientName.isEmpty()) study.patientName = other.patientName;
  }

  QList<Study> studies_;
  std::optional<QString> contradictory_;  ///< a study that is said to be of two patients
  bool more_ = false;
  int files_ = 0;
};

Result<Study> studyFromFolder(const QString& path) {
  FolderStudies studies;
  const Result<> looked = studies.lookThrough(path);
  return looked.ok() ? studies.result() : looked.failure();
}

Result<Study> studyFromFileOrFolder(const QString& path) {
  const QFileInfo info(path);
  if (info.isFile()) return studyFromFile(path);
  if (info.isDir()) return studyFromFolder(path);
  return Failure{info.exists() ? QStringLiteral("it is neither a file nor a folder")
                               : QStringLiteral("there is no such file or folder")};
}

}  // namespace

Result<Study> studyFromPath(const QString& path) {
  const Result<Study> study = studyFromFileOrFolder(path);
  if (study.ok()) return study;
  return Failure{QStringLiteral("%1: %2").arg(path, study.error())};
}

}  // namespace bridge
