// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include "base/Export.h"

namespace velmora::platform {

/// The user's wording of an English text. A string table is a translation context of the same name; the
/// English text is the key, and is itself the answer where there is no translation.
VELMORA_EXPORT QString localizedString(const char* table, const char* english);

/// Fills the placeholders "%@" and "%ld" of a format in order. An argument is never searched for
/// placeholders, so an identifier that contains "%@" stays what it is.
VELMORA_EXPORT QString formatted(const QString& format, const QStringList& arguments);

}  // namespace velmora::platform
