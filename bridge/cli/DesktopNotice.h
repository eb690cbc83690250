// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>

namespace bridge {

/// Shows a message on the user's desktop, as a notification over the session bus (freedesktop.org's
/// "Desktop Notifications" 1.2). Returns false when nothing can show it.
bool showOnDesktop(const QString& title, const QString& text);

}  // namespace bridge
