// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>
#include <array>
#include <optional>

#include "apps/growth/reference/GrowthReference.h"

namespace growth {

/// What is measured at an examination.
enum class Measure { Weight, Height, Head };
inline constexpr std::array<Measure, 3> measures{Measure::Weight, Measure::Height, Measure::Head};

/// The word that names a measure in data files, reference files and outlets ("weight").
QString wordFor(Measure measure);

/// The references that the application carries, one for each measure.
class GrowthReferences {
 public:
  /// Reads the reference files in `folder`. One that cannot be read is logged and missing: its chart then
  /// shows the patient's points alone, and its measurements have no z-scores.
  explicit GrowthReferences(const QString& folder);

  const GrowthReference* reference(Measure measure) const;

 private:
  std::array<std::optional<GrowthReference>, measures.size()> references_;
};

}  // namespace growth
