// SPDX-License-Identifier: LGPL-3.0-or-later
#include "base/process/SignalHandler.h"

#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <utility>
#include <vector>

#include "base/log/Guard.h"
#include "base/log/Log.h"

namespace velmora::base {

namespace {

struct Signal {
  int number;
  bool againEndsProcess = false;
  bool evenIfIgnored = false;
};

std::vector<Signal> signalsOf(SignalHandler::Program program) {
  switch (program) {
    case SignalHandler::Program::Desktop:
      // A second SIGHUP ends nothing: it arrives twice when a terminal is closed, from the shell and from the
      // system.
      return {{.number = SIGTERM, .againEndsProcess = true}, {.number = SIGHUP}};
    case SignalHandler::Program::Service:
      return {{.number = SIGTERM, .evenIfIgnored = true}, {.number = SIGINT, .evenIfIgnored = true}};
    case SignalHandler::Program::Console:
      return {{.number = SIGTERM, .evenIfIgnored = true},
              {.number = SIGINT, .evenIfIgnored = true},
              {.number = SIGHUP, .evenIfIgnored = true}};
  }
  Q_UNREACHABLE();
}

// A handler may do next to nothing (signal-safety(7)): it writes a byte, of which the event loop hears.
int toMainThread = -1;
int fromHandler = -1;

void tellMainThread(int) noexcept {
  const int before = errno;
  const char byte = 0;
  // When it cannot be written there are bytes enough in there already.
  [[maybe_unused]] const ssize_t written = ::send(toMainThread, &byte, 1, MSG_DONTWAIT | MSG_NOSIGNAL);
  errno = before;
}

void handle(const Signal& signal) {
  struct sigaction standing {};
  if (::sigaction(signal.number, nullptr, &standing) != 0) return;
  if (standing.sa_handler == SIG_IGN && !signal.evenIfIgnored) return;
  struct sigaction action {};
  action.sa_handler = tellMainThread;
  action.sa_flags = SA_RESTART | (signal.againEndsProcess ? static_cast<int>(SA_RESETHAND) : 0);
  ::sigaction(signal.number, &action, nullptr);
}

void handleNoMore(int signal) {
  struct sigaction standing {};
  if (::sigaction(signal, nullptr, &standing) == 0 && standing.sa_handler == tellMainThread)
    ::signal(signal, SIG_DFL);
}

}  // namespace

SignalHandler::SignalHandler(Program program, std::function<void()> end)
    : program_(program), end_(std::move(end)) {
  int ends[2] = {-1, -1};
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends) != 0) {
    logLine(QStringLiteral("Signals end this program without further ado: no socket is left"));
    return;
  }
  toMainThread = ends[0];
  fromHandler = ends[1];
  notifier_ = std::make_unique<QSocketNotifier>(fromHandler, QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                   [this] { guarded("end by a signal", [this] { arrived(); }); });
  for (const Signal& signal : signalsOf(program_)) handle(signal);
}

SignalHandler::~SignalHandler() {
  if (!notifier_) return;
  for (const Signal& signal : signalsOf(program_)) handleNoMore(signal.number);
  notifier_.reset();
  ::close(std::exchange(toMainThread, -1));
  ::close(std::exchange(fromHandler, -1));
}

void SignalHandler::arrived() {
  // Once is enough.
  notifier_->setEnabled(false);
  end_();
}

}  // namespace velmora::base
