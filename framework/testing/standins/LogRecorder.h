// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QStringList>

#include "base/Export.h"

namespace velmora::testkit {

/// While one lives it keeps the log lines of the process, from any thread, in order, instead of letting them
/// out.
class VELMORA_EXPORT LogRecorder {
 public:
  LogRecorder();
  ~LogRecorder();
  LogRecorder(const LogRecorder&) = delete;
  LogRecorder& operator=(const LogRecorder&) = delete;

  QStringList lines() const;
  /// Waits until so many lines contain that; false when they do not come for long.
  bool waitFor(const QString& part, qsizetype times = 1) const;
  void clear();
};

}  // namespace velmora::testkit
