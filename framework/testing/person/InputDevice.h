// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QJsonObject>
#include <QString>

#include "testing/person/SeenWindow.h"

namespace velmora::testkit {

/// A keyboard and a mouse: how a person's clicks and keys get into a program. Every operation throws Differs
/// when it cannot be done.
class InputDevice {
 public:
  virtual ~InputDevice() = default;

  /// Clicks what the target names in that window, as the probe understands it: {"button": "OK"}.
  virtual void click(const SeenWindow& window, QJsonObject target) = 0;
  /// Strokes keys, as QKeySequence names them: "Tab", "Ctrl+A".
  virtual void key(const QString& keys) = 0;
  /// Strokes a key for each character.
  virtual void type(const QString& text) = 0;
};

}  // namespace velmora::testkit
