// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/scripts/ShellRun.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <QApplication>
#include <QDir>
#include <QKeyEvent>
#include <QWidget>
#include <cerrno>
#include <csignal>
#include <system_error>

#include "base/log/Guard.h"
#include "base/log/Log.h"
#include "desktop/alerts/BusyPointer.h"
#include "desktop/scripts/ShellStandardError.h"
#include "platform/runloop/RunLoop.h"

namespace velmora::desktop {

namespace {

/// How often it is looked whether a script that was told to end is gone with all that it started.
constexpr std::chrono::milliseconds GonePeriod{20};

/// The source as a file that only this process and the script can open, and that is gone with them: nothing
/// is left behind on a disk. Programs do not inherit it by themselves.
class SourceFile {
 public:
  explicit SourceFile(const QByteArray& source) : file_(memfd_create("script", MFD_CLOEXEC)) {
    if (file_ < 0) throw std::system_error(errno, std::generic_category(), "memfd_create");
    const char* next = source.constData();
    for (qsizetype left = source.size(); left > 0;) {
      const ssize_t written = write(file_, next, static_cast<std::size_t>(left));
      if (written < 0) {
        const int reason = errno;
        close(file_);
        throw std::system_error(reason, std::generic_category(), "script");
      }
      next += written;
      left -= written;
    }
  }
  ~SourceFile() { close(file_); }
  SourceFile(const SourceFile&) = delete;
  SourceFile& operator=(const SourceFile&) = delete;

  int descriptor() const { return file_; }

 private:
  int file_;
};

bool isUsersInput(const QEvent& event) {
  switch (event.type()) {
    // These are sent by Qt itself, in answer to a key.
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
      return true;
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::InputMethod:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::NativeGesture:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
    case QEvent::Close:
      return event.spontaneous();
    default:
      return false;
  }
}

bool dialogIsOpen() {
  const QWidget* dialog = QApplication::activeModalWidget();
  return dialog && dialog->windowModality() == Qt::ApplicationModal;
}

}  // namespace

ShellRun::ShellRun(platform::RunLoop& runLoop, std::chrono::milliseconds untilLogged,
                   std::chrono::milliseconds untilKilled)
    : runLoop_(runLoop) {
  untilLogged_.setSingleShot(true);
  untilLogged_.setInterval(untilLogged);
  connect(&untilLogged_, &QTimer::timeout, this, [this] {
    base::guarded("script", [this] {
      const double seconds = static_cast<double>(untilLogged_.interval()) / 1000;
      base::logLine(QStringLiteral("A script has been running for %1 s; Escape stops it.").arg(seconds));
    });
  });
  untilKilled_.setSingleShot(true);
  untilKilled_.setInterval(untilKilled);
  connect(&untilKilled_, &QTimer::timeout, this, [this] { base::guarded("script", [this] { stop(); }); });
  untilGone_.setInterval(GonePeriod);
  connect(&untilGone_, &QTimer::timeout, this,
          [this] { base::guarded("script", [this] { leaveIfOver(); }); });
  connect(&process_, &QProcess::finished, this,
          [this] { base::guarded("script", [this] { leaveIfOver(); }); });
}

ShellRun::~ShellRun() {
  if (process_.state() == QProcess::NotRunning) return;
  killGroup(SIGKILL);
  process_.waitForFinished();
}

void ShellRun::run(const QByteArray& source) {
  const SourceFile script(source);
  auto standardError = std::make_unique<ShellStandardError>();
  if (!start(script.descriptor(), standardError->scriptsEnd())) return;
  standardError->closeScriptsEnd();
  {
    const platform::RunLoop::ModalSession session(runLoop_);
    const BusyPointer busy;
    wait();
  }
  if (stopping_)
    end_ = End::Stopped;
  else if (process_.exitStatus() == QProcess::CrashExit)
    end_ = End::Signal;
  else
    end_ = process_.exitCode() == 0 ? End::Well : End::Status;
  standardError_ = standardError->text();
  ShellStandardError::leaveOpen(std::move(standardError));
}

bool ShellRun::start(int scriptFile, int standardError) {
  scriptName_ = QStringLiteral("/proc/self/fd/%1").arg(scriptFile);
  process_.setProgram(QStringLiteral("/bin/sh"));
  process_.setArguments({scriptName_});
  process_.setWorkingDirectory(QDir::homePath());
  process_.setStandardInputFile(QProcess::nullDevice());
  process_.setStandardOutputFile(QProcess::nullDevice());
  process_.setStandardErrorFile(QProcess::nullDevice());
  process_.setChildProcessModifier([scriptFile, standardError] {
    setpgid(0, 0);
    // If this process is ended from outside, so is the script.
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    fcntl(scriptFile, F_SETFD, 0);
    dup2(standardError, STDERR_FILENO);
  });
  process_.start();
  if (!process_.waitForStarted()) return false;
  group_ = process_.processId();
  return true;
}

void ShellRun::wait() {
  untilLogged_.start();
  QCoreApplication::instance()->installEventFilter(this);
  if (process_.state() != QProcess::NotRunning) loop_.exec();
  QCoreApplication::instance()->removeEventFilter(this);
  untilLogged_.stop();
  untilKilled_.stop();
  untilGone_.stop();
  // When the application ends, the loop ends with it.
  if (process_.state() != QProcess::NotRunning) stopping_ = true;
  if (!stopping_) return;
  killGroup(SIGKILL);
  process_.waitForFinished();
}

void ShellRun::stop() {
  if (group_ <= 0) return;
  killed_ = stopping_;
  stopping_ = true;
  killGroup(killed_ ? SIGKILL : SIGTERM);
  if (killed_) {
    leaveIfOver();
    return;
  }
  untilKilled_.start();
  untilGone_.start();
}

void ShellRun::killGroup(int signal) const {
  if (group_ > 0) kill(static_cast<pid_t>(-group_), signal);
}

bool ShellRun::groupIsGone() const { return kill(static_cast<pid_t>(-group_), 0) != 0 && errno == ESRCH; }

void ShellRun::leaveIfOver() {
  if (process_.state() != QProcess::NotRunning) return;
  // Who stops a script means all that it has started.
  if (!stopping_ || killed_ || groupIsGone()) loop_.quit();
}

bool ShellRun::eventFilter(QObject*, QEvent* event) {
  bool heldBack = false;
  base::guarded("script", [&] { heldBack = holdsBack(*event); });
  return heldBack;
}

bool ShellRun::holdsBack(QEvent& event) {
  if (!isUsersInput(event) || dialogIsOpen()) return false;
  if (event.type() == QEvent::KeyPress) {
    const auto& key = static_cast<const QKeyEvent&>(event);
    if (key.key() == Qt::Key_Escape && !key.isAutoRepeat()) stop();
  }
  // Who overrides a shortcut takes it; a window that is not to be closed says so.
  if (event.type() == QEvent::ShortcutOverride) event.accept();
  if (event.type() == QEvent::Close) event.ignore();
  return true;
}

}  // namespace velmora::desktop
