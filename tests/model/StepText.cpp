// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Steps as lines of text.
#include <QStringList>
#include <array>

#include "tests/model/Step.h"

namespace model {

namespace {

const std::array<const char*, KindCount> names{"link",           "pass",           "type-identifier",
                                               "type-birth",     "type-date",      "type-measure",
                                               "type-on",        "new-exam",       "delete",
                                               "answer-sheet",   "next",           "previous",
                                               "click",          "save",           "save-as",
                                               "close",          "close-all",      "quit",
                                               "session-end",    "new-document",   "open",
                                               "batch-open",     "export",         "front",
                                               "auto-save",      "to-osirix",      "foreign-change",
                                               "foreign-remove", "foreign-damage", "foreign-race",
                                               "open-kept",      "failing-writes", "failing-copies",
                                               "keeps-blank"};

QString nameOf(Kind kind) { return QString::fromLatin1(names.at(static_cast<std::size_t>(kind))); }

std::optional<Event> eventOf(const QStringList& words) {
  if (words.size() != 3) return std::nullopt;
  for (int kind = 0; kind < KindCount; ++kind) {
    if (nameOf(static_cast<Kind>(kind)) != words.at(0)) continue;
    return Event{static_cast<Kind>(kind), words.at(1) == QLatin1String("-") ? QString() : words.at(1),
                 words.at(2).toInt()};
  }
  return std::nullopt;
}

QString wordsOf(const Event& event, const QString& separator) {
  return nameOf(event.kind) + separator + (event.text.isEmpty() ? QStringLiteral("-") : event.text) +
         separator + QString::number(event.number);
}

}  // namespace

QString lineOf(const Step& step) {
  QString line = wordsOf(step, QStringLiteral(" "));
  if (!step.answers.isEmpty()) line += QStringLiteral(" ?");
  for (const Answer& answer : step.answers) {
    line += QStringLiteral(" %1").arg(answer.choice);
    for (const Event& event : answer.meanwhile)
      line += QLatin1Char(':') + wordsOf(event, QStringLiteral("="));
  }
  return line;
}

std::optional<Step> stepOf(const QString& line) {
  const QStringList halves = line.trimmed().split(QStringLiteral(" ?"));
  const auto event = eventOf(halves.first().split(QLatin1Char(' '), Qt::SkipEmptyParts));
  if (!event || halves.size() > 2) return std::nullopt;
  Step step{*event, {}};
  for (const QString& text : halves.value(1).split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
    QStringList parts = text.split(QLatin1Char(':'));
    Answer answer{parts.takeFirst().toInt(), {}};
    for (const QString& part : parts) {
      const auto meanwhile = eventOf(part.split(QLatin1Char('=')));
      if (!meanwhile) return std::nullopt;
      answer.meanwhile.append(*meanwhile);
    }
    step.answers.append(answer);
  }
  return step;
}

}  // namespace model
