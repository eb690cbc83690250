// SPDX-License-Identifier: LGPL-3.0-or-later
#include <QCryptographicHash>
#include <cmath>

#include "apps/growth/reference/GrowthReference.h"
#include "tests/fuzz/FuzzTargets.h"

using growth::GrowthReference;
using growth::Sex;

namespace {

void requireFinite(const std::optional<double>& number, const char* what) {
  fuzz::require(!number || std::isfinite(*number), what);
}

void ask(const GrowthReference& reference) {
  for (const Sex sex : {Sex::Male, Sex::Female}) {
    const auto range = reference.range(sex);
    if (!range) continue;
    fuzz::require(std::isfinite(range->from) && std::isfinite(range->to) && range->from <= range->to,
                  "a range has a beginning and an end");
    for (const double x : {range->from, (range->from + range->to) / 2, range->to}) {
      fuzz::require(reference.parametersAt(sex, x).has_value(), "there is an answer everywhere in the range");
      for (const double value : {1e-300, 0.1, 10.0, 1e300})
        requireFinite(reference.zScore(sex, x, value), "a z-score");
      for (const double z : {-100.0, 0.0, 3.0}) requireFinite(reference.valueAt(sex, x, z), "a value");
    }
    fuzz::require(!reference.parametersAt(sex, range->to * 2 + 1).has_value(), "nothing is extrapolated");
    reference.centileCurve(sex, 50, range->from - 1, range->to + 1);
  }
}

void read(const QByteArray& bytes) {
  const auto reference = GrowthReference::fromBytes(bytes);
  fuzz::require(reference.ok() == reference.error().isEmpty(), "a refusal says why");
  if (reference.ok()) ask(*reference);
}

}  // namespace

void fuzz::referenceFile(const QByteArray& input) {
  read(input);
  const qsizetype digest = input.lastIndexOf("sha256: ");
  const QByteArray text = digest < 0 ? input : input.left(digest);
  read(text + "sha256: " + QCryptographicHash::hash(text, QCryptographicHash::Sha256).toHex() + '\n');
}
