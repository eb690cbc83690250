// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include "base/Export.h"

namespace velmora::desktop {

/// Keeps a session bus that accepts and does not answer from holding up the program. Called once, first thing
/// in `main`, before the QApplication is made:
///
///     int main(int argc, char** argv) {
///       desktop::prepareSessionBus();
///       QApplication application(argc, argv);
///
/// Qt itself goes to the session bus when an application starts (for assistive technology, among others), on
/// the main thread and without a limit of its own. So the bus is asked for a greeting before, for two seconds
/// at most. If there is none, Qt does without a session bus for as long as the program runs. The link to the
/// viewer, which waits for nobody, goes on looking for the bus and finds it when it wakes.
VELMORA_EXPORT void prepareSessionBus();

}  // namespace velmora::desktop
