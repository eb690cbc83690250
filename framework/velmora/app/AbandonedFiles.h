// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

namespace velmora::base {
class FileManager;
}
namespace velmora::platform {
class Bundle;
class RunLoop;
class UserDefaults;
}  // namespace velmora::platform

namespace velmora {

/// Removes what saves and exports that were cut off have left behind, in every folder in which the
/// application writes.
void removeAbandonedFiles(base::FileManager& files, const platform::UserDefaults& defaults,
                          const platform::RunLoop& clock, const platform::Bundle& bundle);

}  // namespace velmora
