// SPDX-License-Identifier: LGPL-3.0-or-later
#include "base/log/Escape.h"

namespace velmora::base {

bool isUnsafeInLine(QChar c) {
  switch (c.category()) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
      return true;
    default:
      return false;
  }
}

QString escaped(const QString& text) {
  QString shown;
  for (const QChar c : text) {
    if (isUnsafeInLine(c)) {
      shown += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
    } else {
      shown += c;
    }
  }
  return shown;
}

}  // namespace velmora::base
