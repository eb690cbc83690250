// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <dcmtk/config/osconfig.h>
#include <dcmtk/dcmnet/dimse.h>

#include <QByteArray>
#include <QList>
#include <optional>
#include <thread>

#include "bridge/pacs/PacsSettings.h"

namespace bridge_testing {

/// What an archive is to do in one association.
struct Script {
  std::optional<T_ASC_RejectParametersReason> rejection;
  QList<QByteArray> classes{UID_VerificationSOPClass, UID_FINDStudyRootQueryRetrieveInformationModel,
                            UID_SecondaryCaptureImageStorage};
  QList<QByteArray> transferSyntaxes{UID_LittleEndianExplicitTransferSyntax, UID_JPEGProcess1TransferSyntax};
  bool aborts = false;  ///< at the first request
  bool isMute = false;  ///< reads requests and answers none
  quint16 storeStatus = 0;
  std::optional<QByteArray> storedUid;  ///< instead of that of the request; empty: none
  int answers = 0;                      ///< to a query, before the last
  bool lastIsNameless = false;          ///< the last of them has no Study Instance UID
  int answerSize = 0;                   ///< bytes of an attribute that was not asked for, in each answer
  quint16 findStatus = 0;
};

/// An archive that takes one association and does in it what the script says.
class ScriptedArchive {
 public:
  explicit ScriptedArchive(const Script& script);
  ~ScriptedArchive();
  ScriptedArchive(const ScriptedArchive&) = delete;
  ScriptedArchive& operator=(const ScriptedArchive&) = delete;

  bridge::PacsSettings settings() const;
  /// The Specific Character Set and the Patient ID of the query that it got, when the association has ended.
  QByteArray question();

 private:
  void run();
  bool accept(T_ASC_Association* association) const;
  bool serve(T_ASC_Association* association);
  void store(T_ASC_Association* association, T_ASC_PresentationContextID context,
             T_DIMSE_C_StoreRQ& request) const;
  void find(T_ASC_Association* association, T_ASC_PresentationContextID context, T_DIMSE_C_FindRQ& request);

  Script script_;
  int port_;
  T_ASC_Network* network_ = nullptr;
  QByteArray question_;
  std::thread thread_;
};

}  // namespace bridge_testing
