// SPDX-License-Identifier: LGPL-3.0-or-later
#include "tests/robustness/link/WeatherProgram.h"

#include <QDir>
#include <stdexcept>

namespace link_testing {
namespace {
constexpr int Patience = 60000;  // milliseconds; reached only when something is broken

QProcessEnvironment withoutScreen(QProcessEnvironment environment) {
  environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
  return environment;
}
}  // namespace

WeatherProgram::WeatherProgram(const testing_support::PrivateBus& bus, const QString& bundle)
    : WeatherProgram(withoutScreen(bus.environment()), bundle) {}

WeatherProgram::WeatherProgram(QProcessEnvironment environment, const QString& bundle) : bundle_(bundle) {
  environment.insert(QStringLiteral("HOME"), home_.path());
  environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home_.filePath(QStringLiteral(".config")));
  environment.insert(QStringLiteral("XDG_DATA_HOME"), home_.filePath(QStringLiteral(".local/share")));
  environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), home_.path());
  environment.insert(QStringLiteral("WEATHER_BUNDLE"), bundle);
  process_.setProcessEnvironment(environment);
  process_.start(QStringLiteral(WEATHER_APPLICATION), QStringList());
  if (!waitFor(QStringLiteral("ready")))
    throw std::runtime_error("the application does not start: " + log_.toStdString());
}

WeatherProgram::~WeatherProgram() {
  if (!runs()) return;
  process_.kill();
  process_.waitForFinished();
}

void WeatherProgram::order(const QByteArray& line) {
  process_.write(line + '\n');
  process_.waitForBytesWritten(Patience);
}

bool WeatherProgram::readLine() {
  while (!process_.canReadLine()) {
    if (!process_.waitForReadyRead(Patience)) return false;
  }
  said_.append(QString::fromUtf8(process_.readLine()).chopped(1));
  return true;
}

bool WeatherProgram::waitFor(const QString& line) {
  while (readLine()) {
    if (said_.last() == line) return true;
  }
  log();
  return false;
}

qint64 WeatherProgram::memory() {
  order("memory");
  while (readLine()) {
    if (said_.last().startsWith(QStringLiteral("memory "))) return said_.last().mid(7).toLongLong();
  }
  return -1;
}

int WeatherProgram::quit() {
  order("quit");
  if (!process_.waitForFinished(Patience)) return -1;
  log();
  return process_.exitStatus() == QProcess::NormalExit ? process_.exitCode() : -1;
}

bool WeatherProgram::waitForLog(const QString& part) {
  process_.setReadChannel(QProcess::StandardError);
  bool more = true;
  while (more && log().filter(part).isEmpty()) more = process_.waitForReadyRead(Patience);
  process_.setReadChannel(QProcess::StandardOutput);
  return more;
}

QStringList WeatherProgram::log() {
  log_ += process_.readAllStandardError();
  return QString::fromUtf8(log_).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

}  // namespace link_testing
