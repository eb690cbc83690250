// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>

#include "tests/model/Step.h"

namespace model {

using Sequence = QList<Step>;

/// Where a sequence went wrong, and how.
struct Failure {
  qsizetype step = 0;
  QString text;
};

/// Plays a sequence on a new model and a new program, compares them after every step, and stops at the first
/// difference.
std::optional<Failure> played(const Sequence& sequence);

/// How a sequence is tried: where it goes wrong, or nothing.
using Try = std::function<std::optional<Failure>(const Sequence&)>;

/// The shortest form found of a sequence that fails: no step, answer or event can be left out of it without
/// its failing no more.
Sequence shrunk(Sequence sequence, const Try& attempt = played);

/// A random sequence of `length` steps, after which everything is saved, the application quits, and every
/// record is opened once more.
Sequence randomSequence(unsigned seed, int length);

/// One line a step, and back; nothing when a line is none.
QString textOf(const Sequence& sequence);
std::optional<Sequence> sequenceOf(const QString& text);

}  // namespace model
