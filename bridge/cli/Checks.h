// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>

#include "base/Result.h"
#include "bridge/config/Config.h"

namespace bridge {

/// The answer to one question about the installation, in plain words: what was found, or what is wrong and
/// what helps.
using CheckAnswer = velmora::base::Result<QString>;

/// Whether the spool's folder can take patients' charts: there (or can be made), ours, nobody else's to
/// enter, writable, with room for charts. Leaves nothing behind in it.
CheckAnswer checkSpoolFolder(const QString& folder);
/// Whether there is a session bus that answers.
CheckAnswer checkSessionBus();
/// Whether the archive answers and would let us find and store.
CheckAnswer checkArchive(const PacsSettings& settings);

}  // namespace bridge
