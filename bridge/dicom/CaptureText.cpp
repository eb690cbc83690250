// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/dicom/CaptureText.h"

#include <QList>
#include <QRegularExpression>
#include <QStringList>
#include <algorithm>

namespace bridge {
namespace {

constexpr qsizetype LongStringCharacters = 64;
constexpr qsizetype ShortStringCharacters = 16;

bool isAllowed(uint character) {
  if (character == '\\' || character < 0x20 || (character >= 0x7f && character < 0xa0)) return false;
  return !QChar::isNonCharacter(character);
}

bool fits(const QString& text, qsizetype characters) {
  const QList<uint> all = text.toUcs4();
  return text.isValidUtf16() && all.size() <= characters && std::all_of(all.begin(), all.end(), isAllowed);
}

/// DICOM counts characters, not bytes and not UTF-16 units.
QString cleaned(const QString& text, qsizetype characters) {
  QList<char32_t> kept;
  const QList<uint> all = text.trimmed().toUcs4();
  for (const uint character : all) {
    if (kept.size() == characters) break;
    kept.append(isAllowed(character) ? char32_t(character) : U' ');
  }
  return QString::fromUcs4(kept.constData(), kept.size()).trimmed();
}

QString withoutTrailing(QString text, QChar separator) {
  while (text.endsWith(separator)) text.chop(1);
  return text;
}

bool matches(const QString& text, const QRegularExpression& form) { return form.match(text).hasMatch(); }

}  // namespace

bool isLongString(const QString& text) { return fits(text, LongStringCharacters); }

bool isShortString(const QString& text) { return fits(text, ShortStringCharacters); }

bool isUid(const QString& text) {
  static const QRegularExpression form(QStringLiteral("\\A[0-9]+(\\.[0-9]+)+\\z"));
  return text.size() <= 64 && matches(text, form);
}

bool isTime(const QString& text) {
  static const QRegularExpression form(
      QStringLiteral("\\A([01][0-9]|2[0-3])([0-5][0-9](([0-5][0-9]|60)(\\.[0-9]{1,6})?)?)?\\z"));
  return matches(text, form);
}

QString asLongString(const QString& text) { return cleaned(text, LongStringCharacters); }

QString asPersonName(const QString& name) {
  QStringList groups;
  const QStringList all = name.split(QLatin1Char('='));
  for (const QString& group : all.mid(0, 3)) {
    QStringList components = group.split(QLatin1Char('^')).mid(0, 5);
    for (QString& component : components) component = cleaned(component, LongStringCharacters);
    groups.append(
        withoutTrailing(cleaned(components.join(QLatin1Char('^')), LongStringCharacters), QLatin1Char('^')));
  }
  return withoutTrailing(groups.join(QLatin1Char('=')), QLatin1Char('='));
}

}  // namespace bridge
