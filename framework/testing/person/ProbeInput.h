// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include "testing/person/InputDevice.h"
#include "testing/person/ProbeClient.h"

namespace velmora::testkit {

/// Lets the probe click and type inside the program: quick, and on any screen.
class ProbeInput : public InputDevice {
 public:
  explicit ProbeInput(ProbeClient& probe) : probe_(probe) {}

  void click(const SeenWindow& window, QJsonObject target) override;
  void key(const QString& keys) override { probe_.must("to press " + keys, {{"do", "key"}, {"key", keys}}); }
  void type(const QString& text) override { probe_.must("to type", {{"do", "type"}, {"text", text}}); }

 private:
  ProbeClient& probe_;
};

}  // namespace velmora::testkit
