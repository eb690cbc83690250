// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>
#include <QVariantMap>

#include "base/Result.h"

namespace bridge {

/// Sends a link request to the application with that bundle identifier and says so. Succeeds when the session
/// bus has it.
velmora::base::Result<> sendRequest(const QString& application, const QVariantMap& details);

/// Whether an application of that bundle identifier is known to be running: it has that name on the session
/// bus. True, too, when the bus cannot be asked.
bool mayBeRunning(const QString& application);

}  // namespace bridge
