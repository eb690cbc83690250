// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QTemporaryDir>

#include "testing/bus/PrivateBus.h"
#include "testing/process/Program.h"

namespace link_testing {

/// The sample application as a process of its own, with a home folder of its own, on a private bus.
class WeatherProgram {
 public:
  /// Runs under the name of `bundle` ("weather-one", "weather-two"); up and listening when this returns.
  explicit WeatherProgram(const velmora::testkit::PrivateBus& bus,
                          const QString& bundle = QStringLiteral("weather-one"));
  /// The same in an environment that says where screen and bus are.
  explicit WeatherProgram(const QProcessEnvironment& environment,
                          const QString& bundle = QStringLiteral("weather-one"));

  QString linkName() const { return QStringLiteral("org.velmora.%1.osirixLink").arg(bundle_); }

  void order(const QByteArray& line) { program_.tell(line); }
  /// Reads what the program says up to this line.
  void waitFor(const QString& line);
  /// Every line that the program has said so far.
  QStringList said() const;
  /// Bytes of memory that it holds.
  qint64 memory();
  bool runs() const { return program_.running(); }
  /// Ends it; its exit code, -1 when it did not end well.
  int quit();
  /// Waits until a log line contains this.
  void waitForLog(const QString& part) { program_.waitForError(part); }
  /// Its log lines so far.
  QStringList log() const { return program_.errors().split(QLatin1Char('\n'), Qt::SkipEmptyParts); }

 private:
  QString bundle_;
  QTemporaryDir home_;
  velmora::testkit::Program program_;
};

}  // namespace link_testing
