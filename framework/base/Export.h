// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

/// Marks what a library of the framework shows to others. All else is hidden, but for the tests, which look
/// inside.
#define VELMORA_EXPORT __attribute__((visibility("default")))
