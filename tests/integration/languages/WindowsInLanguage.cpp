// SPDX-License-Identifier: LGPL-3.0-or-later
#include "tests/integration/languages/WindowsInLanguage.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QTabWidget>
#include <QTest>

#include "platform/text/DateFormatter.h"
#include "platform/text/Localization.h"
#include "velmora/about/AboutController.h"
#include "velmora/batch/BatchExportController.h"
#include "velmora/preferences/PreferencesController.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;
using namespace velmora::testkit;

namespace languages {

namespace settings = velmora::settings;

namespace {

const char* const OsirixIdentifier = "com.rossetantoine.osirix";

/// Brings a window to the front for a visit, from behind another one: a window that comes back is told of the
/// keyboard only then.
void show(const QString& what, QWidget* window, const WindowsInLanguage::Visit& visit) {
  QWidget other;
  other.show();
  other.activateWindow();
  if (!window->isModal() && !QTest::qWaitForWindowActive(&other)) ADD_FAILURE() << what.toStdString();
  window->show();
  window->activateWindow();
  if (!QTest::qWaitForWindowActive(window)) ADD_FAILURE() << what.toStdString() << " does not come up";
  // What changed with the coming up is laid out after it.
  QCoreApplication::processEvents();
  visit(what, *window);
}

QString typed(const QDate& day) {
  platform::DateFormatter formatter;
  formatter.setDateStyle(platform::DateFormatter::Style::Short);
  return formatter.stringFromDate(day);
}

}  // namespace

QLocale localeOf(const QString& language) {
  if (language == "en") return QLocale("en_GB");
  return QLocale(language + '_' + language.toUpper());
}

WindowsInLanguage::WindowsInLanguage(const QString& language)
    : translations_(desktop::translationFolders(VELMORA_SHARE "/growth"), localeOf(language)) {
  EXPECT_EQ(translations_.language(), language);
  QLocale::setDefault(localeOf(language));
}

void WindowsInLanguage::each(const Visit& visit) {
  about(visit);
  records(visit);
  preferences(visit);
  batchExport(visit);
  progress(visit);
}

void WindowsInLanguage::about(const Visit& visit) {
  application.controller.doSplashAboutBox(nullptr);
  AboutController* about = application.controller.aboutController();
  for (const QString& status :
       {platform::localizedString("VelmoraAppController", "Checking for new version..."),
        platform::localizedString("VelmoraAppController", "Startup script error")}) {
    show("About", about->window(), [&](const QString& what, QWidget& window) {
      about->showStatusString(status);
      visit(what, window);
    });
  }
  about->close();
}

GrowthDocument& WindowsInLanguage::filledRecord() {
  GrowthDocument& document = application.newRecord();
  user::enter(user::field(document, "referenceIDField"), "PATIENT-0042");
  user::enter(user::field(document, "birthDateField"), typed(QDate(2012, 12, 28)));
  application.chooseSex(document, growth::GrowthApplication::SexItem::Female);
  user::enter(user::field(document, "examDateField"), typed(QDate(2024, 11, 30)));
  user::enter(user::field(document, "weightField"), "45");
  user::enter(user::field(document, "heightField"), "151");
  user::enter(user::field(document, "headField"), "53");
  user::click(user::button(document, "newStudyButton"));
  application.desktop.runLoop.settle();
  user::enter(user::field(document, "examDateField"), typed(QDate(2024, 12, 28)));
  user::enter(user::field(document, "weightField"), "999.99");
  return document;
}

void WindowsInLanguage::records(const Visit& visit) {
  GrowthDocument& document = filledRecord();
  auto* tabs = dynamic_cast<QTabWidget*>(user::widget(document, "tabView"));
  for (int tab = 0; tab < tabs->count(); ++tab) {
    tabs->setCurrentIndex(tab);
    show("Record", document.window(), visit);
  }
  document.close();
  application.desktop.runLoop.settle();
  incompleteRecords(visit);
}

void WindowsInLanguage::incompleteRecords(const Visit& visit) {
  GrowthDocument& document = application.newRecord();
  show("Empty record", document.window(), visit);
  user::enter(user::field(document, "weightField"), "five");
  user::enter(user::field(document, "heightField"), "0");
  user::enter(user::field(document, "headField"), "45");
  show("Record with what is no number", document.window(), visit);
  user::enter(user::field(document, "birthDateField"), typed(QDate(2022, 2, 20)));
  user::enter(user::field(document, "examDateField"), typed(QDate(2024, 2, 28)));
  show("Record without a sex", document.window(), visit);
  application.chooseSex(document, growth::GrowthApplication::SexItem::Male);
  user::enter(user::field(document, "examDateField"), typed(QDate(2060, 2, 28)));
  show("Record beyond the reference", document.window(), visit);
  user::enter(user::field(document, "examDateField"), typed(QDate(2021, 2, 28)));
  show("Record of an unborn child", document.window(), visit);
  user::enter(user::field(document, "examDateField"), "some day");
  show("Record with what is no date", document.window(), visit);
  document.close();
  application.desktop.runLoop.settle();
}

void WindowsInLanguage::preferences(const Visit& visit) {
  auto& desktop = application.desktop;
  desktop.defaults.setObject(desktop.runLoop.now(), settings::LastVersionCheckDate);
  application.controller.doPreferences(nullptr);
  QWidget* window = application.controller.preferencesController()->window();
  show("Preferences", window, visit);
  auto* destination = window->findChild<QComboBox*>("exportToPopUp");
  destination->setCurrentIndex(1);
  Q_EMIT destination->activated(1);
  show("Preferences without OsiriX", window, visit);
  window->hide();
  desktop.workspace.applications.insert(OsirixIdentifier, "/usr/bin/true");
  show("Preferences with OsiriX", window, visit);
  window->hide();
}

void WindowsInLanguage::batchExport(const Visit& visit) {
  auto& desktop = application.desktop;
  for (const bool toOsirix : {false, true}) {
    desktop.defaults.setObject(toOsirix, settings::ExportToOsiriX);
    application.controller.doBatchExport(nullptr);
    QWidget* window = application.controller.batchExportController()->window();
    show(toOsirix ? "Batch export to OsiriX" : "Batch export", window, visit);
    window->hide();
  }
  desktop.defaults.setObject(false, settings::ExportToOsiriX);
}

void WindowsInLanguage::progress(const Visit& visit) {
  BatchProgress& progress = application.controller.batchExportController()->progress();
  progress.begin(9999);
  progress.showFile(9998, "/records/PATIENT-0042.growth");
  show("Progress", progress.window(), visit);
  for (const qsizetype waiting : {9999, 1}) {
    progress.setWaitingCharts(waiting);
    progress.end();
    show("Waiting charts", progress.window(), visit);
  }
  progress.setWaitingCharts(0);
}

}  // namespace languages
