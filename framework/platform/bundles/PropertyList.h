// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>

#include "base/Export.h"
#include "base/Result.h"
#include "platform/bundles/Bundle.h"

namespace velmora::platform {

/// The value that a property list, XML or binary, holds. Fails when it is none, or damaged anywhere.
/// Dictionaries are QVariantMap, arrays QVariantList, strings QString, integers qint64, dates QDateTime, data
/// QByteArray.
VELMORA_EXPORT base::Result<QVariant> propertyListFromData(const QByteArray& data);

/// The bundle at `folder`: its information dictionary is Info.plist there, its resources stand beside it; or,
/// as in the bundles of the viewer, they are Contents/Info.plist and Contents/Resources. When it cannot be
/// read, the dictionary is empty and a log line says so.
VELMORA_EXPORT Bundle bundleWithPath(const QString& folder);

}  // namespace velmora::platform
