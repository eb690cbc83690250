// SPDX-License-Identifier: LGPL-3.0-or-later
#include "tests/robustness/link/WeatherProgram.h"

namespace link_testing {
namespace {

QProcessEnvironment withoutScreen(QProcessEnvironment environment) {
  environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
  return environment;
}

QProcessEnvironment at(const QTemporaryDir& home, const QString& bundle, QProcessEnvironment environment) {
  environment.insert(QStringLiteral("HOME"), home.path());
  environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home.filePath(QStringLiteral(".config")));
  environment.insert(QStringLiteral("XDG_DATA_HOME"), home.filePath(QStringLiteral(".local/share")));
  environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), home.path());
  environment.insert(QStringLiteral("WEATHER_BUNDLE"), bundle);
  return environment;
}

}  // namespace

WeatherProgram::WeatherProgram(const velmora::testkit::PrivateBus& bus, const QString& bundle)
    : WeatherProgram(withoutScreen(bus.environment()), bundle) {}

WeatherProgram::WeatherProgram(const QProcessEnvironment& environment, const QString& bundle)
    : bundle_(bundle), program_(QStringLiteral(WEATHER_APPLICATION), at(home_, bundle, environment)) {
  program_.start();
  waitFor(QStringLiteral("ready"));
}

void WeatherProgram::waitFor(const QString& line) {
  while (program_.readLine() != line) continue;
}

QStringList WeatherProgram::said() const {
  QStringList lines;
  for (const velmora::testkit::Program::Line& line : program_.lines()) lines.append(line.text);
  return lines;
}

qint64 WeatherProgram::memory() {
  program_.tell("memory");
  return program_.readLineWith(QStringLiteral("memory ")).mid(7).toLongLong();
}

int WeatherProgram::quit() {
  program_.tell("quit");
  return program_.finish();
}

}  // namespace link_testing
