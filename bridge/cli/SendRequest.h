// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>
#include <QVariantMap>

#include "base/Result.h"

namespace bridge {

/// Sends a link request to the application with that bundle identifier and prints that it did. Succeeds when
/// the session bus has taken the request.
velmora::base::Result<> sendRequest(const QString& application, const QVariantMap& details);

/// Whether the application may be running: it owns its bundle identifier as a name on the session bus, or the
/// bus cannot be asked.
bool mayBeRunning(const QString& application);

}  // namespace bridge
