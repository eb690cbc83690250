// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QSocketNotifier>
#include <array>
#include <functional>
#include <memory>
#include <stdexcept>
#include <utility>

#include "base/Export.h"

namespace velmora::testkit {

/// A named pipe between a test and a script, which waits at it or speaks through it.
class VELMORA_EXPORT Fifo {
 public:
  explicit Fifo(const QString& path) {
    const QByteArray name = QFile::encodeName(path);
    // Open for both, so that neither side waits for the other to open it.
    if (mkfifo(name.constData(), 0600) != 0) throw std::runtime_error("no named pipe");
    descriptor_ = open(name.constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (descriptor_ < 0) throw std::runtime_error("named pipe cannot be opened");
  }
  ~Fifo() {
    notifier_.reset();
    close(descriptor_);
  }
  Fifo(const Fifo&) = delete;
  Fifo& operator=(const Fifo&) = delete;

  /// Lets one `read` of the script go on.
  void writeLine() const {
    if (write(descriptor_, "\n", 1) != 1) throw std::runtime_error("named pipe cannot be written");
  }
  /// What the script has written since the last call.
  QByteArray takeText() const {
    std::array<char, 4096> block;
    const ssize_t length = read(descriptor_, block.data(), block.size());
    return length > 0 ? QByteArray(block.data(), length) : QByteArray();
  }
  /// Calls `then`, once, as soon as the script has written something.
  void whenWritten(std::function<void(const QByteArray& text)> then) {
    notifier_ = std::make_unique<QSocketNotifier>(descriptor_, QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [this, then = std::move(then)] {
                       notifier_->setEnabled(false);
                       then(takeText());
                     });
  }

 private:
  int descriptor_ = -1;
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace velmora::testkit
