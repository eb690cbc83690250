// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

class QWidget;

namespace velmora::platform {

/// The arrow keys belong to the widget while it has the keyboard, whatever button has them as its key.
void keepArrowKeys(QWidget* widget);

/// Turning the wheel over a menu or a number that does not have the keyboard scrolls past it and changes
/// nothing: a patient's data is changed on purpose or not at all.
void ignoreWheelWithoutFocus(QWidget* widget);

}  // namespace velmora::platform
