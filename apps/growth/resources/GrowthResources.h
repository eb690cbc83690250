// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>

namespace growth {

/// The folder of the application's own interface files.
QString interfaceFolder();

}  // namespace growth
