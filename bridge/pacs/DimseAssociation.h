// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <dcmtk/config/osconfig.h>
#include <dcmtk/dcmnet/assoc.h>
#include <dcmtk/dcmnet/dimse.h>

#include <QByteArray>
#include <QList>

#include "bridge/pacs/DimseConnection.h"
#include "bridge/pacs/Pacs.h"
#include "bridge/pacs/PacsSettings.h"

namespace bridge {

/// A presentation context to propose: one SOP class, in whichever of these transfer syntaxes the archive
/// prefers.
struct DimseContext {
  QByteArray sopClassUID;
  QList<QByteArray> transferSyntaxUIDs;
};

/// One association with an archive. The configured time-out holds for reaching the archive, and then for each
/// exchange as a whole, in however small pieces the archive takes or sends it.
///
/// The DICOM toolkit's log is off: it would name patients. Of what is received it parses the command sets
/// only, which have no sequences. Data sets stay bytes, up to a limit, so that DIMSE_findUser() cannot serve:
/// it parses them, sequences within sequences by recursion without a limit.
///
/// What an administrator can mend (an AE title, a port, a permission) is TryAgain: a slip in the
/// configuration sets no chart aside.
class DimseAssociation {
 public:
  explicit DimseAssociation(const PacsSettings& settings);
  /// Releases the association, or aborts it when something has gone wrong in it.
  ~DimseAssociation();
  DimseAssociation(const DimseAssociation&) = delete;
  DimseAssociation& operator=(const DimseAssociation&) = delete;

  /// Called once, before all else. Success means that the archive talks to us; accepted() tells what it lets
  /// us do.
  PacsResult<> open(const QList<DimseContext>& contexts);
  /// Succeeds when the archive accepted the context with that index in what open() was given. A refusal is
  /// Never when the archive does not know the class or the transfer syntax, or chooses one that was not
  /// offered: it would misread what it is sent.
  PacsResult<> accepted(int index) const;
  /// The transfer syntax of an accepted context.
  QByteArray transferSyntax(int index) const;

  /// Sends a C-ECHO, C-FIND or C-STORE request, followed by the data set unless there is none. The message's
  /// number and what it says of a data set are filled in here. `size`, in bytes, decides how long it may
  /// take.
  PacsResult<> send(int index, T_DIMSE_Message& request, DcmDataset* dataset = nullptr, qint64 size = 0);
  /// Waits for an answer to the last request. `type` is what it must be.
  PacsResult<T_DIMSE_Message> receive(T_DIMSE_Command type);
  /// Reads the data set that follows an answer.
  PacsResult<QByteArray> receiveDataset();

  /// An answer to a query may have at most so many bytes: a study's attributes need a fraction of it.
  static constexpr int LargestAnswer = 64 * 1024;

 private:
  PacsFailure failed(const OFCondition& condition);
  PacsFailure refused() const;
  QString peer() const;
  int secondsLeft() const;
  void limit(std::chrono::seconds time, qint64 bytesToRead);

  PacsSettings settings_;
  QList<DimseContext> contexts_;  // as proposed
  DimseLimits limits_;            // of the present exchange
  std::chrono::seconds time_{0};  // that it may take in all
  T_ASC_Network* network_ = nullptr;
  T_ASC_Parameters* parameters_ = nullptr;  // the association's, once there is one
  T_ASC_Association* association_ = nullptr;
  DIC_US message_ = 0;
  bool opened_ = false;
  bool inOrder_ = false;  // opened, and nothing has gone wrong since
};

}  // namespace bridge
