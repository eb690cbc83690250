// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/dicom/PersonName.h"

#include <QStringList>

namespace bridge {
namespace {

bool isShown(QChar c) {
  // Direction overrides would let a name rewrite the line around it.
  const char16_t unit = c.unicode();
  if ((unit >= 0x202a && unit <= 0x202e) || (unit >= 0x2066 && unit <= 0x2069)) return false;
  return c.category() != QChar::Other_Control && c.category() != QChar::Separator_Line &&
         c.category() != QChar::Separator_Paragraph;
}

/// Whether the name is in a script in which the family name comes first.
bool hasFamilyFirst(const QString& group) {
  for (const uint character : group.toUcs4()) {
    switch (QChar::script(character)) {
      case QChar::Script_Han:
      case QChar::Script_Hiragana:
      case QChar::Script_Katakana:
      case QChar::Script_Hangul:
      case QChar::Script_Bopomofo:
        return true;
      default:
        break;
    }
  }
  return false;
}

QString readableGroup(const QString& group) {
  QStringList components = group.split(QLatin1Char('^'));
  for (QString& component : components) component = component.simplified();
  const QString family = components.value(0);
  const QString given = components.value(1);
  const QString middle = components.value(2);
  const QString prefix = components.value(3);
  QStringList words = hasFamilyFirst(group) ? QStringList{prefix, family, given, middle}
                                            : QStringList{prefix, given, middle, family};
  words.removeAll(QString());
  QString name = words.join(QLatin1Char(' '));
  for (const QString& suffix : components.mid(4)) {
    if (suffix.isEmpty()) continue;
    if (!name.isEmpty()) name += QStringLiteral(", ");
    name += suffix;
  }
  return name;
}

}  // namespace

QString readablePersonName(const QString& dicomName) {
  QString clean = dicomName;
  clean.removeIf([](QChar c) { return !isShown(c); });
  const QStringList groups = clean.split(QLatin1Char('='));
  const QString alphabetic = readableGroup(groups.value(0));
  const QString ideographic = readableGroup(groups.value(1));
  if (alphabetic.isEmpty()) return ideographic.isEmpty() ? readableGroup(groups.value(2)) : ideographic;
  if (ideographic.isEmpty() || ideographic == alphabetic) return alphabetic;
  return QStringLiteral("%1 (%2)").arg(alphabetic, ideographic);
}

}  // namespace bridge
