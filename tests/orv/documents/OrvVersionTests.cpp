// SPDX-License-Identifier: LGPL-3.0-or-later
#include "orv/OrvVersion.h"

#include <gtest/gtest.h>

#include <memory>

#include "platform/testing/TestServices.h"
#include "tests/platform/Shown.h"

namespace {

class VersionCheck : public testing::Test {
 protected:
  VersionCheck() {
    for (const char* name : {"VersionCheckSuccessful", "VersionCheckUnsuccessful"}) {
      desktop.notificationCenter.addObserver(
          &observer, name,
          [this](const platform::Notification& notification) { heard.append(notification.name); });
    }
  }

  platform::testing::TestServices desktop{{{"CFBundleName", "Growth"}}};
  QObject observer;
  QStringList heard;
};

TEST_F(VersionCheck, KnowsTheApplicationsName) {
  EXPECT_EQ(OrvVersion(desktop.services).applicationName(), "Growth");
}

TEST_F(VersionCheck, EndsUnsuccessfullyWhereTheApplicationNamesNoPlaceToAskAndNeverBeforeTheCallReturns) {
  OrvVersion version(desktop.services);
  for (const bool userAsked : {false, true}) {
    heard.clear();
    version.checkVersion(userAsked);
    EXPECT_TRUE(heard.isEmpty());
    desktop.runLoop.settle();
    EXPECT_EQ(heard, QStringList{"VersionCheckUnsuccessful"});
  }
  EXPECT_TRUE(desktop.alerts.shown().isEmpty());
}

TEST_F(VersionCheck, EndsOnceForEachTimeItWasAskedFor) {
  OrvVersion version(desktop.services);
  version.checkVersion(false);
  version.checkVersion(true);
  desktop.runLoop.advance(60);
  EXPECT_EQ(heard.size(), 2);
}

TEST_F(VersionCheck, EndsWithItsOwner) {
  auto version = std::make_unique<OrvVersion>(desktop.services);
  version->checkVersion(false);
  version.reset();
  desktop.runLoop.settle();
  EXPECT_TRUE(heard.isEmpty());
}

}  // namespace
