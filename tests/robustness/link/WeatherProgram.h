// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>
#include <QTemporaryDir>

#include "tests/support/PrivateBus.h"

namespace link_testing {

/// The sample application as a process of its own, with a home folder of its own, on a private bus.
class WeatherProgram {
 public:
  /// Runs under the name of `bundle` ("weather-one", "weather-two"); up and listening when this returns.
  explicit WeatherProgram(const testing_support::PrivateBus& bus,
                          const QString& bundle = QStringLiteral("weather-one"));
  /// The same in an environment that says where screen and bus are.
  explicit WeatherProgram(QProcessEnvironment environment,
                          const QString& bundle = QStringLiteral("weather-one"));
  ~WeatherProgram();
  WeatherProgram(const WeatherProgram&) = delete;
  WeatherProgram& operator=(const WeatherProgram&) = delete;

  QString linkName() const { return QStringLiteral("org.velmora.%1.osirixLink").arg(bundle_); }

  void order(const QByteArray& line);
  /// Reads what the program says up to this line; false when it ends, or says nothing for long.
  bool waitFor(const QString& line);
  /// Every line that waitFor() has read.
  const QStringList& said() const { return said_; }
  /// Bytes of memory that it holds.
  qint64 memory();
  bool runs() const { return process_.state() == QProcess::Running; }
  /// Ends it; its exit code, -1 when it did not end well.
  int quit();
  /// Waits until a log line contains this; false when it ends, or logs nothing for long.
  bool waitForLog(const QString& part);
  /// Its log lines so far.
  QStringList log();

 private:
  bool readLine();

  QString bundle_;
  QTemporaryDir home_;
  QProcess process_;
  QStringList said_;
  QByteArray log_;
};

}  // namespace link_testing
