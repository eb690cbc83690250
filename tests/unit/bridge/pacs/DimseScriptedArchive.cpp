// SPDX-License-Identifier: LGPL-3.0-or-later
#include "tests/unit/bridge/pacs/DimseScriptedArchive.h"

#include <dcmtk/dcmdata/dctk.h>

#include <QTcpSocket>
#include <memory>
#include <stdexcept>
#include <vector>

#include "bridge/testing/Orthanc.h"

namespace bridge_testing {

namespace {

constexpr int Limit = 60;  // seconds, far longer than anything here takes
constexpr long Pdu = 16384;

std::unique_ptr<DcmDataset> receiveDataset(T_ASC_Association* association) {
  T_ASC_PresentationContextID context = 0;
  DcmDataset* dataset = nullptr;
  DIMSE_receiveDataSetInMemory(association, DIMSE_NONBLOCKING, Limit, &context, &dataset, nullptr, nullptr);
  return std::unique_ptr<DcmDataset>(dataset);
}

QByteArray valueOf(DcmDataset& dataset, const DcmTagKey& tag) {
  const char* value = nullptr;
  dataset.findAndGetString(tag, value);
  return QByteArray(value);
}

template <std::size_t Size>
void copy(char (&field)[Size], const QByteArray& text) {
  qstrncpy(field, text.constData(), Size);
}

}  // namespace

ScriptedArchive::ScriptedArchive(const Script& script) : script_(script), port_(freePort()) {
  if (ASC_initializeNetwork(NET_ACCEPTOR, port_, Limit, &network_).bad()) {
    throw std::runtime_error("a scripted archive does not start");
  }
  thread_ = std::thread([this] { run(); });
}

ScriptedArchive::~ScriptedArchive() {
  // If nobody has come, this makes it wait no longer.
  QTcpSocket socket;
  socket.connectToHost(QStringLiteral("127.0.0.1"), static_cast<quint16>(port_));
  socket.waitForConnected();
  socket.abort();
  if (thread_.joinable()) thread_.join();
  ASC_dropNetwork(&network_);
}

bridge::PacsSettings ScriptedArchive::settings() const {
  bridge::PacsSettings settings;
  settings.host = QStringLiteral("127.0.0.1");
  settings.port = port_;
  return settings;
}

QByteArray ScriptedArchive::question() {
  thread_.join();
  return question_;
}

void ScriptedArchive::run() {
  T_ASC_Association* association = nullptr;
  const OFCondition condition =
      ASC_receiveAssociation(network_, &association, Pdu, nullptr, nullptr, OFFalse, DUL_NOBLOCK, Limit);
  if (condition.good() && accept(association)) {
    while (serve(association)) {
    }
  }
  if (association != nullptr) {
    ASC_dropSCPAssociation(association, 1);
    ASC_destroyAssociation(&association);
  }
}

bool ScriptedArchive::accept(T_ASC_Association* association) const {
  if (script_.rejection) {
    const int reason = *script_.rejection;
    const T_ASC_RejectParameters rejection{ASC_RESULT_REJECTEDPERMANENT,
                                           static_cast<T_ASC_RejectParametersSource>(reason >> 8),
                                           *script_.rejection};
    ASC_rejectAssociation(association, &rejection);
    return false;
  }
  std::vector<const char*> classes, syntaxes;
  for (const QByteArray& each : script_.classes) classes.push_back(each.constData());
  for (const QByteArray& each : script_.transferSyntaxes) syntaxes.push_back(each.constData());
  ASC_acceptContextsWithPreferredTransferSyntaxes(association->params, classes.data(),
                                                  static_cast<int>(classes.size()), syntaxes.data(),
                                                  static_cast<int>(syntaxes.size()));
  return ASC_acknowledgeAssociation(association).good();
}

bool ScriptedArchive::serve(T_ASC_Association* association) {
  T_DIMSE_Message message{};
  T_ASC_PresentationContextID context = 0;
  const OFCondition condition =
      DIMSE_receiveCommand(association, DIMSE_NONBLOCKING, Limit, &context, &message, nullptr);
  if (condition == DUL_PEERREQUESTEDRELEASE) ASC_acknowledgeRelease(association);
  if (condition.bad()) return false;
  if (script_.aborts) {
    ASC_abortAssociation(association);
    return false;
  }
  if (script_.isMute) return true;
  if (message.CommandField == DIMSE_C_ECHO_RQ) {
    DIMSE_sendEchoResponse(association, context, &message.msg.CEchoRQ, 0, nullptr);
  } else if (message.CommandField == DIMSE_C_STORE_RQ) {
    store(association, context, message.msg.CStoreRQ);
  } else if (message.CommandField == DIMSE_C_FIND_RQ) {
    find(association, context, message.msg.CFindRQ);
  }
  return true;
}

void ScriptedArchive::store(T_ASC_Association* association, T_ASC_PresentationContextID context,
                            T_DIMSE_C_StoreRQ& request) const {
  receiveDataset(association);
  T_DIMSE_C_StoreRSP response{};
  response.MessageIDBeingRespondedTo = request.MessageID;
  response.DataSetType = DIMSE_DATASET_NULL;
  response.DimseStatus = script_.storeStatus;
  copy(response.AffectedSOPInstanceUID,
       script_.storedUid.value_or(QByteArray(request.AffectedSOPInstanceUID)));
  if (response.AffectedSOPInstanceUID[0] != '\0') response.opts = O_STORE_AFFECTEDSOPINSTANCEUID;
  T_DIMSE_Message message{};
  message.CommandField = DIMSE_C_STORE_RSP;
  message.msg.CStoreRSP = response;
  DIMSE_sendMessageUsingMemoryData(association, context, &message, nullptr, nullptr, nullptr, nullptr);
}

void ScriptedArchive::find(T_ASC_Association* association, T_ASC_PresentationContextID context,
                           T_DIMSE_C_FindRQ& request) {
  const auto query = receiveDataset(association);
  if (query != nullptr)
    question_ = valueOf(*query, DCM_SpecificCharacterSet) + ' ' + valueOf(*query, DCM_PatientID);
  T_DIMSE_C_FindRSP response{};
  response.MessageIDBeingRespondedTo = request.MessageID;
  for (int answer = 1; answer <= script_.answers; ++answer) {
    DcmDataset dataset;
    dataset.putAndInsertString(DCM_StudyDescription, QByteArray(script_.answerSize, 'x').constData());
    dataset.putAndInsertString(DCM_PatientID, "P-1");
    if (!script_.lastIsNameless || answer < script_.answers)
      dataset.putAndInsertString(DCM_StudyInstanceUID, ("2.25." + QByteArray::number(answer)).constData());
    response.DimseStatus = 0xff00;
    response.DataSetType = DIMSE_DATASET_PRESENT;
    if (DIMSE_sendFindResponse(association, context, &request, &response, &dataset, nullptr).bad()) return;
  }
  response.DimseStatus = script_.findStatus;
  response.DataSetType = DIMSE_DATASET_NULL;
  DIMSE_sendFindResponse(association, context, &request, &response, nullptr, nullptr);
}

}  // namespace bridge_testing
