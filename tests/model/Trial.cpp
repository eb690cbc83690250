// SPDX-License-Identifier: LGPL-3.0-or-later
#include "tests/model/Trial.h"

#include "tests/model/Comparison.h"
#include "tests/model/Player.h"

namespace model {

namespace {

constexpr int RecordsLookedAt = 8;

/// Leaves out runs of steps, long ones first.
bool shortened(Sequence& sequence, const Try& attempt) {
  bool any = false;
  for (qsizetype length = std::max<qsizetype>(sequence.size() / 2, 1); length >= 1; length /= 2) {
    for (qsizetype place = sequence.size() - length; place >= 0; place -= length) {
      Sequence without = sequence;
      without.remove(place, std::min(length, without.size() - place));
      if (!attempt(without)) continue;
      sequence = without;
      any = true;
    }
  }
  return any;
}

/// Leaves out answers, and what happens meanwhile.
bool simplified(Sequence& sequence, const Try& attempt) {
  bool any = false;
  const auto keep = [&](const Sequence& simpler) {
    if (!attempt(simpler)) return false;
    sequence = simpler;
    return any = true;
  };
  for (qsizetype i = 0; i < sequence.size(); ++i) {
    while (!sequence.at(i).answers.isEmpty()) {
      Sequence simpler = sequence;
      simpler[i].answers.removeLast();
      if (!keep(simpler)) break;
    }
    for (qsizetype a = 0; a < sequence.at(i).answers.size(); ++a) {
      for (qsizetype e = sequence.at(i).answers.at(a).meanwhile.size() - 1; e >= 0; --e) {
        Sequence simpler = sequence;
        simpler[i].answers[a].meanwhile.removeAt(e);
        keep(simpler);
      }
    }
  }
  return any;
}

}  // namespace

std::optional<Failure> played(const Sequence& sequence) {
  Model model;
  Player player;
  Comparison comparison;
  QStringList differences = comparison.check(model, player);
  for (qsizetype i = 0; differences.isEmpty() && i < sequence.size(); ++i) {
    model.play(sequence.at(i));
    player.play(sequence.at(i), model);
    differences = comparison.check(model, player);
    if (!differences.isEmpty()) return Failure{i, differences.join(QLatin1Char('\n'))};
  }
  if (differences.isEmpty()) return std::nullopt;
  return Failure{-1, differences.join(QLatin1Char('\n'))};
}

Sequence shrunk(Sequence sequence, const Try& attempt) {
  if (const auto failure = attempt(sequence)) sequence = sequence.mid(0, failure->step + 1);
  while (shortened(sequence, attempt) || simplified(sequence, attempt)) {
  }
  return sequence;
}

Sequence randomSequence(unsigned seed, int length) {
  std::mt19937 random(seed);
  Sequence sequence;
  for (int i = 0; i < length; ++i) sequence.append(randomStep(random, i));

  const QList<Answer> yes(RecordsLookedAt);  // the first button of everything
  sequence.append(Step{{Kind::FailingWrites, {}, 0}, {}});
  sequence.append(Step{{Kind::FailingCopies, {}, 0}, {}});
  sequence.append(Step{{Kind::AutoSave, {}, 1}, {}});
  sequence.append(Step{{Kind::Quit, {}, 0}, yes});
  sequence.append(Step{{Kind::Pass, QStringLiteral("4"), 0}, {}});
  for (int i = 0; i < RecordsLookedAt; ++i) sequence.append(Step{{Kind::OpenFile, {}, i}, yes});
  return sequence;
}

QString textOf(const Sequence& sequence) {
  QString text;
  for (const Step& step : sequence) text += lineOf(step) + QLatin1Char('\n');
  return text;
}

std::optional<Sequence> sequenceOf(const QString& text) {
  Sequence sequence;
  for (const QString& line : text.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
    const auto step = stepOf(line);
    if (!step) return std::nullopt;
    sequence.append(*step);
  }
  return sequence;
}

}  // namespace model
