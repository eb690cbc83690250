// SPDX-License-Identifier: LGPL-3.0-or-later
#include "apps/growth/reference/GrowthReferences.h"

#include "base/files/FileManager.h"
#include "base/log/Log.h"

using namespace velmora;

namespace growth {

QString wordFor(Measure measure) {
  switch (measure) {
    case Measure::Weight:
      return QStringLiteral("weight");
    case Measure::Height:
      return QStringLiteral("height");
    case Measure::Head:
      break;
  }
  return QStringLiteral("head");
}

GrowthReferences::GrowthReferences(const QString& folder) {
  for (const Measure measure : measures) {
    const QString path = folder + QLatin1Char('/') + wordFor(measure) + QStringLiteral(".reference");
    const base::Result<QByteArray> bytes = base::FileManager().readFile(path, 16 * 1024 * 1024);
    const base::Result<GrowthReference> reference =
        bytes.ok() ? GrowthReference::fromBytes(*bytes) : bytes.failure();
    if (reference.ok())
      references_[static_cast<std::size_t>(measure)] = *reference;
    else
      base::logLine(QStringLiteral("Reference %1: %2").arg(path, reference.error()));
  }
}

const GrowthReference* GrowthReferences::reference(Measure measure) const {
  const auto& reference = references_[static_cast<std::size_t>(measure)];
  return reference ? &*reference : nullptr;
}

}  // namespace growth
