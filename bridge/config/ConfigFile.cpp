// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/config/ConfigFile.h"

#include <QStringDecoder>
#include <algorithm>

namespace bridge {
namespace {

bool hasControlCharacter(const QString& line) {
  return std::any_of(line.begin(), line.end(),
                     [](QChar c) { return c.category() == QChar::Other_Control && c != QLatin1Char('\t'); });
}

/// Parses a file line by line.
class Reader {
 public:
  void read(const QString& line) {
    ++number_;
    const QString text = line.trimmed();
    if (hasControlCharacter(text)) {
      error(QStringLiteral("there is a control character in this line"));
    } else if (text.isEmpty() || text.startsWith(QLatin1Char('#')) || text.startsWith(QLatin1Char(';'))) {
      return;
    } else if (text.startsWith(QLatin1Char('['))) {
      readSection(text);
    } else {
      readEntry(text);
    }
  }

  void error(const QString& message) {
    result_.errors.append(QStringLiteral("%1: %2").arg(number_).arg(message));
  }
  ConfigEntries result() const { return result_; }

 private:
  void readSection(const QString& text) {
    section_.clear();
    if (!text.endsWith(QLatin1Char(']'))) {
      error(QStringLiteral("a section is written [name]"));
      return;
    }
    section_ = text.mid(1, text.size() - 2).trimmed();
    if (section_.isEmpty()) error(QStringLiteral("a section is written [name]"));
  }

  void readEntry(const QString& text) {
    const qsizetype equals = text.indexOf(QLatin1Char('='));
    if (equals < 0) {
      error(QStringLiteral("this is neither a [section] nor key = value"));
      return;
    }
    const QString key = text.left(equals).trimmed();
    if (section_.isEmpty()) {
      error(QStringLiteral("\"%1\" stands in no section").arg(key));
      return;
    }
    const auto same =
        std::find_if(result_.entries.begin(), result_.entries.end(),
                     [&](const ConfigEntry& each) { return each.section == section_ && each.key == key; });
    if (same != result_.entries.end()) {
      error(QStringLiteral("\"%1\" has a value already, in line %2").arg(key).arg(same->line));
      return;
    }
    result_.entries.append({section_, key, text.mid(equals + 1).trimmed(), number_});
  }

  ConfigEntries result_;
  QString section_;
  int number_ = 0;
};

}  // namespace

ConfigEntries parseConfig(const QByteArray& text) {
  Reader reader;
  // Line by line, so that bytes that are not UTF-8 are reported with their line.
  const QList<QByteArray> lines = text.split('\n');
  for (const QByteArray& line : lines) {
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString decoded = decoder.decode(line + '\n');  // so that a truncated character is an error
    if (decoder.hasError()) {
      reader.read(QString());
      reader.error(QStringLiteral("this line is not UTF-8"));
    } else {
      reader.read(decoded);
    }
  }
  return reader.result();
}

}  // namespace bridge
