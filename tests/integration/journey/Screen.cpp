// SPDX-License-Identifier: LGPL-3.0-or-later
#include "tests/integration/journey/Screen.h"

#include <QProcess>
#include <QStandardPaths>

#include "testing/waiting/Waiting.h"

using velmora::testkit::Differs;

namespace journey {

Screen::Screen(const QProcessEnvironment& environment)
    : environment_(environment), program_(QStandardPaths::findExecutable("xdotool")) {
  if (program_.isEmpty()) throw Differs("the program xdotool on this machine", "none");
}

void Screen::run(const QStringList& arguments) {
  QProcess process;
  process.setProcessEnvironment(environment_);
  process.setProcessChannelMode(QProcess::MergedChannels);
  process.start(program_, arguments);
  const bool ended = process.waitForFinished(static_cast<int>(Patience * 1000));
  if (!ended || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
    throw Differs("xdotool " + arguments.join(' '), QString::fromUtf8(process.readAll()));
}

void Screen::key(const QString& keys) { run({"key", keys}); }

void Screen::type(const QString& text) { run({"type", "--delay", "1", text}); }

void Screen::click(const QPoint& at) {
  run({"mousemove", QString::number(at.x()), QString::number(at.y()), "click", "1"});
}

}  // namespace journey
