// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QEventLoop>
#include <QObject>
#include <QProcess>
#include <QString>
#include <QTimer>
#include <chrono>
#include <memory>

namespace velmora::platform {
class RunLoop;
}

namespace velmora::desktop {

class ShellStandardError;

/// One run of a script by /bin/sh: in the user's home folder, in a process group of its own, with nothing to
/// read, and with its output dropped. Only the end of the shell itself counts; programs that it leaves behind
/// in the background go on.
///
/// Whoever runs it waits. Meanwhile windows are painted, but the user's input is held back and deferred calls
/// wait; Escape stops the script. So does a request to quit: what that asks comes as a deferred call, behind
/// the script. A dialog that opens nevertheless can be answered.
class ShellRun : public QObject {
 public:
  enum class End { Well, Status, Signal, NotStarted, Stopped };

  /// A script that runs for longer than `untilLogged` is noted in the log; one that is stopped, and does not
  /// end within `untilKilled`, is killed.
  ShellRun(platform::RunLoop& runLoop, std::chrono::milliseconds untilLogged,
           std::chrono::milliseconds untilKilled);
  /// Kills what still runs.
  ~ShellRun() override;

  /// Returns when the script has ended. When the application ends meanwhile the script is killed.
  /// Throws std::system_error when no file can be made to hold it.
  void run(const QByteArray& source);
  /// Asks the script and everything that it has started to end; asked again, kills them.
  void stop();

  End end() const { return end_; }
  /// The exit status or the signal's number.
  int number() const { return process_.exitCode(); }
  /// Why the shell could not be started.
  QString startError() const { return process_.errorString(); }
  QString standardError() const { return standardError_; }
  /// The name under which the shell knows the script.
  QString scriptName() const { return scriptName_; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool start(int scriptFile, int standardError);
  void wait();
  void killGroup(int signal) const;
  bool groupIsGone() const;
  void leaveIfOver();
  bool holdsBack(QEvent& event);

  platform::RunLoop& runLoop_;
  QProcess process_;
  QEventLoop loop_;
  QTimer untilLogged_;
  QTimer untilKilled_;
  QTimer untilGone_;
  qint64 group_ = 0;
  bool stopping_ = false;
  bool killed_ = false;
  End end_ = End::NotStarted;
  QString standardError_;
  QString scriptName_;
};

}  // namespace velmora::desktop
