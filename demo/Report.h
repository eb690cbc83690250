// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QFile>
#include <QString>
#include <QStringList>

#include "testing/process/Program.h"

namespace demo {

using namespace velmora::testkit;

/// Tells what happens: a line on the terminal for each step, and everything that was seen in trace.txt.
class Report {
 public:
  /// The trace begins anew in that folder.
  explicit Report(const QString& folder);

  /// A line for the trace: who says it, and what.
  void trace(const QString& who, const QString& what);
  /// The same, for those who are to write there.
  Program::Trace tracer();

  /// A step begins. What it then sees is gathered for its line.
  void begin(int number, const QString& title);
  /// Something worth telling about the step that is running.
  void saw(const QString& what);
  /// The step came out as expected: prints its line.
  void passed();
  /// The step, or what came between two steps, came out otherwise: prints it.
  void failed(const QString& why);
  /// A line for the terminal and the trace.
  void say(const QString& line);

  int number() const { return number_; }
  int stepsPassed() const { return passed_; }

 private:
  QString time() const;

  QElapsedTimer clock_;
  QFile file_;
  int number_ = 0;
  int passed_ = 0;
  QString title_;
  QStringList seen_;
};

}  // namespace demo
