// SPDX-License-Identifier: LGPL-3.0-or-later
#include "testing/application/RecordApplication.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <stdexcept>

#include "link/protocol/LinkProtocol.h"
#include "platform/text/DateFormatter.h"
#include "testing/application/SealedFile.h"
#include "testing/files/Files.h"
#include "velmora/resources/SettingsKeys.h"

namespace velmora::testkit {

namespace {
const QString BundleIdentifier = QStringLiteral("org.velmora.recorder");
}

bool RecordingDelegate::fileIsInCachedDatabaseFiles(const QString& name) const {
  const_cast<RecordingDelegate*>(this)->asked.append(name);
  return controller->fileIsInCachedDatabaseFiles(name);
}

void RecordingDelegate::addToCachedDatabaseFiles(const QString& fileName) {
  added.append(fileName);
  controller->addToCachedDatabaseFiles(fileName);
  if (whenAdded) whenAdded();
}

QVariantMap RecordApplication::informationOf(const QString& bundleIdentifier) {
  return {{QStringLiteral("CFBundleIdentifier"), bundleIdentifier},
          {QStringLiteral("CFBundleName"), QStringLiteral("Recorder")},
          {QStringLiteral("CFBundleShortVersionString"), QStringLiteral("2.1")},
          {QStringLiteral("CFBundleVersion"), QStringLiteral("345")},
          {QStringLiteral("NSHumanReadableCopyright"), QStringLiteral("Copyright 2024 the makers")}};
}

RecordApplication::RecordApplication()
    : desktop(informationOf(BundleIdentifier)), controller(desktop.services) {
  QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom));
  delegate.controller = &controller;
  home.makeFolder(QStringLiteral("Records"));
  home.makeFolder(QStringLiteral("Charts"));
  desktop.defaults.registerDefaults({{velmora::settings::DataFileExtension, QStringLiteral("rec")},
                                     {velmora::settings::SaveDirectory, QStringLiteral("~/Records/")},
                                     {velmora::settings::ExportDirectory, QStringLiteral("~/Charts")}});
  controller.setDocumentFactory(
      [this] { return std::make_unique<RecordingDocument>(desktop.services, delegate); });
  controller.awakeFromNib();
}

RecordApplication::~RecordApplication() { QLocale::setDefault(localeBefore_); }

void RecordApplication::writeRecord(const QString& name, const QStringList& exams, const QString& birthDate) {
  const QJsonObject content{{QStringLiteral("identifier"), name},
                            {QStringLiteral("birthDate"), birthDate},
                            {QStringLiteral("exams"), QJsonArray::fromStringList(exams)}};
  const QJsonObject file{{QStringLiteral("format"), BundleIdentifier},
                         {QStringLiteral("version"), 1},
                         {QStringLiteral("application"), QStringLiteral("Recorder 2.1")},
                         {QStringLiteral("content"), content}};
  writeFile(pathOfRecord(name), sealed(QJsonDocument(file).toJson()));
}

void RecordApplication::keepRecord(const QString& name, const QStringList& exams) {
  writeRecord(name, exams);
  controller.addToCachedDatabaseFiles(name + QStringLiteral(".rec"));
}

RecordingDocument& RecordApplication::newRecord() {
  auto* document = dynamic_cast<RecordingDocument*>(controller.openUntitledDocument(true));
  if (!document) throw std::runtime_error("no new document");
  user::bringToFront(*document);
  document->forgetCalls();
  return *document;
}

RecordingDocument& RecordApplication::openRecord(const QString& name) {
  auto* document = dynamic_cast<RecordingDocument*>(
      controller.openDocumentWithContentsOfURL(QUrl::fromLocalFile(pathOfRecord(name)), true)
          .valueOr(nullptr));
  if (!document) throw std::runtime_error("the record does not open");
  user::bringToFront(*document);
  document->forgetCalls();
  return *document;
}

RecordingDocument* RecordApplication::front() const {
  return dynamic_cast<RecordingDocument*>(controller.currentDocument());
}

QStringList RecordApplication::rescueCopies() const {
  return fileNames(home.path(QStringLiteral(".local/share/%1/Rescued").arg(BundleIdentifier)));
}

void RecordApplication::chooseStudy(const QVariantMap& request) {
  desktop.distributedCenter.deliver(velmora::link::notificationName(BundleIdentifier),
                                    velmora::link::RequestObject, request);
  settle();
}

QVariantMap study(const QString& identifier) {
  return {{velmora::link::Identifier, identifier},
          {velmora::link::Name, QStringLiteral("Doe^Jane")},
          {velmora::link::DateOfBirth, platform::noonOf(QDate(2021, 6, 30))},
          {velmora::link::DateOfStudy, platform::noonOf(QDate(2024, 4, 29))},
          {velmora::link::OsiriXStudyID, QStringLiteral("1.2.840.99")}};
}

platform::Alert closedWithChanges(RecordApplication& application, const QString& name) {
  const QString copy = application.home.path(".local/share/org.velmora.recorder/Rescued/") + name + ' ' +
                       application.desktop.runLoop.now().toUTC().toString("yyyyMMdd-HHmmss-zzz") + ".rec";
  return {"'" + name + "' was closed with unsaved changes", "OK", "", "",
          "A copy with the changes was kept as '" + copy + "'."};
}

}  // namespace velmora::testkit
