// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/dicom/DicomText.h"

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

/// DICOM counts characters, neither bytes nor UTF-16 units.
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

}  // namespace

bool isOneValue(const QString& text) {
  const QList<uint> all = text.toUcs4();
  return text.isValidUtf16() && std::all_of(all.begin(), all.end(), isAllowed);
}

bool isLongString(const QString& text) {
  return isOneValue(text) && text.toUcs4().size() <= LongStringCharacters;
}

bool isShortString(const QString& text) {
  return isOneValue(text) && text.toUcs4().size() <= ShortStringCharacters;
}

bool isTime(const QString& text) {
  static const QRegularExpression form(
      QStringLiteral("\\A([01][0-9]|2[0-3])([0-5][0-9](([0-5][0-9]|60)(\\.[0-9]{1,6})?)?)?\\z"));
  return form.match(text).hasMatch();
}

bool isSex(const QString& text) {
  return text == QLatin1String("M") || text == QLatin1String("F") || text == QLatin1String("O");
}

QString withoutPadding(const QString& text) {
  qsizetype end = text.size();
  while (end > 0 && (text.at(end - 1) == QLatin1Char(' ') || text.at(end - 1) == QChar::Null)) --end;
  qsizetype begin = 0;
  while (begin < end && text.at(begin) == QLatin1Char(' ')) ++begin;
  return text.mid(begin, end - begin);
}

QDate dateFromDicom(const QString& text) {
  static const QRegularExpression form(
      QStringLiteral("\\A(?:([0-9]{4})([0-9]{2})([0-9]{2})|([0-9]{4})\\.([0-9]{2})\\.([0-9]{2}))\\z"));
  const QRegularExpressionMatch match = form.match(text);
  const int first = match.hasCaptured(1) ? 1 : 4;
  return QDate(match.captured(first).toInt(), match.captured(first + 1).toInt(),
               match.captured(first + 2).toInt());
}

QString dicomDate(QDate date) {
  return date.isValid() ? date.toString(QStringLiteral("yyyyMMdd")) : QString();
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

QString withoutEmptyGroups(const QString& name) {
  QStringList groups = name.split(QLatin1Char('='));
  for (QString& group : groups) {
    group = withoutPadding(group);
    if (group.count(QLatin1Char('^')) == group.size()) group.clear();
  }
  return withoutTrailing(groups.join(QLatin1Char('=')), QLatin1Char('='));
}

}  // namespace bridge
