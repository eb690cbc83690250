// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include "bridge/pacs/Pacs.h"

namespace bridge {

/// What the status of a C-STORE response means (PS3.4 table B.2-1, PS3.7 annex C).
///
/// Success: status 0000, the warnings B000, B006 and B007 (stored, with something changed or left out), and
/// 0111, which says that the object is there already. Never: A9xx and Cxxx, which by that table lie in the
/// object itself, and the statuses that say that an object of this kind is not taken at all. TryAgain: A7xx
/// (out of resources) and everything else, since it may pass or an administrator may mend it, a missing
/// permission (0124) among them.
PacsResult<> storeOutcome(quint16 status);

/// What the last status of a query means (PS3.4 table C.4-1). Never only when the archive does not know the
/// question (A9xx, 0122): one that is unable to process (Cxxx) may be able later, as the question is always
/// the same.
PacsResult<> findOutcome(quint16 status);

/// Whether more answers to a query follow.
bool isPending(quint16 status);

}  // namespace bridge
