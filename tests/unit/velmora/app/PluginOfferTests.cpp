// SPDX-License-Identifier: LGPL-3.0-or-later
//
// At the start the user is offered the plugin that the application carries, when the one in OsiriX is
// another.
#include <gtest/gtest.h>

#include "testing/application/RecordApplication.h"
#include "testing/files/Files.h"
#include "testing/standins/LogRecorder.h"
#include "tests/unit/velmora/osirix/PluginTesting.h"
#include "velmora/osirix/Osirix.h"
#include "velmora/resources/Notifications.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;
using namespace velmora::testkit;

namespace settings = velmora::settings;
using plugin_testing::dictionary;
using plugin_testing::Failed;
using plugin_testing::makePlugin;
using plugin_testing::Succeeded;
using velmora::platform::AlertAlternateReturn;
using velmora::platform::AlertDefaultReturn;
using velmora::platform::AlertStopped;

namespace {

const platform::Alert Offer{"Update OsiriX Plugin", "Update", "Cancel", "",
                            "This is a recommended update of the OsiriX plugin."};

/// An application past its first run that carries version 2 of a plugin; OsiriX is there with version 1, and
/// charts go to it.
class PluginOffer : public testing::Test {
 protected:
  PluginOffer() {
    application.desktop.mainBundle =
        platform::Bundle(recorderInformation(), application.home.path("resources"));
    application.desktop.defaults.setInteger(31, settings::VersionCheckInterval);
    makePlugin(application.home.path("resources/OsiriX Plugins/Link.osirixplugin"), "2");
    makePlugin(installed(), "1");
    installOsirix();
    application.turnOn(settings::ExportToOsiriX);
  }
  QString installed() const {
    return application.home.path(plugin_testing::ViewersFolder + "/Link.osirixplugin");
  }
  void installOsirix() {
    application.desktop.workspace.applications.insert(velmora::osirix::BundleIdentifier, "/opt/osirix");
  }
  void start() { application.controller.applicationDidFinishLaunching(); }
  void startWithoutAnOffer() {
    start();
    EXPECT_TRUE(application.desktop.alerts.shown().isEmpty());
  }
  bool chartsGoToOsirix() const { return application.desktop.defaults.boolForKey(settings::ExportToOsiriX); }

  RecordApplication application;
};

}  // namespace

TEST_F(PluginOffer, InstallsOnUpdateAndIsNotMadeAgain) {
  application.desktop.alerts.expect(Offer, AlertDefaultReturn);
  application.desktop.alerts.expect(Succeeded, AlertDefaultReturn);
  start();
  EXPECT_TRUE(application.desktop.alerts.allCame());
  EXPECT_EQ(readFile(installed() + "/Contents/Info.plist"), dictionary("2"));
  EXPECT_TRUE(chartsGoToOsirix());
  start();
  EXPECT_EQ(application.desktop.alerts.shown().size(), 2);
}

TEST_F(PluginOffer, OnCancelSendsChartsToTheFolderAgainAndComesBackOnlyWithTheSetting) {
  application.desktop.alerts.expect(Offer, AlertAlternateReturn);
  start();
  EXPECT_EQ(application.desktop.defaults.stored().value(settings::ExportToOsiriX), QVariant(false));
  EXPECT_EQ(readFile(installed() + "/Contents/Info.plist"), dictionary("1"));
  start();
  EXPECT_EQ(application.desktop.alerts.shown().size(), 1);

  application.turnOn(settings::ExportToOsiriX);
  application.desktop.alerts.expect(Offer, AlertAlternateReturn);
  start();
  EXPECT_TRUE(application.desktop.alerts.allCame());
}

TEST_F(PluginOffer, IsLeftForTheNextStartWhenTheProgramEnds) {
  const QVariantMap stored = application.desktop.defaults.stored();
  application.desktop.alerts.expect(Offer, AlertStopped);
  start();
  EXPECT_EQ(application.desktop.defaults.stored(), stored);
  EXPECT_EQ(readFile(installed() + "/Contents/Info.plist"), dictionary("1"));
  EXPECT_EQ(application.controller.aboutController(), nullptr);

  application.desktop.alerts.expect(Offer, AlertAlternateReturn);
  start();
  EXPECT_TRUE(application.desktop.alerts.allCame());
}

TEST_F(PluginOffer, IsMadeWhereThePluginWasNeverInstalled) {
  ASSERT_TRUE(base::FileManager().removeItem(installed()).ok());
  application.desktop.alerts.expect(Offer, AlertDefaultReturn);
  application.desktop.alerts.expect(Succeeded, AlertDefaultReturn);
  start();
  EXPECT_TRUE(QFile::exists(installed()));
}

TEST_F(PluginOffer, IsMadeForANewerInstalledCopyToo) {
  makePlugin(installed(), "3");
  application.desktop.alerts.expect(Offer, AlertAlternateReturn);
  start();
}

TEST_F(PluginOffer, IsMadeAgainAfterAnInstallationThatFailed) {
  ASSERT_TRUE(base::FileManager().removeItem(installed()).ok());
  const QString folder = QFileInfo(installed()).path();
  ASSERT_TRUE(base::FileManager().removeItem(folder).ok());
  writeFile(folder, "in the way");
  const LogRecorder log;
  for (int i = 0; i < 2; ++i) {
    application.desktop.alerts.expect(Offer, AlertDefaultReturn);
    application.desktop.alerts.expect(Failed, AlertDefaultReturn);
    start();
    EXPECT_TRUE(chartsGoToOsirix());
  }
}

TEST_F(PluginOffer, IsNotMadeWithoutOsirix) {
  application.desktop.workspace.applications.clear();
  startWithoutAnOffer();
  EXPECT_TRUE(chartsGoToOsirix());
}

TEST_F(PluginOffer, IsNotMadeWhileChartsGoToTheFolder) {
  application.desktop.defaults.setObject(false, settings::ExportToOsiriX);
  startWithoutAnOffer();
}

TEST_F(PluginOffer, IsNotMadeForACurrentPlugin) {
  makePlugin(installed(), "2");
  startWithoutAnOffer();
}

TEST_F(PluginOffer, IsNotMadeByAnApplicationThatCarriesNone) {
  ASSERT_TRUE(base::FileManager().removeItem(application.home.path("resources/OsiriX Plugins")).ok());
  startWithoutAnOffer();
}

TEST_F(PluginOffer, LooksAtTheInstalledPluginOnlyWhenTheOtherConditionsHold) {
  writeFile(installed() + "/Contents/Info.plist", "damaged, which is logged by whoever reads it");
  const LogRecorder log;
  application.desktop.workspace.applications.clear();
  startWithoutAnOffer();
  installOsirix();
  application.desktop.defaults.setObject(false, settings::ExportToOsiriX);
  startWithoutAnOffer();
  EXPECT_EQ(log.lines(), QStringList());

  application.turnOn(settings::ExportToOsiriX);
  application.desktop.alerts.expect(Offer, AlertAlternateReturn);
  start();
  EXPECT_EQ(log.lines().size(), 1);
}

TEST_F(PluginOffer, ComesAfterTheFirstRunQuestionsAndBeforeTheSplash) {
  application.desktop.defaults.setInteger(0, settings::VersionCheckInterval);
  application.desktop.alerts.expect(
      {"Periodically check for updates?", "Check", "Don't Check", "",
       "You can change this setting later by choosing Preferences from the Recorder menu."},
      AlertAlternateReturn);
  application.desktop.alerts.expect(
      {"Set Up Database?", "Yes", "No", "",
       "Would you like to automatically configure the default database?\n\nYou can "
       "alter the default settings later in the preferences."},
      AlertAlternateReturn);
  application.desktop.alerts.expect(Offer, AlertAlternateReturn,
                                    [&] { EXPECT_EQ(application.controller.aboutController(), nullptr); });
  start();
  EXPECT_TRUE(application.desktop.alerts.allCame());
  EXPECT_NE(application.controller.aboutController(), nullptr);
}

TEST_F(PluginOffer, IsNotNeededForTheNotificationThatInstallsThePlugin) {
  application.desktop.alerts.expect(Succeeded, AlertDefaultReturn);
  application.desktop.notificationCenter.postNotificationName(velmora::notifications::InstallPlugin);
  EXPECT_EQ(readFile(installed() + "/Contents/Info.plist"), dictionary("2"));
}
