// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <ctime>

#include "base/Export.h"

namespace velmora::testkit {

/// While one lives, a variable of the environment has another value. With TZ, local time is that of another
/// place.
class VELMORA_EXPORT EnvironmentVariable {
 public:
  EnvironmentVariable(const char* name, const QByteArray& value)
      : name_(name), wasSet_(qEnvironmentVariableIsSet(name)), before_(qgetenv(name)) {
    qputenv(name_, value);
    tzset();
  }
  ~EnvironmentVariable() {
    if (wasSet_) {
      qputenv(name_, before_);
    } else {
      qunsetenv(name_);
    }
    tzset();
  }
  EnvironmentVariable(const EnvironmentVariable&) = delete;
  EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

 private:
  const char* name_;
  bool wasSet_;
  QByteArray before_;
};

}  // namespace velmora::testkit
