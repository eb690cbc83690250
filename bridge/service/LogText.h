// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>

#include "bridge/dicom/Study.h"
#include "bridge/spool/SpoolEntry.h"

namespace bridge {

/// The text of a failure on one line, without the patient's identifier and names: a PACS may repeat what it
/// was asked, and logs have other readers than the spool. `study` may be null.
QString redactPatient(const QString& text, const SpooledReply& reply, const Study* study);

/// The text as one line of a log, truncated after 1,000 characters. Characters that are unsafe in a line
/// (base/log/Escape.h) become "?".
QString oneLine(const QString& text);

}  // namespace bridge
