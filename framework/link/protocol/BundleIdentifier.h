// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QRegularExpression>
#include <QString>

namespace velmora::link {

/// Whether the text can be an application's bundle identifier: letters, digits, dots, hyphens and
/// underscores, 255 at most, as in a name on the bus (freedesktop.org, D-Bus 0.41, "Valid Names").
inline bool isBundleIdentifier(const QString& text) {
  static const QRegularExpression form(QStringLiteral("\\A[A-Za-z0-9._-]{1,255}\\z"));
  return form.match(text).hasMatch();
}

/// Whether the application can take the identifier as its own name on the bus, by which the desktop reaches
/// it: two elements at least, none of which begins with a digit. One that cannot still takes part in the
/// link.
inline bool isBusName(const QString& bundleIdentifier) {
  static const QRegularExpression form(
      QStringLiteral("\\A[A-Za-z_-][A-Za-z0-9_-]*(\\.[A-Za-z_-][A-Za-z0-9_-]*)+\\z"));
  return isBundleIdentifier(bundleIdentifier) && form.match(bundleIdentifier).hasMatch();
}

}  // namespace velmora::link
