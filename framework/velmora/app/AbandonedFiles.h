// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

namespace velmora::platform {
struct Services;
}

namespace velmora {

/// Removes what saves and exports that were cut off have left behind, in every folder in which the
/// application writes.
void removeAbandonedFiles(platform::Services& services);

}  // namespace velmora
