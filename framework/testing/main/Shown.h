// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>

#include <QDate>
#include <QDateTime>
#include <QString>
#include <QUrl>
#include <ostream>

// How a failed expectation shows Qt's values: as text instead of bytes. They stand where GoogleTest looks for
// them, in the namespace of the types.

inline void PrintTo(const QString& text, std::ostream* out) {
  if (text.isNull()) {
    *out << "(null string)";
  } else {
    *out << '"' << text.toStdString() << '"';
  }
}
inline void PrintTo(const QUrl& url, std::ostream* out) { PrintTo(url.toString(), out); }
inline void PrintTo(const QDate& date, std::ostream* out) { PrintTo(date.toString(Qt::ISODate), out); }
inline void PrintTo(const QDateTime& date, std::ostream* out) {
  PrintTo(date.toString(Qt::ISODateWithMs), out);
}
