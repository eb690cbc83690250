// SPDX-License-Identifier: LGPL-3.0-or-later
#include "testing/process/Program.h"

#include <sys/prctl.h>
#include <csignal>

namespace velmora::testkit {

namespace {
constexpr int Patience = 60000;  // milliseconds; reached only when something is broken
}

Program::Program(const QString& path, const QProcessEnvironment& environment) : path_(path) {
  process_.setProcessEnvironment(environment);
  process_.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
}

void Program::start(const QStringList& arguments) {
  process_.start(path_, arguments);
  process_.waitForStarted(Patience);
}

void Program::tell(const QByteArray& line) {
  process_.write(line + '\n');
  process_.waitForBytesWritten(Patience);
}

QString Program::readLine() {
  while (!process_.canReadLine()) {
    if (!process_.waitForReadyRead(Patience)) return QString();
  }
  lines_.append(QString::fromUtf8(process_.readLine()).chopped(1));
  return lines_.last();
}

QString Program::readLineWith(const QString& beginning) {
  for (;;) {
    const QString line = readLine();
    if (line.isNull() || line.startsWith(beginning)) return line;
  }
}

bool Program::waitForError(const QString& part) {
  process_.setReadChannel(QProcess::StandardError);
  bool more = true;
  while (more && !errors().contains(part)) more = process_.waitForReadyRead(Patience);
  process_.setReadChannel(QProcess::StandardOutput);
  return more;
}

int Program::run(const QStringList& arguments) {
  start(arguments);
  return finish();
}

int Program::finish() {
  const bool ended = !running() || process_.waitForFinished(Patience);
  const QByteArray rest = process_.readAllStandardOutput();
  output_ += rest;
  // A line without an end was cut off.
  const qsizetype end = rest.lastIndexOf('\n');
  if (end >= 0) lines_ += QString::fromUtf8(rest.left(end)).split(QLatin1Char('\n'));
  errors();
  return ended && process_.exitStatus() == QProcess::NormalExit ? process_.exitCode() : -1;
}

int Program::terminate() {
  process_.terminate();
  return finish();
}

void Program::kill() {
  if (!running()) return;
  process_.kill();
  finish();
}

QString Program::errors() {
  errors_ += process_.readAllStandardError();
  return QString::fromUtf8(errors_);
}

}  // namespace velmora::testkit
