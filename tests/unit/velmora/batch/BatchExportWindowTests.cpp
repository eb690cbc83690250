// SPDX-License-Identifier: LGPL-3.0-or-later
//
// The batch-export window: what it shows, what it stores, and how it is left.
#include <QAccessible>
#include <QScreen>
#include <QTest>

#include "testing/files/Files.h"
#include "tests/unit/velmora/batch/BatchTesting.h"

using namespace velmora;
using namespace velmora::testkit;

namespace settings = velmora::settings;
using batch_testing::BatchExport;

TEST_F(BatchExport, RegistersItsTwoDefaultsWhenItIsMade) {
  const platform::UserDefaults& defaults = application.desktop.defaults;
  ASSERT_FALSE(defaults.objectForKey(settings::BatchExportDays).isValid());
  ASSERT_FALSE(defaults.objectForKey(settings::AutoDelete).isValid());
  open();
  const QVariant days = defaults.objectForKey(settings::BatchExportDays);
  EXPECT_EQ(days.typeId(), QMetaType::QString) << "a text, though it is read as a number";
  EXPECT_EQ(days, QVariant("7"));
  EXPECT_EQ(defaults.objectForKey(settings::AutoDelete), QVariant(false));
  EXPECT_TRUE(stored().isEmpty());
}

TEST_F(BatchExport, ShowsSevenDaysAndNoErasingAtFirst) {
  open();
  EXPECT_EQ(days()->text(), "7");
  EXPECT_FALSE(erase()->isChecked());
  EXPECT_TRUE(erase()->isEnabled());
}

TEST_F(BatchExport, ShowsTheStoredValues) {
  store(settings::BatchExportDays, 21);
  store(settings::AutoDelete, true);
  open();
  EXPECT_EQ(days()->text(), "21");
  EXPECT_TRUE(erase()->isChecked());
}

TEST_F(BatchExport, ShowsAnAbsurdStoredNumberWhole) {
  store(settings::BatchExportDays, std::numeric_limits<qint64>::min());
  open();
  EXPECT_EQ(days()->text(), "-9223372036854775808");
  user::click(ok());
  EXPECT_EQ(stored().value(settings::BatchExportDays), QVariant(std::numeric_limits<qint64>::min()));
}

TEST_F(BatchExport, StandsInTheMiddleOfTheScreen) {
  open();
  const QPoint middle = window()->screen()->availableGeometry().center();
  const QPoint off = middle - window()->frameGeometry().center();
  const QSize frame = window()->frameGeometry().size() - window()->size();
  EXPECT_LE(std::abs(off.x()), 1 + frame.width());
  EXPECT_LE(std::abs(off.y()), 1 + frame.height());
}

TEST_F(BatchExport, IsMadeOnceAndShownAgainAsItWasLeft) {
  open();
  BatchExportController* first = &batch();
  QWidget* shown = window();
  user::type(days(), "3");
  user::click(cancel());
  ASSERT_FALSE(window()->isVisible());
  open();
  EXPECT_EQ(&batch(), first);
  EXPECT_EQ(window(), shown);
  EXPECT_EQ(days()->text(), "3");
}

TEST_F(BatchExport, OffersErasingOnlyWhileChartsGoToTheExportFolder) {
  application.turnOn(settings::ExportToOsiriX);
  open();
  EXPECT_FALSE(erase()->isEnabled());
  EXPECT_EQ(destination(), "The charts are sent to OsiriX.");
  // The preferences are changed while the window is open.
  store(settings::ExportToOsiriX, false);
  application.newRecord();
  EXPECT_FALSE(erase()->isEnabled()) << "not before the window has the keyboard again";
  open();
  EXPECT_TRUE(erase()->isEnabled());
  EXPECT_EQ(
      destination(),
      "The charts go to the folder '~/Charts'. Erasing removes every JPEG picture in it, whatever program "
      "made it.");
}

TEST_F(BatchExport, ClosesAndStoresBeforeItExports) {
  write("A", 60);
  bool asked = false;
  whenPosted = [&] {
    asked = true;
    EXPECT_FALSE(window()->isVisible());
    EXPECT_EQ(stored().value(settings::BatchExportDays), QVariant(2));
    EXPECT_EQ(stored().value(settings::AutoDelete), QVariant(true));
  };
  open();
  erase()->click();
  user::type(days(), "2");
  user::click(ok());
  EXPECT_TRUE(asked);
  EXPECT_EQ(stored().value(settings::BatchExportDays).typeId(), QMetaType::LongLong);
  EXPECT_EQ(stored().value(settings::AutoDelete).typeId(), QMetaType::Bool);
}

TEST_F(BatchExport, StoresItsValuesThoughTheExportCannotBegin) {
  QDir(application.exportFolder()).removeRecursively();
  application.desktop.alerts.expect(
      {"The export folder is not available", "OK", "", "",
       "You can select a new export folder by choosing the Preferences menu item."},
      platform::AlertDefaultReturn);
  exportDays("5");
  EXPECT_EQ(stored().value(settings::BatchExportDays), QVariant(5));
}

TEST_F(BatchExport, KeepsErasingAsItWasSetWhileItIsNotOffered) {
  store(settings::AutoDelete, true);
  application.turnOn(settings::ExportToOsiriX);
  exportDays("1");
  EXPECT_EQ(stored().value(settings::AutoDelete), QVariant(true));
}

// Leaving.

class LeavingBatchExport : public BatchExport, public testing::WithParamInterface<const char*> {};

TEST_P(LeavingBatchExport, StoresAndExportsNothing) {
  write("A", 60);
  open();
  user::type(days(), "3");
  erase()->click();
  const std::string way = GetParam();
  if (way == "Cancel") user::click(cancel());
  if (way == "Escape") QTest::keyClick(days(), Qt::Key_Escape);
  if (way == "CloseBox") window()->close();
  if (way == "CloseKey") QTest::keyClick(window(), Qt::Key_W, Qt::ControlModifier);
  EXPECT_FALSE(window()->isVisible());
  EXPECT_TRUE(stored().isEmpty());
  EXPECT_TRUE(posted.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(EachWay, LeavingBatchExport,
                         testing::Values("Cancel", "Escape", "CloseBox", "CloseKey"),
                         [](const auto& way) { return std::string(way.param); });

// By keyboard.

TEST_F(BatchExport, OpensWithTheKeyboardInNoFieldEachTime) {
  open();
  EXPECT_EQ(window()->focusWidget(), window());
  user::click(days());
  user::click(cancel());
  open();
  EXPECT_EQ(window()->focusWidget(), window());
}

TEST_F(BatchExport, ExportsAtReturnWhereverTheKeyboardIs) {
  for (const char* place : {"", "howManyDaysField", "eraseOldFilesCheckBox"}) {
    posted.clear();
    write("A", 60);
    open();
    QWidget* focus = *place ? window()->findChild<QWidget*>(QString::fromLatin1(place)) : window();
    focus->setFocus();
    QTest::keyClick(focus, Qt::Key_Return);
    EXPECT_EQ(posted.size(), 1) << place;
    EXPECT_FALSE(window()->isVisible()) << place;
    application.pass(2);
    for (const QString& chart : charts()) QFile::remove(application.exportFolder() + '/' + chart);
  }
}

TEST_F(BatchExport, LeadsThroughItsControlsInOrder) {
  open();
  QStringList order;
  for (int i = 0; i < 4; ++i) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    const auto* reached = QApplication::focusWidget();
    const auto* push = dynamic_cast<const QPushButton*>(reached);
    order.append(push ? push->text().remove('&') : reached->objectName());
  }
  EXPECT_EQ(order.mid(0, 2), (QStringList{"howManyDaysField", "eraseOldFilesCheckBox"}));
  EXPECT_EQ(batch_testing::sorted(order.mid(2)), (QStringList{"Cancel", "Export"}));
}

TEST_F(BatchExport, NamesEveryControlForThoseWhoDoNotSeeIt) {
  open();
  const auto nameOf = [](QWidget* control) {
    return QAccessible::queryAccessibleInterface(control)->text(QAccessible::Name);
  };
  EXPECT_EQ(nameOf(days()), "Number of days");
  EXPECT_EQ(nameOf(erase()), "Erase previously exported charts first");
  EXPECT_EQ(nameOf(ok()), "Export");
  EXPECT_EQ(nameOf(cancel()), "Cancel");
  EXPECT_EQ(window()->findChild<QLabel*>("beforeDaysLabel")->buddy(), days());
}

// The number of days.

TEST_F(BatchExport, TakesNothingButAWholeNumber) {
  open();
  user::type(days(), "1x2.5 -e+6");
  EXPECT_EQ(days()->text(), "1256");
  user::type(days(), "-5");
  EXPECT_EQ(days()->text(), "-5");
}

TEST_F(BatchExport, CannotBeginWithoutANumber) {
  open();
  user::type(days(), "");
  EXPECT_FALSE(ok()->isEnabled());
  QTest::keyClick(days(), Qt::Key_Return);
  EXPECT_TRUE(window()->isVisible());
  user::type(days(), "-");
  EXPECT_FALSE(ok()->isEnabled());
  user::type(days(), "-1");
  EXPECT_TRUE(ok()->isEnabled());
}

TEST_F(BatchExport, ShowsAllOfItsTexts) {
  open();
  auto* text = window()->findChild<QLabel*>("destinationField");
  EXPECT_GE(text->height(), text->heightForWidth(text->width()));
  for (const char* name : {"beforeDaysLabel", "afterDaysLabel", "eraseOldFilesCheckBox"}) {
    const auto* control = window()->findChild<QWidget*>(QString::fromLatin1(name));
    EXPECT_GE(control->width(), control->sizeHint().width()) << name;
  }
}

TEST_F(BatchExport, ShowsTheWholeOfALongFolderInAWindowOfUsualWidth) {
  open();
  const int width = window()->width();
  store(settings::ExportDirectory, "/srv" + QString("/a-folder-of-the-hospital").repeated(12));
  QDir().mkpath(application.home.path("other"));
  application.newRecord();
  open();
  auto* text = window()->findChild<QLabel*>("destinationField");
  EXPECT_GE(text->height(), text->heightForWidth(text->width()));
  EXPECT_LE(window()->width(), 2 * width);
}

// Trouble.

TEST_F(BatchExport, ComesWhenTheQuestionThatIsOpenHasBeenAnswered) {
  const platform::Alert question{"Save changes?", "Save", "Cancel", "", ""};
  application.desktop.alerts.expect(question, platform::AlertAlternateReturn, [&] {
    application.controller.doBatchExport(nullptr);
    EXPECT_FALSE(window()->isVisible());
  });
  application.desktop.alerts.runModal(question);
  application.settle();
  EXPECT_TRUE(window()->isVisible());
}

TEST_F(BatchExport, ToleratesAWindowWithoutItsOutlets) {
  const QString folder = application.home.makeFolder("interface");
  for (const char* name : {"BatchExport", "BatchProgress"}) {
    writeFile(folder + '/' + name + ".ui", QByteArray("<ui version=\"4.0\"><class>") + name +
                                               "</class><widget class=\"QWidget\" name=\"Bare\"/></ui>");
  }
  application.desktop.interfaceFiles.addSearchPath(folder);
  saved(application.pathOfRecord("A"), (application.writeRecord("A"), -60));  // from the future
  open();
  batch().doOK(nullptr);
  EXPECT_EQ(posted.size(), 1) << "no days are 0 days";
  EXPECT_FALSE(window()->isVisible());
  application.pass(5);
}
