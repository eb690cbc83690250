// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include "testing/standins/TestServices.h"
#include "testing/window/UserActions.h"
#include "velmora/app/VelmoraAppController.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;

namespace settings = velmora::settings;
using velmora::testkit::MemoryUserDefaults;
using velmora::testkit::TestServices;

TEST(SettingsDefaults, AreTheEightThatTheFrameworkRegisters) {
  MemoryUserDefaults defaults;
  VelmoraAppController::initialize(defaults);

  EXPECT_EQ(defaults.objectForKey("Save Directory"), QVariant(QString("~/Desktop/")));
  EXPECT_EQ(defaults.objectForKey("Export Directory"), QVariant(QString("~/Desktop/")));
  EXPECT_EQ(defaults.objectForKey("Auto Save"), QVariant(false));
  EXPECT_EQ(defaults.objectForKey("Export to OsiriX"), QVariant(false));
  EXPECT_EQ(defaults.objectForKey("Launch Script"), QVariant(QString("")));
  EXPECT_EQ(defaults.objectForKey("Automatic Version Check"), QVariant(false));
  EXPECT_EQ(defaults.objectForKey("Version Check Interval"), QVariant(0));
  EXPECT_EQ(defaults.objectForKey("Last Version Check Date"), QVariant(platform::distantPast()));
  // What the application registers, and what the batch-export window registers when it is made.
  EXPECT_FALSE(defaults.objectForKey("DataFile Extension").isValid());
  EXPECT_FALSE(defaults.objectForKey("Batch Export Days").isValid());
  EXPECT_FALSE(defaults.objectForKey("Auto Delete").isValid());
}

TEST(SettingsDefaults, AreNeverStored) {
  MemoryUserDefaults defaults;
  VelmoraAppController::initialize(defaults);
  EXPECT_TRUE(defaults.stored().isEmpty());
}

TEST(SettingsDefaults, GiveWayToWhatIsStored) {
  MemoryUserDefaults defaults;
  defaults.setObject(true, settings::AutoSave);
  defaults.setInteger(7, settings::VersionCheckInterval);
  VelmoraAppController::initialize(defaults);
  EXPECT_TRUE(defaults.boolForKey(settings::AutoSave));
  EXPECT_EQ(defaults.integerForKey(settings::VersionCheckInterval), 7);
}

TEST(SettingsDefaults, StandFromTheMomentTheControllerIsMade) {
  TestServices desktop({});
  const VelmoraAppController controller(desktop.services);
  EXPECT_EQ(desktop.defaults.stringForKey(settings::ExportDirectory), "~/Desktop/");
}

TEST(SettingsDefaults, HaveNoIntervalOnAFirstStart) {
  MemoryUserDefaults defaults;
  VelmoraAppController::initialize(defaults);
  EXPECT_EQ(defaults.integerForKey(settings::VersionCheckInterval), 0);
}

TEST(Settings, ReadAnIntegerThatWasRegisteredAsText) {
  MemoryUserDefaults defaults;
  defaults.registerDefaults({{"Batch Export Days", QString("7")}});
  EXPECT_EQ(defaults.integerForKey("Batch Export Days"), 7);
}
