// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <ctime>

namespace testing_support {

/// While one of these lives, local time is that of another place.
class TimeZone {
 public:
  explicit TimeZone(const char* zone) : before_(qgetenv("TZ")) { set(zone); }
  ~TimeZone() { set(before_); }
  TimeZone(const TimeZone&) = delete;
  TimeZone& operator=(const TimeZone&) = delete;

 private:
  static void set(const QByteArray& zone) {
    qputenv("TZ", zone);
    tzset();
  }
  QByteArray before_;
};

}  // namespace testing_support
