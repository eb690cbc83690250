// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/pacs/PacsFactory.h"

#include "bridge/pacs/DimsePacs.h"
#include "bridge/pacs/WebPacs.h"

namespace bridge {

std::unique_ptr<Pacs> makePacs(const PacsSettings& settings) {
  switch (settings.kind) {
    case PacsSettings::Kind::Dimse:
      return std::make_unique<DimsePacs>(settings);
    case PacsSettings::Kind::Web:
      return std::make_unique<WebPacs>(settings);
  }
  Q_UNREACHABLE();
}

}  // namespace bridge
