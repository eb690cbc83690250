// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/document/PrintNotice.h"

#include "base/log/AssertionFailure.h"
#include "platform/controls/Alert.h"
#include "platform/runloop/RunLoop.h"
#include "platform/settings/UserDefaults.h"
#include "platform/text/Localization.h"

using velmora::platform::localizedString;

namespace velmora {

namespace {
constexpr qint64 RecentMilliseconds = 30000;
}

PrintNotice::PrintNotice(platform::Alerts& alerts, const platform::RunLoop& clock)
    : alerts_(alerts), clock_(clock), lastPrinted_(platform::distantPast()) {}

void PrintNotice::tellIfRecentlyPrinted() {
  // A date in the future, from a clock that was set back, counts as recent.
  if (lastPrinted_.msecsTo(clock_.now()) >= RecentMilliseconds) return;
  alerts_.runModal({localizedString("VelmoraDocument", "Recently Printed"),
                    localizedString("OrvVersion", "OK"), QString(), QString(),
                    localizedString("VelmoraDocument", "This document was printed in the last 30 seconds.")});
}

void PrintNotice::notePrinted() {
  lastPrinted_ = clock_.now();
  base::requireValue(lastPrinted_.isValid(), "VelmoraDocument");
}

}  // namespace velmora
