// SPDX-License-Identifier: LGPL-3.0-or-later
#include "testing/process/Program.h"

#include <sys/prctl.h>
#include <unistd.h>
#include <csignal>

#include <QFileInfo>
#include <utility>

#include "testing/waiting/SteadyClock.h"

namespace velmora::testkit {

namespace {
constexpr int Limit = static_cast<int>(1000 * Patience.count());  // milliseconds
}

Program::Program(const QString& path, const QProcessEnvironment& environment)
    : name_(QFileInfo(path).fileName()), path_(path) {
  process_.setProcessEnvironment(environment);
  process_.setWorkingDirectory(environment.value(QStringLiteral("HOME"), QStringLiteral("/")));
  // A signal typed at the terminal reaches a whole group: programs are ended here, in order, not by it.
  process_.setChildProcessModifier([] {
    ::setpgid(0, 0);
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  });
  QObject::connect(&process_, &QProcess::readyReadStandardOutput, &process_, [this] { read(); });
  QObject::connect(&process_, &QProcess::readyReadStandardError, &process_, [this] { read(); });
  QObject::connect(&process_, &QProcess::finished, &process_, [this] {
    read();
    note('(' + ending() + ')');
  });
}

Program::Program(const QString& name, const QString& path, const QProcessEnvironment& environment,
                 Trace trace)
    : Program(path, environment) {
  name_ = name;
  trace_ = std::move(trace);
  process_.setProcessChannelMode(QProcess::MergedChannels);
}

void Program::start(const QStringList& arguments) {
  note("$ " + path_ + ' ' + arguments.join(' '));
  process_.start(path_, arguments);
  if (!process_.waitForStarted(Limit)) throw Differs(path_ + " to start", process_.errorString());
}

void Program::tell(const QByteArray& line) {
  process_.write(line + '\n');
  process_.waitForBytesWritten(Limit);
}

QString Program::readLine(double seconds) {
  const auto unread = [this] { return next_ < lines_.size(); };
  waitUntil(seconds, [&] { return unread() || !running(); });
  if (!unread()) failWithout(QStringLiteral("another line"), seconds);
  return lines_[next_++].text;
}

QString Program::readLineWith(const QString& beginning) {
  for (;;) {
    const QString line = readLine();
    if (line.startsWith(beginning)) return line;
  }
}

Program::Line Program::waitForLine(const QString& part, double seconds, qsizetype from) {
  const auto found = [&] {
    while (from < lines_.size() && !lines_[from].text.contains(part)) ++from;
    return from < lines_.size();
  };
  waitUntil(seconds, [&] { return found() || !running(); });
  if (!found()) failWithout("a line with \"" + part + '"', seconds);
  return lines_[from];
}

void Program::waitForError(const QString& part) {
  const auto found = [&] { return errors().contains(part); };
  waitUntil(Patience.count(), [&] { return found() || !running(); });
  if (!found()) failWithout("the error \"" + part + '"', Patience.count());
}

QString Program::output() const {
  QString unread;
  for (qsizetype i = next_; i < lines_.size(); ++i) unread += lines_[i].text + '\n';
  return unread + QString::fromUtf8(partial_);
}

int Program::run(const QStringList& arguments) {
  start(arguments);
  return finish();
}

int Program::finish(double seconds) {
  waitUntil(seconds, [this] { return !running(); });
  return exitCode();
}

int Program::terminate() {
  process_.terminate();
  if (running() && !process_.waitForFinished(Limit)) kill();
  return exitCode();
}

void Program::kill() {
  process_.kill();
  if (running()) process_.waitForFinished(Limit);
}

QString Program::ending() const {
  if (running()) return QStringLiteral("it runs on");
  if (process_.exitStatus() == QProcess::CrashExit)
    return QStringLiteral("ended by signal %1").arg(process_.exitCode());
  return QStringLiteral("ended with exit code %1").arg(process_.exitCode());
}

int Program::exitCode() const {
  return !running() && process_.exitStatus() == QProcess::NormalExit ? process_.exitCode() : -1;
}

void Program::read() {
  if (process_.processChannelMode() == QProcess::SeparateChannels) errors_ += process_.readAllStandardError();
  partial_ += process_.readAllStandardOutput();
  for (qsizetype end = partial_.indexOf('\n'); end >= 0; end = partial_.indexOf('\n')) {
    lines_.append({QString::fromUtf8(partial_.left(end)), steadyMilliseconds()});
    partial_.remove(0, end + 1);
    note(lines_.last().text);
  }
}

void Program::note(const QString& what) const {
  if (trace_) trace_(name_, what);
}

void Program::failWithout(const QString& wanted, double seconds) const {
  const QString said =
      lines_.isEmpty() ? QStringLiteral("no line at all") : "last line \"" + lines_.last().text + '"';
  throw Differs(QStringLiteral("%1 from %2 within %3 s").arg(wanted, name_).arg(seconds),
                QStringLiteral("%1, %2 %3").arg(said, ending(), errors()));
}

}  // namespace velmora::testkit
