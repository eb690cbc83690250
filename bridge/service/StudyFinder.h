// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>

#include "base/Result.h"
#include "bridge/dicom/Study.h"
#include "bridge/pacs/Pacs.h"
#include "bridge/spool/SpoolEntry.h"

namespace bridge {

/// Whether a chart may go into a study; fails with what speaks against it. The identifiers must be there
/// and agree, "/" taken for "-"; birth dates must agree where both are known. An identifier that the reply
/// has in capitals agrees when both birth dates are known and the same.
velmora::base::Result<> checkSamePatient(const SpooledReply& reply, const Study& study);

/// The study of that UID, unless what the PACS says of it contradicts the reply.
PacsResult<Study> studyOfUID(const QString& uid, const SpooledReply& reply, Pacs& pacs);

/// Finds the study that a chart belongs to:
///  - the one that the reply names;
///  - when it names none, the one that the request named that it belongs to (RequestHistory);
///  - else the only one that the PACS has of that patient on that day.
/// In the last two cases a patient's identifier stands for several patients when the PACS has two who are
/// only told apart by "/" and "-", by their issuers or by their birth dates: then none is taken.
/// Fails with TryAgain when the PACS could not say, with Never when the study cannot be told, or would be
/// another patient's.
PacsResult<Study> findStudyFor(const SpooledReply& reply, Pacs& pacs);

}  // namespace bridge
