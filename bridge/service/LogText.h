// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>

#include "bridge/dicom/Study.h"
#include "bridge/spool/SpoolEntry.h"

namespace bridge {

/// What others say of a failure, without the patient's identifier and names: a PACS may repeat what it was
/// asked, and log files have other readers than the spool. `study` may be null.
QString withoutPatient(const QString& text, const SpooledReply& reply, const Study* study);

/// Text as one line of a log: what is unsafe in a line (base/log/Escape.h) is shown as "?"; cut after 1,000
/// characters.
QString oneLine(const QString& text);

}  // namespace bridge
