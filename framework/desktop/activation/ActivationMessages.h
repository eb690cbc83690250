// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDBusMessage>
#include <QString>
#include <optional>

#include "desktop/activation/ActivationRequest.h"

namespace velmora::desktop {

/// How requests travel on the session bus: the interface org.freedesktop.Application (freedesktop.org,
/// Desktop Entry 1.5, section 8) of the object whose path is the application's identifier with
/// slashes for dots. Printing is its action "print", whose arguments are locations, singly or as lists.
///
/// Whatever comes from the bus is somebody else's word: a call of another shape is refused, and what is no
/// local file is left out.
namespace activationmessages {

inline const QString Interface = QStringLiteral("org.freedesktop.Application");
/// The most files that one request may name.
constexpr int MostFiles = 100;

/// "/org/velmora/growth" for "org.velmora.growth"; nothing for what is no well-known name of the bus.
std::optional<QString> objectPath(const QString& identifier);

struct Incoming {
  std::optional<ActivationRequest> request;
  QString
      refusal;  ///< why there is no request, or what was left out of it; null when there is nothing to say
  /// Until when whoever asks is ready to wait, in milliseconds of deadlineNow(). None: for as long as it
  /// takes.
  std::optional<qint64> deadline;
};
/// What a call of the interface asks for.
Incoming fromBus(const QDBusMessage& call);

/// The call that asks application `identifier` for `request`, to be taken up until `deadline` or not at all.
QDBusMessage toBus(const QString& identifier, const ActivationRequest& request, qint64 deadline);

/// Milliseconds since this machine started: the same clock in every process.
qint64 deadlineNow() noexcept;

}  // namespace activationmessages
}  // namespace velmora::desktop
