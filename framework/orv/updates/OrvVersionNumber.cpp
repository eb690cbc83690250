// SPDX-License-Identifier: LGPL-3.0-or-later
#include "orv/updates/OrvVersionNumber.h"

#include <QList>
#include <QString>
#include <algorithm>

namespace velmora::orv {

namespace {

/// A number without leading zeros (zero is the empty one) or a word in small letters.
struct Part {
  enum class Kind { Word, End, Number };  // in the order in which they compare
  Kind kind;
  QString text;
};

bool isDigit(QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); }

void dropZerosAtTheEnd(QList<Part>& parts) {
  while (!parts.isEmpty() && parts.last().kind == Part::Kind::Number && parts.last().text.isEmpty())
    parts.removeLast();
}

QList<Part> partsOf(QStringView version) {
  version = version.trimmed();
  if (version.size() > 1 && version.front().toLower() == QLatin1Char('v') && isDigit(version.at(1)))
    version = version.sliced(1);
  QList<Part> parts;
  for (qsizetype at = 0; at < version.size();) {
    const auto runOf = [&](auto belongs) {
      const qsizetype start = at;
      while (at < version.size() && belongs(version.at(at))) ++at;
      return version.sliced(start, at - start);
    };
    if (isDigit(version.at(at))) {
      QStringView digits = runOf(isDigit);
      while (digits.startsWith(QLatin1Char('0'))) digits = digits.sliced(1);
      parts.append({Part::Kind::Number, digits.toString()});
    } else if (version.at(at).isLetter()) {
      dropZerosAtTheEnd(parts);
      parts.append({Part::Kind::Word, runOf([](QChar c) { return c.isLetter(); }).toString().toLower()});
    } else {
      ++at;
    }
  }
  dropZerosAtTheEnd(parts);
  return parts;
}

std::strong_ordering compareParts(const Part& left, const Part& right) {
  if (left.kind != right.kind) return left.kind <=> right.kind;
  if (left.kind == Part::Kind::Number && left.text.size() != right.text.size())
    return left.text.size() <=> right.text.size();
  return left.text.compare(right.text) <=> 0;
}

}  // namespace

std::strong_ordering compareVersions(QStringView left, QStringView right) {
  const QList<Part> lefts = partsOf(left);
  const QList<Part> rights = partsOf(right);
  const Part end{Part::Kind::End, {}};
  for (qsizetype i = 0; i < std::max(lefts.size(), rights.size()); ++i) {
    const auto order = compareParts(lefts.value(i, end), rights.value(i, end));
    if (order != std::strong_ordering::equal) return order;
  }
  return std::strong_ordering::equal;
}

}  // namespace velmora::orv
