// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>

namespace velmora {

/// The folder of the framework's own interface files.
QString frameworkInterfaceFolder();

}  // namespace velmora
