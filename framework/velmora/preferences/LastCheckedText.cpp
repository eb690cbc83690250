// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/preferences/LastCheckedText.h"

#include "platform/settings/UserDefaults.h"
#include "platform/text/DateFormatter.h"
#include "platform/text/Localization.h"

using velmora::platform::localizedString;

namespace velmora {

QString lastCheckedText(const QDateTime& lastCheck, const QLocale& locale) {
  if (lastCheck == platform::distantPast()) return localizedString("Preferences", "Never");
  platform::DateFormatter dateFormatter(locale);
  dateFormatter.setDateStyle(platform::DateFormatter::Style::Short);
  platform::DateFormatter timeFormatter(locale);
  timeFormatter.setTimeStyle(platform::DateFormatter::Style::Short);
  return platform::formatted(
      localizedString("Preferences", "%@ at %@"),
      {dateFormatter.stringFromDate(lastCheck), timeFormatter.stringFromDate(lastCheck)});
}

}  // namespace velmora
