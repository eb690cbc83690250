// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QTimer>

#include "desktop/alerts/QtAlerts.h"
#include "testing/application/RecordApplication.h"
#include "testing/files/Files.h"
#include "velmora/about/AboutController.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;
using namespace velmora::testkit;

namespace settings = velmora::settings;
using velmora::platform::AlertAlternateReturn;
using velmora::platform::AlertDefaultReturn;
using velmora::platform::AlertStopped;

namespace {

const platform::Alert checkQuestion{
    "Periodically check for updates?", "Check", "Don't Check", "",
    "You can change this setting later by choosing Preferences from the Recorder menu."};
const platform::Alert setUpQuestion{"Set Up Database?", "Yes", "No", "",
                                    "Would you like to automatically configure the default database?\n\nYou "
                                    "can alter the default settings later "
                                    "in the preferences."};

}  // namespace

TEST(FirstRun, AsksAboutUpdatesFirstAndThenAboutTheDatabase) {
  RecordApplication application;
  application.desktop.alerts.expect(checkQuestion, AlertAlternateReturn);
  application.desktop.alerts.expect(setUpQuestion, AlertAlternateReturn);
  application.controller.applicationDidFinishLaunching();
  EXPECT_TRUE(application.desktop.alerts.allCame());
}

TEST(FirstRun, AsksNothingWhenAnIntervalIsStoredAndNothingElse) {
  RecordApplication application;
  application.desktop.defaults.setInteger(1, settings::VersionCheckInterval);
  application.controller.applicationDidFinishLaunching();
  EXPECT_TRUE(application.desktop.alerts.shown().isEmpty());
}

TEST(FirstRun, IsOverWhateverTheAnswersAndIsNotRepeated) {
  RecordApplication application;
  application.desktop.alerts.expect(checkQuestion, AlertAlternateReturn);
  application.desktop.alerts.expect(setUpQuestion, AlertAlternateReturn);
  application.controller.applicationDidFinishLaunching();

  EXPECT_EQ(application.desktop.defaults.stored().keys(), QStringList{settings::VersionCheckInterval});
  EXPECT_EQ(application.desktop.defaults.integerForKey(settings::VersionCheckInterval), 31);
  EXPECT_FALSE(application.desktop.defaults.boolForKey(settings::AutomaticVersionCheck));
  EXPECT_FALSE(QFile::exists(application.home.path("Documents")));

  application.controller.applicationDidFinishLaunching();
  EXPECT_EQ(application.desktop.alerts.shown().size(), 2);
}

TEST(FirstRun, StoresTheIntervalBeforeTheSecondQuestion) {
  RecordApplication application;
  application.desktop.alerts.expect(checkQuestion, AlertAlternateReturn);
  application.desktop.alerts.expect(setUpQuestion, AlertAlternateReturn, [&] {
    EXPECT_EQ(application.desktop.defaults.integerForKey(settings::VersionCheckInterval), 31);
  });
  application.controller.applicationDidFinishLaunching();
}

TEST(FirstRun, StoresThatUpdatesAreToBeLookedFor) {
  RecordApplication application;
  application.desktop.alerts.expect(checkQuestion, AlertDefaultReturn);
  application.desktop.alerts.expect(setUpQuestion, AlertAlternateReturn);
  application.controller.applicationDidFinishLaunching();
  EXPECT_EQ(application.desktop.defaults.stored().value(settings::AutomaticVersionCheck), QVariant(true));
  EXPECT_EQ(application.desktop.defaults.integerForKey(settings::VersionCheckInterval), 31);
}

TEST(FirstRun, SetsTheDatabaseUpBelowTheDocumentsFolder) {
  RecordApplication application;
  application.desktop.alerts.expect(checkQuestion, AlertAlternateReturn);
  application.desktop.alerts.expect(setUpQuestion, AlertDefaultReturn);
  application.controller.applicationDidFinishLaunching();

  EXPECT_EQ(application.desktop.defaults.stored().value(settings::SaveDirectory),
            QVariant(QString("~/Documents/Recorder Data")));
  EXPECT_EQ(application.desktop.defaults.stored().value(settings::AutoSave), QVariant(true));
  EXPECT_TRUE(QFileInfo(application.home.path("Documents/Recorder Data")).isDir());
}

TEST(FirstRun, ReadsTheSaveFolderBackInTildeFormAndExpandsItWhereItIsUsed) {
  RecordApplication application;
  application.desktop.alerts.expect(checkQuestion, AlertAlternateReturn);
  application.desktop.alerts.expect(setUpQuestion, AlertDefaultReturn);
  application.controller.applicationDidFinishLaunching();
  EXPECT_EQ(application.desktop.defaults.stringForKey(settings::SaveDirectory), "~/Documents/Recorder Data");

  RecordingDocument& document = application.newRecord();
  document.setIdentifier("AB1");
  document.saveDocument();
  EXPECT_TRUE(QFile::exists(application.home.path("Documents/Recorder Data/AB1.rec")));
  EXPECT_EQ(application.desktop.defaults.stringForKey(settings::SaveDirectory), "~/Documents/Recorder Data");
}

TEST(FirstRun, StoresTheSaveFolderEvenWhenItCannotBeMade) {
  RecordApplication application;
  writeFile(application.home.path("Documents"), "a file where the folder should be");
  application.desktop.alerts.expect(checkQuestion, AlertAlternateReturn);
  application.desktop.alerts.expect(setUpQuestion, AlertDefaultReturn);
  application.controller.applicationDidFinishLaunching();

  EXPECT_EQ(application.desktop.defaults.stringForKey(settings::SaveDirectory), "~/Documents/Recorder Data");
  EXPECT_TRUE(application.desktop.defaults.boolForKey(settings::AutoSave));
  application.pass(1.5);
  EXPECT_TRUE(application.controller.cachedDatabaseArray().isEmpty());
}

TEST(FirstRun, IsNotOverWhenTheProgramEndsInTheFirstQuestion) {
  RecordApplication application;
  application.desktop.alerts.expect(checkQuestion, AlertStopped);
  application.controller.applicationDidFinishLaunching();
  EXPECT_TRUE(application.desktop.defaults.stored().isEmpty());
  EXPECT_EQ(application.desktop.alerts.shown().size(), 1) << "and asks nothing more";
}

TEST(FirstRun, KeepsTheFirstAnswerOnlyWhenTheProgramEndsInTheSecondQuestion) {
  RecordApplication application;
  application.desktop.alerts.expect(checkQuestion, AlertDefaultReturn);
  application.desktop.alerts.expect(setUpQuestion, AlertStopped);
  application.controller.applicationDidFinishLaunching();
  EXPECT_EQ(application.desktop.defaults.stored(),
            (QVariantMap{{settings::AutomaticVersionCheck, true},
                         {settings::VersionCheckInterval, QVariant::fromValue<qint64>(31)}}));
  EXPECT_FALSE(QFile::exists(application.home.path("Documents")));
}

TEST(FirstRun, StartsNothingWhenTheProgramEndsInAQuestion) {
  for (const bool second : {false, true}) {
    RecordApplication application;
    application.writeRecord("AB1");
    application.turnOn(settings::AutoSave);
    application.desktop.defaults.setObject("echo hello", settings::LaunchScript);
    application.desktop.alerts.expect(checkQuestion, second ? AlertDefaultReturn : AlertStopped);
    if (second) application.desktop.alerts.expect(setUpQuestion, AlertStopped);
    application.controller.applicationDidFinishLaunching();
    EXPECT_EQ(application.controller.aboutController(), nullptr);
    application.pass(60);
    EXPECT_TRUE(application.desktop.scripts.executed.isEmpty());
    EXPECT_TRUE(application.controller.cachedDatabaseArray().isEmpty());
    EXPECT_TRUE(application.desktop.web.requests().isEmpty());
  }
}

/// The alerts are windows on the screen, and the program is ended while one waits for its answer.
class FirstRunEnded : public testing::TestWithParam<void (*)()> {};

TEST_P(FirstRunEnded, StoresNothing) {
  RecordApplication application;
  desktop::QtAlerts alerts(application.desktop.runLoop);
  auto& desktop = application.desktop;
  platform::Services services = testkit::with(desktop.services, alerts);
  VelmoraAppController controller(services);
  QString asked;
  QTimer::singleShot(0, qApp, [&] {
    QTimer::singleShot(0, qApp, [&] {
      if (auto* box = dynamic_cast<QMessageBox*>(QApplication::activeModalWidget())) asked = box->text();
      GetParam()();
    });
    controller.applicationDidFinishLaunching();
    QCoreApplication::exit(0);  // whatever the end of the question did
  });
  QApplication::exec();
  EXPECT_EQ(asked, checkQuestion.messageText);
  EXPECT_TRUE(desktop.defaults.stored().isEmpty());
  EXPECT_EQ(controller.aboutController(), nullptr);
}

INSTANTIATE_TEST_SUITE_P(WhileAQuestionIsOpen, FirstRunEnded,
                         testing::Values([] { QCoreApplication::quit(); },
                                         [] { QCoreApplication::exit(0); }));

TEST(FirstRun, ShowsTheSplashAfterTheQuestionsAndCountsTheDelaysFromThen) {
  RecordApplication application;
  application.writeRecord("AB1");
  application.turnOn(settings::AutoSave);
  const auto splashIsNotThere = [&] {
    application.pass(60);  // the user takes a minute to answer
    EXPECT_EQ(application.controller.aboutController(), nullptr);
  };
  application.desktop.alerts.expect(checkQuestion, AlertAlternateReturn, splashIsNotThere);
  application.desktop.alerts.expect(setUpQuestion, AlertAlternateReturn, splashIsNotThere);
  application.controller.applicationDidFinishLaunching();

  ASSERT_NE(application.controller.aboutController(), nullptr);
  EXPECT_TRUE(application.controller.aboutController()->window()->isVisible());
  application.pass(1.4);
  EXPECT_TRUE(application.controller.cachedDatabaseArray().isEmpty());
  application.pass(0.1);
  EXPECT_EQ(application.controller.cachedDatabaseArray(), QStringList{"AB1"});
}
