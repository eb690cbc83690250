// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QLocale>
#include <QString>

namespace velmora {

/// How the preferences window says when the last successful version check ended: "Never" for the distant
/// past, else day and time of the clock on the wall, in the locale's short styles, as in "02/05/2024 at
/// 10:00".
QString lastCheckedText(const QDateTime& lastCheck, const QLocale& locale = QLocale());

}  // namespace velmora
