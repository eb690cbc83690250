// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include "base/Export.h"

class QWidget;

/// Event filters that change how a widget takes the keyboard and the wheel. Each lives as long as its widget;
/// no widget is no error.
namespace velmora::platform {

/// Gives the arrow keys to the widget while it has the keyboard, even where they are a button's shortcut.
VELMORA_EXPORT void keepArrowKeys(QWidget* widget);

/// Lets the wheel scroll past a menu or a number that does not have the keyboard, so that a patient's data is
/// never changed by accident.
VELMORA_EXPORT void ignoreWheelWithoutFocus(QWidget* widget);

}  // namespace velmora::platform
