// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/scripts/ShellStandardError.h"

#include <fcntl.h>
#include <unistd.h>

#include <QCoreApplication>
#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

#include "base/log/Guard.h"

namespace velmora::desktop {

namespace {
constexpr qsizetype KeptAtEachEnd = 32 * 1024;
}  // namespace

ShellStandardError::ShellStandardError() {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::system_error(errno, std::generic_category(), "pipe");
  ownEnd_ = ends[0];
  scriptsEnd_ = ends[1];
  // Ours only: a script's programs do not expect an end that does not wait.
  fcntl(ownEnd_, F_SETFL, O_NONBLOCK);
  notifier_ = std::make_unique<QSocketNotifier>(ownEnd_, QSocketNotifier::Read);
  connect(notifier_.get(), &QSocketNotifier::activated, this,
          [this] { base::guarded("script", [this] { readWhatIsThere(); }); });
}

ShellStandardError::~ShellStandardError() {
  notifier_.reset();
  close(ownEnd_);
  closeScriptsEnd();
}

void ShellStandardError::closeScriptsEnd() {
  if (scriptsEnd_ >= 0) close(std::exchange(scriptsEnd_, -1));
}

QString ShellStandardError::text() {
  readWhatIsThere();
  return QString::fromUtf8(beginning_) + (cut_ ? QStringLiteral("\n[...]\n") : QString()) +
         QString::fromUtf8(end_);
}

void ShellStandardError::leaveOpen(std::unique_ptr<ShellStandardError> pipe) {
  if (!pipe->notifier_->isEnabled()) return;
  pipe->leftOpen_ = true;
  pipe->beginning_.clear();
  pipe->end_.clear();
  pipe.release()->setParent(QCoreApplication::instance());
}

void ShellStandardError::readWhatIsThere() {
  // No more than a pipe holds: whoever writes without end must not keep us here.
  std::array<char, 64 * 1024> block;
  const ssize_t length = read(ownEnd_, block.data(), block.size());
  if (length > 0) keep(QByteArray(block.data(), length));
  if (length != 0) return;
  notifier_->setEnabled(false);
  if (leftOpen_) deleteLater();
}

void ShellStandardError::keep(const QByteArray& written) {
  if (leftOpen_) return;
  const qsizetype room = std::min(KeptAtEachEnd - beginning_.size(), written.size());
  beginning_.append(written.first(room));
  end_.append(written.sliced(room));
  if (end_.size() <= KeptAtEachEnd) return;
  end_ = end_.last(KeptAtEachEnd);
  cut_ = true;
}

}  // namespace velmora::desktop
