// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>

#include "base/Result.h"
#include "bridge/dicom/Study.h"
#include "bridge/pacs/Pacs.h"
#include "bridge/spool/SpoolEntry.h"

namespace bridge {

/// Checks that a chart is of the study's patient; fails with what contradicts that. Both must have an
/// identifier, and these must agree, "/" counting as "-"; birth dates must agree if both are known. An
/// identifier that is in capitals in the reply agrees if both birth dates are known and equal.
velmora::base::Result<> checkSamePatient(const SpooledReply& reply, const Study& study);

/// The study with that UID, unless what the PACS says of its patient contradicts the reply.
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
