// SPDX-License-Identifier: LGPL-3.0-or-later
#include "tests/robustness/nesting/WeatherDesktop.h"

#include <gtest/gtest.h>

#include <QEvent>
#include <QFileDialog>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <stdexcept>
#include <thread>

#include "link/protocol/LinkProtocol.h"
#include "orv/documents/OrvChecksum.h"
#include "testing/files/Files.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;
using namespace velmora::testkit;

namespace weather {
namespace {
const QString BundleIdentifier = QStringLiteral("org.velmora.recorder");

QString textOf(const QDialog& dialog) {
  if (const auto* box = dynamic_cast<const QMessageBox*>(&dialog)) return box->text();
  return dialog.windowTitle();
}
}  // namespace

Person::~Person() {
  qApp->removeEventFilter(this);
  for (const Expected& expected : expected_) ADD_FAILURE() << "never came: " << expected.text.toStdString();
}

void Person::expect(const QString& text, std::function<void()> act, const QString& button) {
  expected_.push_back({text, std::move(act), button});
}

bool Person::eventFilter(QObject* watched, QEvent* event) {
  auto* dialog = event->type() == QEvent::Show ? dynamic_cast<QDialog*>(watched) : nullptr;
  // In the event loop of the dialog itself, which is not yet running.
  if (dialog && (dynamic_cast<QMessageBox*>(dialog) || dynamic_cast<QFileDialog*>(dialog))) {
    const QPointer<QDialog> open(dialog);
    QMetaObject::invokeMethod(
        this,
        [this, open] {
          if (open) attend(open);
        },
        Qt::QueuedConnection);
  }
  return false;
}

void Person::attend(QDialog* dialog) {
  ++came_;
  const QPointer<QDialog> open(dialog);
  if (expected_.empty() || expected_.front().text != textOf(*dialog)) {
    ADD_FAILURE() << "unexpected: " << textOf(*dialog).toStdString();
    dialog->reject();
    return;
  }
  const Expected next = std::move(expected_.front());
  expected_.pop_front();
  if (next.act) next.act();
  if (!next.button.isEmpty()) {
    ASSERT_TRUE(open) << "closed before it was answered: " << next.text.toStdString();
    press(*open, next.button);
  }
}

void press(QDialog& dialog, const QString& button) {
  for (QAbstractButton* each : dialog.findChildren<QAbstractButton*>()) {
    if (each->text().remove(QLatin1Char('&')) != button) continue;
    each->click();
    return;
  }
  ADD_FAILURE() << "no button " << button.toStdString();
  dialog.reject();
}

void letEventsPass() {
  for (int i = 0; i < 20; ++i) QCoreApplication::processEvents();
}

void waitUntil(const std::function<bool()>& holds) { EXPECT_TRUE(QTest::qWaitFor(holds, 30000)); }

Application::Application() : desktop(RecordApplication::informationOf(BundleIdentifier)) {
  QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom));
  home.makeFolder(QStringLiteral("Records"));
  home.makeFolder(QStringLiteral("Charts"));
  controller_ = std::make_unique<VelmoraAppController>(desktop.services);
  delegate.controller = controller_.get();
  desktop.defaults.registerDefaults({{velmora::settings::DataFileExtension, QStringLiteral("rec")},
                                     {velmora::settings::SaveDirectory, QStringLiteral("~/Records/")},
                                     {velmora::settings::ExportDirectory, QStringLiteral("~/Charts")},
                                     {velmora::settings::VersionCheckInterval, 31},
                                     {velmora::settings::AutoSave, true}});
  controller_->setDocumentFactory(
      [this] { return std::make_unique<RecordingDocument>(desktop.services, delegate); });
  controller_->awakeFromNib();
}

Application::~Application() {
  controller_.reset();
  QLocale::setDefault(localeBefore_);
}

void Application::keepRecord(const QString& name) {
  const QJsonObject file{{QStringLiteral("format"), BundleIdentifier},
                         {QStringLiteral("version"), 1},
                         {QStringLiteral("application"), QStringLiteral("Recorder 2.1")},
                         {QStringLiteral("checksum"), QString::fromLatin1(orv::emptyChecksum())},
                         {QStringLiteral("content"),
                          QJsonObject{{QStringLiteral("identifier"), name},
                                      {QStringLiteral("birthDate"), QStringLiteral("03/04/2020")},
                                      {QStringLiteral("exams"), QJsonArray{QStringLiteral("01/02/2023"),
                                                                           QStringLiteral("01/02/2024")}}}}};
  writeFile(pathOfRecord(name), orv::withChecksum(QJsonDocument(file).toJson()));
  controller_->addToCachedDatabaseFiles(name + QStringLiteral(".rec"));
}

RecordingDocument& Application::newRecord() {
  auto* document = dynamic_cast<RecordingDocument*>(controller_->openUntitledDocument(true));
  if (!document) throw std::runtime_error("no new document");
  user::bringToFront(*document);
  return *document;
}

RecordingDocument& Application::openRecord(const QString& name) {
  auto* document = dynamic_cast<RecordingDocument*>(
      controller_->openDocumentWithContentsOfURL(QUrl::fromLocalFile(pathOfRecord(name)), true)
          .valueOr(nullptr));
  if (!document) throw std::runtime_error("the record does not open");
  user::bringToFront(*document);
  return *document;
}

void Application::chooseStudy(const QString& identifier) {
  std::thread viewer([this, identifier] {
    desktop.distributedCenter.deliver(velmora::link::notificationName(BundleIdentifier),
                                      velmora::link::RequestObject, study(identifier));
  });
  viewer.join();
}

}  // namespace weather
