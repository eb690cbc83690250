// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/pacs/DimseAssociation.h"

#include <dcmtk/dcmdata/dcostrmb.h>
#include <dcmtk/dcmnet/dcmtrans.h>
#include <dcmtk/dcmnet/diutil.h>
#include <dcmtk/oflog/oflog.h>

#include <algorithm>
#include <csignal>
#include <vector>

namespace bridge {

namespace {

constexpr long LargestPdu = 131072;  // the most that the toolkit receives at once
/// An association's terms take some hundred bytes; a query's answers as many as are looked at.
constexpr qint64 MaxNegotiation = 1024 * 1024;
constexpr qint64 MaxAnswers = (Pacs::MostStudies + 1) * qint64(DimseAssociation::LargestAnswer + 4096);
constexpr std::chrono::seconds ReleaseTimeout{5};

void setUpOnce() {
  [[maybe_unused]] static const bool done = [] {
    OFLog::configure(OFLogger::OFF_LOG_LEVEL);
    // An archive that hangs up while we write must not end the program.
    std::signal(SIGPIPE, SIG_IGN);
    return true;
  }();
}

T_ASC_PresentationContextID contextAt(int index) {
  return static_cast<T_ASC_PresentationContextID>(2 * index + 1);  // odd by PS3.8 9.3.2.2
}

bool isOneOf(const OFCondition& condition, std::initializer_list<OFConditionConst> conditions) {
  return std::any_of(conditions.begin(), conditions.end(),
                     [&](const OFConditionConst& each) { return condition == each; });
}

}  // namespace

DimseAssociation::DimseAssociation(const PacsSettings& settings) : settings_(settings) { setUpOnce(); }

DimseAssociation::~DimseAssociation() {
  if (association_ != nullptr) {
    limit(std::min(ReleaseTimeout, settings_.timeout), MaxNegotiation);
    if (inOrder_) {
      ASC_releaseAssociation(association_);
    } else if (opened_) {
      ASC_abortAssociation(association_);
    }
    ASC_destroyAssociation(&association_);
  } else if (parameters_ != nullptr) {
    ASC_destroyAssociationParameters(&parameters_);
  }
  if (network_ != nullptr) ASC_dropNetwork(&network_);
}

QString DimseAssociation::peer() const {
  return QStringLiteral("%1 at %2:%3").arg(settings_.calledAETitle, settings_.host).arg(settings_.port);
}

int DimseAssociation::secondsLeft() const {
  // Rounded up: 0 would mean not to wait at all.
  return static_cast<int>(std::max<qint64>(1, (limits_.deadline.remainingTime() + 999) / 1000));
}

void DimseAssociation::limit(std::chrono::seconds time, qint64 bytesToRead) {
  time_ = time;
  limits_.deadline.setRemainingTime(time);
  limits_.bytesToRead = bytesToRead;
}

PacsResult<> DimseAssociation::open(const QList<DimseContext>& contexts) {
  contexts_ = contexts;
  const int seconds = static_cast<int>(settings_.timeout.count());
  limit(settings_.timeout, MaxNegotiation);
  // The toolkit keeps these for the whole process; every conversation sets its own.
  dcmConnectionTimeout.set(seconds);
  dcmSocketSendTimeout.set(seconds);
  dcmSocketReceiveTimeout.set(seconds);
  OFCondition condition = ASC_initializeNetwork(NET_REQUESTOR, 0, seconds, &network_);
  if (condition.good()) condition = ASC_setTransportLayer(network_, new DimseConnections(limits_), 1);
  if (condition.good()) condition = ASC_createAssociationParameters(&parameters_, LargestPdu);
  if (condition.good()) {
    condition = ASC_setAPTitles(parameters_, settings_.callingAETitle.toLatin1().constData(),
                                settings_.calledAETitle.toLatin1().constData(), nullptr);
  }
  const QByteArray address = QStringLiteral("%1:%2").arg(settings_.host).arg(settings_.port).toUtf8();
  if (condition.good())
    condition = ASC_setPresentationAddresses(parameters_, "localhost", address.constData());
  for (int index = 0; index < contexts.size() && condition.good(); ++index) {
    std::vector<const char*> syntaxes;
    for (const QByteArray& syntax : contexts[index].transferSyntaxUIDs)
      syntaxes.push_back(syntax.constData());
    condition =
        ASC_addPresentationContext(parameters_, contextAt(index), contexts[index].sopClassUID.constData(),
                                   syntaxes.data(), static_cast<int>(syntaxes.size()));
  }
  if (condition.bad()) return PacsFailure::tryAgain(QString::fromLatin1(condition.text()));

  condition =
      ASC_requestAssociation(network_, parameters_, &association_, nullptr, nullptr, DUL_NOBLOCK, seconds);
  if (condition == DUL_ASSOCIATIONREJECTED) return refused();
  if (condition.bad()) return failed(condition);
  opened_ = true;
  inOrder_ = true;
  return {};
}

PacsFailure DimseAssociation::refused() const {
  T_ASC_RejectParameters rejection{};
  const T_ASC_Association* const association = association_;
  ASC_getRejectParameters(association != nullptr ? association->params : parameters_, &rejection);
  switch (rejection.reason) {
    case ASC_REASON_SU_CALLEDAETITLENOTRECOGNIZED:
      return PacsFailure::tryAgain(
          QStringLiteral("%1 refuses the association: it does not go by the AE title \"%2\"")
              .arg(peer(), settings_.calledAETitle));
    case ASC_REASON_SU_CALLINGAETITLENOTRECOGNIZED:
      return PacsFailure::tryAgain(
          QStringLiteral("%1 refuses the association: it does not know our AE title \"%2\"")
              .arg(peer(), settings_.callingAETitle));
    case ASC_REASON_SP_PRES_TEMPORARYCONGESTION:
    case ASC_REASON_SP_PRES_LOCALLIMITEXCEEDED:
      return PacsFailure::tryAgain(
          QStringLiteral("%1 refuses the association: it is too busy at the moment").arg(peer()));
    default:
      return PacsFailure::tryAgain(
          QStringLiteral("%1 refuses the association without saying why (our AE title is \"%2\")")
              .arg(peer(), settings_.callingAETitle));
  }
}

PacsFailure DimseAssociation::failed(const OFCondition& condition) {
  inOrder_ = false;
  if (isOneOf(condition, {DIMSE_NODATAAVAILABLE, DUL_READTIMEOUT}) || limits_.deadline.hasExpired()) {
    return PacsFailure::tryAgain(
        QStringLiteral("%1 does not answer within %2 s").arg(peer()).arg(time_.count()));
  }
  if (condition.module() == OFM_dcmnet && condition.code() == DULC_UNKNOWNHOST) {
    return PacsFailure::tryAgain(QStringLiteral("there is no computer with the name %1").arg(settings_.host));
  }
  if (condition.module() == OFM_dcmnet && condition.code() == DULC_TCPINITERROR) {
    return PacsFailure::tryAgain(QStringLiteral("%1 cannot be reached").arg(peer()));
  }
  if (condition == DUL_PEERREQUESTEDRELEASE) {
    return PacsFailure::tryAgain(
        QStringLiteral("%1 ended the conversation before it had answered").arg(peer()));
  }
  if (condition == DUL_PEERABORTEDASSOCIATION) {
    return PacsFailure::tryAgain(QStringLiteral("%1 broke off the conversation").arg(peer()));
  }
  return PacsFailure::tryAgain(
      QStringLiteral("the connection to %1 broke off (%2)")
          .arg(peer(), QString::fromLatin1(condition.text()).simplified().left(200)));
}

PacsResult<> DimseAssociation::accepted(int index) const {
  T_ASC_PresentationContext context{};
  if (ASC_findAcceptedPresentationContext(association_->params, contextAt(index), &context).good()) {
    const QByteArray taken = QByteArray(context.acceptedTransferSyntax).trimmed();
    if (contexts_.at(index).transferSyntaxUIDs.contains(taken)) return {};
    return PacsFailure::never(
        QStringLiteral("%1 wants %2 in an encoding that was not offered (%3)")
            .arg(peer(), QString::fromLatin1(dcmFindNameOfUID(context.abstractSyntax, "the data")),
                 QString::fromLatin1(dcmFindNameOfUID(taken.constData(), taken.constData()))));
  }
  for (int position = 0; position < ASC_countPresentationContexts(association_->params); ++position) {
    if (ASC_getPresentationContext(association_->params, position, &context).bad()) continue;
    if (context.presentationContextID != contextAt(index)) continue;
    const QString what =
        QString::fromLatin1(dcmFindNameOfUID(context.abstractSyntax, context.abstractSyntax));
    const QString how =
        QString::fromLatin1(dcmFindNameOfUID(context.proposedTransferSyntaxes[0], "its transfer syntax"));
    if (context.resultReason == ASC_P_ABSTRACTSYNTAXNOTSUPPORTED) {
      return PacsFailure::never(QStringLiteral("%1 does not support %2").arg(peer(), what));
    }
    if (context.resultReason == ASC_P_TRANSFERSYNTAXESNOTSUPPORTED) {
      return PacsFailure::never(QStringLiteral("%1 does not take %2 in %3").arg(peer(), what, how));
    }
    return PacsFailure::tryAgain(
        QStringLiteral("%1 does not let us, as \"%2\", use %3").arg(peer(), settings_.callingAETitle, what));
  }
  return PacsFailure::tryAgain(QStringLiteral("%1 did not say whether it lets us").arg(peer()));
}

QByteArray DimseAssociation::transferSyntax(int index) const {
  T_ASC_PresentationContext context{};
  if (ASC_findAcceptedPresentationContext(association_->params, contextAt(index), &context).bad()) return {};
  return QByteArray(context.acceptedTransferSyntax).trimmed();
}

PacsResult<> DimseAssociation::send(int index, T_DIMSE_Message& request, DcmDataset* dataset, qint64 size) {
  limit(settings_.timeFor(size), MaxAnswers);
  ++message_;
  const T_DIMSE_DataSetType follows = dataset != nullptr ? DIMSE_DATASET_PRESENT : DIMSE_DATASET_NULL;
  if (request.CommandField == DIMSE_C_ECHO_RQ) {
    request.msg.CEchoRQ.MessageID = message_;
    request.msg.CEchoRQ.DataSetType = follows;
  } else if (request.CommandField == DIMSE_C_FIND_RQ) {
    request.msg.CFindRQ.MessageID = message_;
    request.msg.CFindRQ.DataSetType = follows;
  } else {
    request.msg.CStoreRQ.MessageID = message_;
    request.msg.CStoreRQ.DataSetType = follows;
  }
  const OFCondition condition = DIMSE_sendMessageUsingMemoryData(association_, contextAt(index), &request,
                                                                 nullptr, dataset, nullptr, nullptr);
  return condition.good() ? PacsResult<>() : failed(condition);
}

PacsResult<T_DIMSE_Message> DimseAssociation::receive(T_DIMSE_Command type) {
  if (limits_.deadline.hasExpired()) return failed(DUL_READTIMEOUT);
  T_DIMSE_Message answer{};
  T_ASC_PresentationContextID context = 0;
  DcmDataset* detail = nullptr;
  const OFCondition condition =
      DIMSE_receiveCommand(association_, DIMSE_NONBLOCKING, secondsLeft(), &context, &answer, &detail);
  delete detail;
  if (condition.bad()) return failed(condition);
  DIC_US respondedTo = 0;
  if (type == DIMSE_C_STORE_RSP) respondedTo = answer.msg.CStoreRSP.MessageIDBeingRespondedTo;
  if (type == DIMSE_C_FIND_RSP) respondedTo = answer.msg.CFindRSP.MessageIDBeingRespondedTo;
  if (type == DIMSE_C_ECHO_RSP) respondedTo = answer.msg.CEchoRSP.MessageIDBeingRespondedTo;
  if (answer.CommandField != type || respondedTo != message_) {
    inOrder_ = false;
    return PacsFailure::tryAgain(QStringLiteral("%1 answered something else than it was asked").arg(peer()));
  }
  return answer;
}

PacsResult<QByteArray> DimseAssociation::receiveDataset() {
  QByteArray buffer(LargestAnswer, '\0');
  DcmOutputBufferStream stream(buffer.data(), buffer.size());
  T_ASC_PresentationContextID context = 0;
  const OFCondition condition = DIMSE_receiveDataSetInFile(association_, DIMSE_NONBLOCKING, secondsLeft(),
                                                           &context, &stream, nullptr, nullptr);
  if (condition.bad()) return failed(condition);
  buffer.truncate(static_cast<qsizetype>(stream.tell()));
  return buffer;
}

}  // namespace bridge
