// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>

namespace bridge {

/// A new UID below 2.25, from a random UUID (PS3.5 B.2).
QString newUid();
/// The UID below 2.25 of a text, always the same: from its version 5 UUID.
QString uidOf(const QString& text);
/// Whether the text is a UID: at least two numbers with dots between them, at most 64 characters (PS3.5 9.1).
/// Accepts numbers that begin with a zero: they are not allowed, but they occur, and such a study gets its
/// charts too.
bool isUid(const QString& text);

}  // namespace bridge
