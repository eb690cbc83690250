// SPDX-License-Identifier: LGPL-3.0-or-later
#include "base/log/Log.h"

#include <QLoggingCategory>

#include "base/log/Escape.h"

namespace velmora::base {

namespace {
Q_LOGGING_CATEGORY(velmoraLog, "velmora", QtInfoMsg)

/// A hostile message must not be able to fill the log in one line.
constexpr qsizetype LongestLine = 4096;
}  // namespace

void logLine(const QString& text) {
  QString line;
  line.reserve(text.size());
  for (const QChar c : text.left(LongestLine)) {
    if (c == QLatin1Char('\n')) {
      line += QLatin1String("\\n");
    } else if (isUnsafeInLine(c)) {
      line += QStringLiteral("\\x%1").arg(c.unicode(), 2, 16, QLatin1Char('0'));
    } else {
      line += c;
    }
  }
  if (text.size() > LongestLine) line += QStringLiteral("…");
  qCInfo(velmoraLog).noquote() << line;
}

}  // namespace velmora::base
