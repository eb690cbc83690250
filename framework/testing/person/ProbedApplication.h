// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>
#include <memory>

#include "testing/person/PersonWithMouse.h"
#include "testing/person/ProbeClient.h"
#include "testing/person/Stage.h"
#include "testing/process/Program.h"

namespace velmora::testkit {

/// One run of the application, with the person in front of it. The probe comes to it from its environment;
/// the program itself is the one that is shipped.
class ProbedApplication {
 public:
  /// Starts the program, and returns when the probe in it answers.
  ProbedApplication(const Program::Trace& trace, const Stage& stage, const QString& program);

  Program& process() { return process_; }
  ProbeClient& probe() { return *probe_; }
  /// Points with the mouse, through the probe.
  PersonWithMouse& person() { return *person_; }

  /// The document window that is in front, or the only one; waits for it.
  SeenWindow document(std::optional<double> seconds = {});
  /// The document window once it is as `holds` says; `what` names that.
  SeenWindow document(const QString& what, const std::function<bool(const SeenWindow&)>& holds,
                      std::optional<double> seconds = {});
  /// Waits for it to end by itself with exit code 0.
  void waitForGoodEnd(double seconds);
  /// Waits for the status line to show that text.
  void waitForStatus(const QString& text, double seconds);

 private:
  Program process_;
  std::unique_ptr<ProbeClient> probe_;
  std::unique_ptr<PersonWithMouse> person_;
};

}  // namespace velmora::testkit
