// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QVariantMap>

#include "base/Result.h"

namespace bridge {

/// Reads a study from a JSON object with the keys of the link request and dates as "YYYY-MM-DD". A key whose
/// value is null counts as absent. Checks only that the text is a JSON object.
velmora::base::Result<QVariantMap> studyFromJson(const QByteArray& json);

}  // namespace bridge
