// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/pacs/DimsePacs.h"

#include <dcmtk/config/osconfig.h>
#include <dcmtk/dcmdata/dcistrmb.h>
#include <dcmtk/dcmdata/dctk.h>

#include <algorithm>

#include "bridge/dicom/DicomText.h"
#include "bridge/dicom/StudyAttributes.h"
#include "bridge/dicom/StudyReader.h"
#include "bridge/pacs/DimseAssociation.h"
#include "bridge/pacs/DimseStatus.h"
#include "bridge/pacs/StudyMatch.h"

namespace bridge {

namespace {

DimseContext findContext() {
  return {UID_FINDStudyRootQueryRetrieveInformationModel,
          {UID_LittleEndianExplicitTransferSyntax, UID_LittleEndianImplicitTransferSyntax}};
}

template <std::size_t Size>
void copyUid(char (&field)[Size], const QByteArray& uid) {
  qstrncpy(field, uid.constData(), Size);
}

/// The identifier of the C-FIND request: what must match, and, empty, all else that a Study holds (PS3.4
/// C.2.2.2).
void putKeys(DcmDataset& keys, const StudyQuery& query) {
  const auto put = [&](const DcmTagKey& tag, const QString& text) {
    keys.putAndInsertString(tag, text.toUtf8().constData());
  };
  for (const Tag tag : StudyAttributes) {
    put(DcmTagKey(static_cast<Uint16>(tag >> 16), static_cast<Uint16>(tag & 0xffff)), QString());
  }
  const QString texts = query.accessionNumber + query.patientID + query.studyInstanceUID;
  const bool isAscii = std::all_of(texts.begin(), texts.end(), [](QChar c) { return c.unicode() < 0x80; });
  if (!isAscii) put(DCM_SpecificCharacterSet, QStringLiteral("ISO_IR 192"));
  put(DCM_QueryRetrieveLevel, QStringLiteral("STUDY"));
  put(DCM_StudyInstanceUID, query.studyInstanceUID);
  put(DCM_AccessionNumber, query.accessionNumber);
  put(DCM_PatientID, query.patientID);
  put(DCM_StudyDate, dicomDate(query.studyDate));
}

/// Reads a file that has a meta header. False when the bytes are none.
bool readFile(DcmFileFormat& object, const QByteArray& file) {
  DcmInputBufferStream stream;
  stream.setBuffer(file.constData(), file.size());
  stream.setEos();
  object.setReadMode(ERM_fileOnly);
  object.transferInit();
  const OFCondition condition = object.read(stream);
  object.transferEnd();
  return condition.good();
}

QByteArray uidIn(DcmDataset& dataset, const DcmTagKey& tag) {
  const char* uid = nullptr;
  dataset.findAndGetString(tag, uid);
  return QByteArray(uid).trimmed();
}

}  // namespace

PacsResult<QList<Study>> DimsePacs::findStudies(const StudyQuery& query) {
  if (isUnrestricted(query)) return PacsFailure::never(QStringLiteral("nothing was asked for"));
  if (cannotMatch(query)) return QList<Study>();
  DimseAssociation association(settings_);
  PacsResult<> result = association.open({findContext()});
  if (result.ok()) result = association.accepted(0);
  if (!result.ok()) return result.failure();
  return find(association, 0, query);
}

PacsResult<QList<Study>> DimsePacs::find(DimseAssociation& association, int index, const StudyQuery& query) {
  DcmDataset keys;
  putKeys(keys, query);
  T_DIMSE_Message request{};
  request.CommandField = DIMSE_C_FIND_RQ;
  request.msg.CFindRQ.Priority = DIMSE_PRIORITY_MEDIUM;
  copyUid(request.msg.CFindRQ.AffectedSOPClassUID, findContext().sopClassUID);
  const PacsResult<> sent = association.send(index, request, &keys);
  if (!sent.ok()) return sent.failure();
  QList<Study> studies;
  for (int answers = 0;;) {
    const PacsResult<T_DIMSE_Message> answer = association.receive(DIMSE_C_FIND_RSP);
    if (!answer.ok()) return answer.failure();
    const T_DIMSE_C_FindRSP& response = answer->msg.CFindRSP;
    QByteArray dataset;
    if (response.DataSetType != DIMSE_DATASET_NULL) {
      const PacsResult<QByteArray> received = association.receiveDataset();
      if (!received.ok()) return received.failure();
      dataset = *received;
    }
    if (!isPending(response.DimseStatus)) {
      const PacsResult<> found = findOutcome(response.DimseStatus);
      if (!found.ok()) return found.failure();
      return studies;
    }
    if (++answers > MostStudies) {
      return PacsFailure::never(
          QStringLiteral("more than %1 studies match: ask for something narrower").arg(MostStudies));
    }
    const auto study = studyFromDataset(dataset, association.transferSyntax(index));
    // Whoever counts studies must not miss one.
    if (!study.ok()) {
      return PacsFailure::tryAgain(
          QStringLiteral("the archive's answer holds a study without a Study Instance UID"));
    }
    if (matches(*study, query) && !studies.contains(*study)) studies.append(*study);
  }
}

PacsResult<> DimsePacs::store(const QByteArray& file, const QString& sopClassUID,
                              const QString& sopInstanceUID) {
  DcmFileFormat object;
  if (!readFile(object, file)) return PacsFailure::never(QStringLiteral("it is not a DICOM file"));
  DcmDataset& dataset = *object.getDataset();
  const QByteArray sopClass = sopClassUID.toLatin1();
  const QByteArray sopInstance = sopInstanceUID.toLatin1();
  // An archive files the object under what it reads in it, and confirms what the request says.
  if (uidIn(dataset, DCM_SOPClassUID) != sopClass || uidIn(dataset, DCM_SOPInstanceUID) != sopInstance) {
    return PacsFailure::never(
        QStringLiteral("the DICOM file holds another object than %1").arg(sopInstanceUID));
  }
  DimseAssociation association(settings_);
  PacsResult<> result = association.open({{sopClass, {DcmXfer(dataset.getOriginalXfer()).getXferID()}}});
  if (result.ok()) result = association.accepted(0);
  if (!result.ok()) return result;
  T_DIMSE_Message request{};
  request.CommandField = DIMSE_C_STORE_RQ;
  request.msg.CStoreRQ.Priority = DIMSE_PRIORITY_MEDIUM;
  copyUid(request.msg.CStoreRQ.AffectedSOPClassUID, sopClass);
  copyUid(request.msg.CStoreRQ.AffectedSOPInstanceUID, sopInstance);
  result = association.send(0, request, &dataset, file.size());
  if (!result.ok()) return result;
  const PacsResult<T_DIMSE_Message> answer = association.receive(DIMSE_C_STORE_RSP);
  if (!answer.ok()) return answer.failure();
  const T_DIMSE_C_StoreRSP& response = answer->msg.CStoreRSP;
  result = storeOutcome(response.DimseStatus);
  if (!result.ok()) return result;
  // The response need not name the object (PS3.7 table 9.1-1): it answers our message, and there is one only.
  const QByteArray named = (response.opts & O_STORE_AFFECTEDSOPINSTANCEUID) != 0
                               ? QByteArray(response.AffectedSOPInstanceUID).trimmed()
                               : QByteArray();
  if (named.isEmpty() || named == sopInstance) return {};
  return PacsFailure::tryAgain(
      QStringLiteral("the archive confirmed another object than %1").arg(sopInstanceUID));
}

PacsResult<> DimsePacs::check() {
  DimseAssociation association(settings_);
  PacsResult<> result =
      association.open({{UID_VerificationSOPClass,
                         {UID_LittleEndianExplicitTransferSyntax, UID_LittleEndianImplicitTransferSyntax}},
                        findContext(),
                        {UID_SecondaryCaptureImageStorage, {UID_JPEGProcess1TransferSyntax}}});
  for (int index = 0; index < 3 && result.ok(); ++index) result = association.accepted(index);
  if (!result.ok()) return result;
  T_DIMSE_Message request{};
  request.CommandField = DIMSE_C_ECHO_RQ;
  copyUid(request.msg.CEchoRQ.AffectedSOPClassUID, UID_VerificationSOPClass);
  result = association.send(0, request);
  if (!result.ok()) return result;
  const PacsResult<T_DIMSE_Message> echoed = association.receive(DIMSE_C_ECHO_RSP);
  if (!echoed.ok()) return echoed.failure();
  const DIC_US status = echoed->msg.CEchoRSP.DimseStatus;
  if (status != 0) {
    return PacsFailure::tryAgain(QStringLiteral("the archive answers to C-ECHO with an error (status 0x%1)")
                                     .arg(status, 4, 16, QLatin1Char('0')));
  }
  // Some archives accept the context of everybody and refuse the question.
  StudyQuery nowhere;
  nowhere.studyInstanceUID = QStringLiteral("2.25.0");
  const PacsResult<QList<Study>> found = find(association, 1, nowhere);
  if (found.ok()) return {};
  PacsFailure failure = found.failure();
  // Orthanc hangs up without a word on whom it does not know.
  if (failure.kind == PacsFailure::Kind::TryAgain) {
    failure.message += QStringLiteral(
                           "; it answers to C-ECHO, but not to C-FIND: does it know our AE title "
                           "\"%1\", and let it find?")
                           .arg(settings_.callingAETitle);
  }
  return failure;
}

}  // namespace bridge
