// SPDX-License-Identifier: LGPL-3.0-or-later
#include "platform/text/Localization.h"

#include <QCoreApplication>

namespace velmora::platform {

QString localizedString(const char* table, const char* english) {
  return QCoreApplication::translate(table, english);
}

QString formatted(const QString& format, const QStringList& arguments) {
  QString result;
  qsizetype argument = 0;
  for (qsizetype i = 0; i < format.size();) {
    qsizetype length = 0;
    if (QStringView(format).sliced(i).startsWith(QLatin1String("%@"))) length = 2;
    if (QStringView(format).sliced(i).startsWith(QLatin1String("%ld"))) length = 3;
    if (length > 0 && argument < arguments.size()) {
      result += arguments.at(argument++);
      i += length;
    } else {
      result += format.at(i++);
    }
  }
  return result;
}

}  // namespace velmora::platform
