// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>

#include "platform/Bundle.h"

namespace platform::qt {

/// The value that a property list, XML or binary, holds; invalid when it is none, or damaged anywhere.
/// Dictionaries are QVariantMap, arrays QVariantList, strings QString, integers qint64, dates QDateTime, data
/// QByteArray.
QVariant propertyListFromData(const QByteArray& data);

/// The bundle whose information dictionary is `folder`/Info.plist and whose resources stand in `folder`.
/// An empty dictionary, with a log line, when there is none that can be read.
Bundle bundleWithPath(const QString& folder);

}  // namespace platform::qt
