// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Preferences chosen while the application asks something; and the real alerts and panels over the window.
#include <QDialog>
#include <QDir>
#include <QFileDialog>
#include <QTest>

#include "testing/desktop/DesktopApplication.h"
#include "testing/waiting/Waiting.h"
#include "testing/window/DialogAnswers.h"
#include "tests/unit/velmora/preferences/PreferencesTesting.h"

using namespace velmora;
using namespace velmora::testkit;

using preferences_testing::PreferencesWindow;

namespace {

const platform::Alert Question{"Save changes?", "Save", "Cancel", "", ""};

/// The preferences window on a desktop with the real run loop, alerts and panels.
class RealPreferences : public testing::Test {
 protected:
  QWidget* window() { return application.controller.preferencesController()->window(); }
  QLineEdit* saveFolder() { return window()->findChild<QLineEdit*>("defaultSaveFolderField"); }
  void open() {
    application.controller.doPreferences(nullptr);
    ASSERT_TRUE(QTest::qWaitForWindowActive(window()));
  }
  void press(const char* button) { user::click(window()->findChild<QAbstractButton*>(button)); }

  DesktopApplication application;
  DialogAnswers answers;
};

}  // namespace

TEST_F(PreferencesWindow, ComesWhenTheQuestionThatIsOpenHasBeenAnswered) {
  application.desktop.alerts.expect(Question, platform::AlertAlternateReturn, [&] {
    application.controller.doPreferences(nullptr);
    application.controller.doPreferences(nullptr);
    application.settle();
    EXPECT_FALSE(shown());
  });
  application.desktop.alerts.runModal(Question);
  EXPECT_FALSE(shown()) << "after the event, never within it";
  application.settle();
  EXPECT_TRUE(shown());
}

TEST_F(PreferencesWindow, OpensAndWorksBesideASheetOfADocument) {
  RecordingDocument& document = application.newRecord();
  document.addExamination();
  application.desktop.alerts.expect(Question, platform::AlertAlternateReturn);
  application.desktop.alerts.beginSheetModalForWindow(Question, document.window(), &document, [](int) {});
  open();
  user::type(field("defaultSaveFolderField"), "/srv/records");
  user::click(ok());
  EXPECT_EQ(stored().value(velmora::settings::SaveDirectory), QVariant("/srv/records"));
  application.desktop.alerts.answerSheet(platform::AlertAlternateReturn, document.window());
}

TEST_F(RealPreferences, DoNotComeUpDeadBehindAnAlert) {
  application.newRecord();
  answers.expect(
      Question.messageText,
      [&] {
        QWidget* alert = QApplication::activeModalWidget();
        application.controller.doPreferences(nullptr);
        letEventsPass();
        EXPECT_FALSE(window()->isVisible());
        EXPECT_EQ(QApplication::activeModalWidget(), alert);
        EXPECT_TRUE(alert->isVisible());
      },
      "Cancel");
  application.desktop.alerts.runModal(Question);
  waitUntil([&] { return window()->isVisible(); });
  ASSERT_TRUE(QTest::qWaitForWindowActive(window()));
  user::type(saveFolder(), "/srv/records");
  QTest::keyClick(saveFolder(), Qt::Key_Return);
  EXPECT_EQ(application.desktop.defaults.stringForKey(velmora::settings::SaveDirectory), "/srv/records");
}

TEST_F(RealPreferences, ThatAreOpenWaitForTheAlertAndGoOn) {
  open();
  user::type(saveFolder(), "pending");
  answers.expect(
      Question.messageText,
      [&] {
        EXPECT_NE(QApplication::activeModalWidget(), window());
        application.controller.doPreferences(nullptr);
        letEventsPass();
        EXPECT_TRUE(window()->isVisible());
      },
      "Save");
  application.desktop.alerts.runModal(Question);
  ASSERT_TRUE(QTest::qWaitForWindowActive(window()));
  EXPECT_EQ(saveFolder()->text(), "pending");
}

TEST_F(RealPreferences, TellThatAFolderIsMissingAndComeBack) {
  open();
  user::type(saveFolder(), "/no/such/folder");
  answers.expect(
      "Folder Missing", [] {}, "OK");
  press("showSaveFolderButton");
  EXPECT_TRUE(answers.done());
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
  EXPECT_TRUE(window()->isVisible());
  EXPECT_EQ(saveFolder()->text(), "/no/such/folder");
}

TEST_F(RealPreferences, TakeTheFolderOfTheRealPanel) {
  const QString other = application.home.makeFolder("other");
  open();
  answers.expect(
      "Choose the save folder",
      [&] {
        auto* panel = dynamic_cast<QFileDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(panel, nullptr);
        EXPECT_EQ(panel->directory().path(), application.home.path("Records"));
        panel->setDirectory(other);
      },
      "Choose");
  press("chooseSaveFolderButton");
  EXPECT_EQ(saveFolder()->text(), "~/other");
}

TEST_F(RealPreferences, KeepTheFieldWhenTheRealPanelIsCancelled) {
  const QString other = application.home.makeFolder("other");
  open();
  answers.expect(
      "Choose the save folder",
      [&] { dynamic_cast<QFileDialog&>(*QApplication::activeModalWidget()).setDirectory(other); }, "Cancel");
  press("chooseSaveFolderButton");
  EXPECT_EQ(saveFolder()->text(), "~/Records/");
}
