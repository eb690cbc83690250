// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/pacs/DimsePacs.h"

#include <dcmtk/config/osconfig.h>
#include <dcmtk/dcmdata/dctk.h>
#include <dcmtk/dcmdata/dcostrmb.h>

#include <algorithm>

#include "bridge/dicom/StudyFile.h"
#include "bridge/pacs/DicomFileParts.h"
#include "bridge/pacs/DimseAssociation.h"
#include "bridge/pacs/DimseStatus.h"
#include "bridge/pacs/StudyMatch.h"

namespace bridge {

namespace {

PacsResult never(const QString& reason) { return {PacsResult::Outcome::Never, reason}; }
PacsResult tryAgain(const QString& reason) { return {PacsResult::Outcome::TryAgain, reason}; }

DimseContext findContext() {
  return {UID_FINDStudyRootQueryRetrieveInformationModel,
          {UID_LittleEndianExplicitTransferSyntax, UID_LittleEndianImplicitTransferSyntax}};
}

/// The identifier of the C-FIND request: what must match, and, empty, all else that a Study holds (PS3.4
/// C.2.2.2).
QByteArray identifierOf(const StudyQuery& query, const QByteArray& transferSyntax) {
  DcmDataset keys;
  const auto put = [&](const DcmTagKey& tag, const QString& text) {
    keys.putAndInsertString(tag, text.toUtf8().constData());
  };
  const QString texts = query.accessionNumber + query.patientID + query.studyInstanceUID;
  const bool isAscii = std::all_of(texts.begin(), texts.end(), [](QChar c) { return c.unicode() < 0x80; });
  if (!isAscii) put(DCM_SpecificCharacterSet, QStringLiteral("ISO_IR 192"));
  put(DCM_QueryRetrieveLevel, QStringLiteral("STUDY"));
  put(DCM_StudyInstanceUID, query.studyInstanceUID);
  put(DCM_AccessionNumber, query.accessionNumber);
  put(DCM_PatientID, query.patientID);
  put(DCM_StudyDate,
      query.studyDate.isValid() ? query.studyDate.toString(QStringLiteral("yyyyMMdd")) : QString());
  for (const DcmTagKey& tag :
       {DCM_StudyTime, DCM_ReferringPhysicianName, DCM_StudyDescription, DCM_PatientName,
        DCM_IssuerOfPatientID, DCM_PatientBirthDate, DCM_PatientSex, DCM_StudyID}) {
    put(tag, QString());
  }
  const E_TransferSyntax syntax = DcmXfer(transferSyntax.constData()).getXfer();
  const Uint32 size = keys.calcElementLength(syntax, EET_ExplicitLength);
  QByteArray bytes(static_cast<qsizetype>(size), '\0');
  DcmOutputBufferStream stream(bytes.data(), bytes.size());
  keys.transferInit();
  keys.write(stream, syntax, EET_ExplicitLength, nullptr);
  keys.transferEnd();
  bytes.truncate(static_cast<qsizetype>(stream.tell()));
  return bytes;
}

}  // namespace

PacsResult DimsePacs::findStudies(const StudyQuery& query, QList<Study>& studies) {
  studies.clear();
  if (asksForNothing(query)) return never(QStringLiteral("nothing was asked for"));
  if (asksForTheImpossible(query)) return {};
  DimseAssociation association(settings_);
  PacsResult result = association.open({findContext()});
  if (result.done()) result = association.accepted(0);
  if (result.done()) result = find(association, 0, query, studies);
  if (!result.done()) studies.clear();
  return result;
}

PacsResult DimsePacs::find(DimseAssociation& association, int place, const StudyQuery& query,
                           QList<Study>& studies) const {
  const QByteArray syntax = association.transferSyntax(place);
  const DimseRequest request{DIMSE_C_FIND_RQ, findContext().sopClassUID, {}};
  PacsResult result = association.send(place, request, identifierOf(query, syntax));
  int answers = 0;
  while (result.done()) {
    T_DIMSE_Message answer{};
    result = association.receive(DIMSE_C_FIND_RSP, answer);
    if (!result.done()) break;
    const T_DIMSE_C_FindRSP& response = answer.msg.CFindRSP;
    QByteArray dataset;
    if (response.DataSetType != DIMSE_DATASET_NULL) result = association.receiveDataset(dataset);
    if (!result.done()) break;
    if (!isPending(response.DimseStatus)) return findOutcome(response.DimseStatus);
    if (++answers > MostStudies) {
      return never(QStringLiteral("more than %1 studies match: ask for something narrower").arg(MostStudies));
    }
    const StudyFileResult read = studyFromBytes(fileOf(dataset, syntax));
    // Whoever counts studies must not miss one.
    if (!read.ok())
      return tryAgain(QStringLiteral("the archive's answer holds a study without a Study Instance UID"));
    if (matches(read.study, query) && !studies.contains(read.study)) studies.append(read.study);
  }
  return result;
}

PacsResult DimsePacs::store(const QByteArray& file, const QString& sopClassUID,
                            const QString& sopInstanceUID) {
  const auto parts = partsOf(file);
  if (!parts || parts->dataset.size() % 2 != 0) return never(QStringLiteral("it is not a DICOM file"));
  const QByteArray sopClass = sopClassUID.toLatin1();
  const QByteArray sopInstance = sopInstanceUID.toLatin1();
  // An archive files the object under what it reads in it, and confirms what the request says.
  if (parts->sopClassUID != sopClass || parts->sopInstanceUID != sopInstance) {
    return never(QStringLiteral("the DICOM file holds another object than %1").arg(sopInstanceUID));
  }
  DimseAssociation association(settings_);
  PacsResult result = association.open({{sopClass, {parts->transferSyntaxUID}}});
  if (result.done()) result = association.accepted(0);
  if (!result.done()) return result;
  result = association.send(0, {DIMSE_C_STORE_RQ, sopClass, sopInstance}, parts->dataset);
  T_DIMSE_Message answer{};
  if (result.done()) result = association.receive(DIMSE_C_STORE_RSP, answer);
  if (!result.done()) return result;
  const T_DIMSE_C_StoreRSP& response = answer.msg.CStoreRSP;
  result = storeOutcome(response.DimseStatus);
  if (!result.done()) return result;
  // The response need not name the object (PS3.7 table 9.1-1): it answers our message, and there is one only.
  const QByteArray named = (response.opts & O_STORE_AFFECTEDSOPINSTANCEUID) != 0
                               ? QByteArray(response.AffectedSOPInstanceUID).trimmed()
                               : QByteArray();
  if (named.isEmpty() || named == sopInstance) return {};
  return tryAgain(QStringLiteral("the archive confirmed another object than %1").arg(sopInstanceUID));
}

PacsResult DimsePacs::check() {
  DimseAssociation association(settings_);
  PacsResult result =
      association.open({{UID_VerificationSOPClass,
                         {UID_LittleEndianExplicitTransferSyntax, UID_LittleEndianImplicitTransferSyntax}},
                        findContext(),
                        {UID_SecondaryCaptureImageStorage, {UID_JPEGProcess1TransferSyntax}}});
  for (int place = 0; place < 3 && result.done(); ++place) result = association.accepted(place);
  if (!result.done()) return result;
  result = association.send(0, {DIMSE_C_ECHO_RQ, UID_VerificationSOPClass, {}}, QByteArray());
  T_DIMSE_Message answer{};
  if (result.done()) result = association.receive(DIMSE_C_ECHO_RSP, answer);
  if (!result.done()) return result;
  if (answer.msg.CEchoRSP.DimseStatus != 0) {
    return tryAgain(QStringLiteral("the archive answers to C-ECHO with an error (status 0x%1)")
                        .arg(answer.msg.CEchoRSP.DimseStatus, 4, 16, QLatin1Char('0')));
  }
  // Some archives accept the context of everybody and refuse the question.
  StudyQuery nowhere;
  nowhere.studyInstanceUID = QStringLiteral("2.25.0");
  QList<Study> none;
  result = find(association, 1, nowhere, none);
  // Orthanc hangs up without a word on whom it does not know.
  if (result.outcome == PacsResult::Outcome::TryAgain) {
    result.reason += QStringLiteral(
                         "; it answers to C-ECHO, but not to C-FIND: does it know our AE title "
                         "\"%1\", and let it find?")
                         .arg(settings_.callingAETitle);
  }
  return result;
}

}  // namespace bridge
