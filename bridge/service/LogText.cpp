// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/service/LogText.h"

#include <QRegularExpression>
#include <QStringList>

#include "base/log/Escape.h"

using namespace velmora;

namespace bridge {

QString redactPatient(const QString& text, const SpooledReply& reply, const Study* study) {
  QStringList secrets{reply.identifier, reply.patientName};
  if (study != nullptr) secrets << study->patientID << study->patientName;
  QString safe = text;
  for (const QString& secret : secrets) {
    if (!secret.trimmed().isEmpty()) {
      QString pattern = QRegularExpression::escape(secret.trimmed());
      // The archive is also asked for the identifier with slashes in place of hyphens (StudyFinder).
      pattern.replace(QLatin1String("\\-"), QLatin1String("[-/]"));
      // As a word of its own: a short identifier is part of many words.
      const QRegularExpression word(
          QStringLiteral("(?<![\\p{L}\\p{N}])%1(?![\\p{L}\\p{N}])").arg(pattern),
          QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
      safe.replace(word, QStringLiteral("(patient)"));
    }
  }
  return oneLine(safe);
}

QString oneLine(const QString& text) {
  QString line = text.size() > 1000 ? text.left(1000) + QStringLiteral("...") : text;
  for (QChar& c : line) {
    if (base::isUnsafeInLine(c)) c = QLatin1Char('?');
  }
  return line;
}

}  // namespace bridge
