// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>

namespace bridge {

/// A UID under 2.25 from a random UUID (PS3.5 B.2).
QString newUid();
/// A UID under 2.25 that is the same for the same text: a version 5 UUID of it.
QString uidOf(const QString& text);
/// Whether the text is a UID: at least two numbers with dots between them, at most 64 characters (PS3.5 9.1).
/// Numbers that begin with a zero are not allowed but do occur, and an archive with such a study wants its
/// charts too.
bool isUid(const QString& text);

}  // namespace bridge
