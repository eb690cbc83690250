// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <sys/resource.h>
#include <csignal>

#include "base/Export.h"

namespace velmora::testkit {

/// While one lives no file of this process grows beyond `bytes`: writes fall short and fail in the middle, as
/// on a disk that fills. It holds for the superuser too, whom no permission stops.
class VELMORA_EXPORT FullDisk {
 public:
  explicit FullDisk(rlim_t bytes) : handlerBefore_(std::signal(SIGXFSZ, SIG_IGN)) {
    ::getrlimit(RLIMIT_FSIZE, &before_);
    rlimit full = before_;
    full.rlim_cur = bytes;
    ::setrlimit(RLIMIT_FSIZE, &full);
  }
  ~FullDisk() {
    ::setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handlerBefore_);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;

 private:
  rlimit before_{};
  void (*handlerBefore_)(int);
};

}  // namespace velmora::testkit
