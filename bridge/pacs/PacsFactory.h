// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <memory>

#include "bridge/pacs/Pacs.h"
#include "bridge/pacs/PacsSettings.h"

namespace bridge {

/// The archive that the configuration describes. Nothing is connected yet.
std::unique_ptr<Pacs> makePacs(const PacsSettings& settings);

}  // namespace bridge
