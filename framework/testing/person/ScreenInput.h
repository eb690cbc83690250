// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QProcessEnvironment>
#include <QStringList>

#include "testing/person/InputDevice.h"
#include "testing/person/ProbeClient.h"

namespace velmora::testkit {

/// The keyboard and the pointer of a virtual screen: what is pressed here reaches the program through the
/// window system, whose focus and stacking decide who gets it. The probe only tells where things are.
class ScreenInput : public InputDevice {
 public:
  /// `environment` names the screen.
  ScreenInput(ProbeClient& probe, const QProcessEnvironment& environment)
      : probe_(probe), environment_(environment) {}

  /// Waits for the target to be where a click reaches it: a window that has just come may lie under another
  /// yet.
  void click(const SeenWindow& window, QJsonObject target) override;
  void key(const QString& keys) override;
  /// Types what is on a keyboard of the United States.
  void type(const QString& text) override;

 private:
  void run(const QStringList& arguments);

  ProbeClient& probe_;
  QProcessEnvironment environment_;
};

}  // namespace velmora::testkit
