// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/pacs/MakePacs.h"

#include "bridge/pacs/DimsePacs.h"
#include "bridge/pacs/WebPacs.h"

namespace bridge {

std::unique_ptr<Pacs> makePacs(const PacsSettings& settings) {
  if (settings.kind == PacsSettings::Kind::Web) return std::make_unique<WebPacs>(settings);
  return std::make_unique<DimsePacs>(settings);
}

}  // namespace bridge
