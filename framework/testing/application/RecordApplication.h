// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QLocale>
#include <memory>
#include <stdexcept>

#include "base/Export.h"
#include "link/protocol/LinkProtocol.h"
#include "testing/application/RecordingDocument.h"
#include "testing/files/Files.h"
#include "testing/files/TemporaryHome.h"
#include "testing/standins/TestServices.h"
#include "testing/window/UserActions.h"
#include "velmora/app/VelmoraAppController.h"
#include "velmora/document/VelmoraApplicationDelegate.h"
#include "velmora/resources/SettingsKeys.h"

namespace velmora::testkit {

/// The delegate between a document and its controller, which keeps what the document says.
class VELMORA_EXPORT RecordingDelegate : public VelmoraApplicationDelegate {
 public:
  VelmoraAppController* controller = nullptr;
  QStringList asked;
  QStringList added;
  /// Called when a save is reported.
  std::function<void()> whenAdded;

  bool fileIsInCachedDatabaseFiles(const QString& name) const override;
  void addToCachedDatabaseFiles(const QString& fileName) override;
};

/// Its bundle identifier, and what its information dictionary holds under that or another one.
inline const QString RecorderIdentifier = QStringLiteral("org.velmora.recorder");
VELMORA_EXPORT QVariantMap recorderInformation(const QString& bundleIdentifier = RecorderIdentifier);
/// Puts a record with that identifier and those examinations into a file.
VELMORA_EXPORT void writeRecordFile(const QString& path, const QString& identifier, const QStringList& exams,
                                    const QString& birthDate);

/// An application of the family, "Recorder", on a test desktop and with a home folder of its own. Its
/// documents are RecordingDocuments, its data files end in ".rec", and dates look like 31/12/2024. The
/// controller has been woken (awakeFromNib), not launched.
template <typename Parts>
class BasicRecordApplication {
 public:
  BasicRecordApplication() {
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom));
    delegate.controller = &controller;
    home.makeFolder(QStringLiteral("Records"));
    home.makeFolder(QStringLiteral("Charts"));
    desktop.defaults.registerDefaults({{settings::DataFileExtension, QStringLiteral("rec")},
                                       {settings::SaveDirectory, QStringLiteral("~/Records/")},
                                       {settings::ExportDirectory, QStringLiteral("~/Charts")}});
    controller.setDocumentFactory(
        [this] { return std::make_unique<RecordingDocument>(desktop.services, delegate); });
    controller.awakeFromNib();
  }
  ~BasicRecordApplication() {
    destroyController();
    QLocale::setDefault(localeBefore_);
  }
  BasicRecordApplication(const BasicRecordApplication&) = delete;
  BasicRecordApplication& operator=(const BasicRecordApplication&) = delete;

  TemporaryHome home;
  TestDesktop<Parts> desktop{recorderInformation()};
  RecordingDelegate delegate;

 private:
  std::unique_ptr<VelmoraAppController> controller_ =
      std::make_unique<VelmoraAppController>(desktop.services);

 public:
  VelmoraAppController& controller = *controller_;
  /// As at the end of main, or worse.
  void destroyController() { controller_.reset(); }

  // The settings that most tests begin with.

  /// The folder of data files; made, and stored in the settings in tilde form.
  QString saveFolder() const { return home.path(QStringLiteral("Records")); }
  /// The folder of chart files; made, and stored in the settings.
  QString exportFolder() const { return home.path(QStringLiteral("Charts")); }
  void turnOn(const QString& setting) { desktop.defaults.setObject(true, setting); }

  // Records.

  QString pathOfRecord(const QString& name) const {
    return saveFolder() + QStringLiteral("/%1.rec").arg(name);
  }
  /// Puts a record with that identifier and those examinations into the save folder.
  void writeRecord(const QString& name, const QStringList& exams = {QStringLiteral("01/02/2023")},
                   const QString& birthDate = QStringLiteral("03/04/2020")) {
    writeRecordFile(pathOfRecord(name), name, exams, birthDate);
  }
  /// writeRecord(), and the cache knows it.
  void keepRecord(const QString& name, const QStringList& exams = {QStringLiteral("01/02/2023")}) {
    writeRecord(name, exams);
    controller.addToCachedDatabaseFiles(name + QStringLiteral(".rec"));
  }
  /// A new, untitled document whose window is in front.
  RecordingDocument& newRecord() { return inFront(controller.openUntitledDocument(true)); }
  /// The open document of a record in the save folder, brought to the front.
  RecordingDocument& openRecord(const QString& name) {
    const QUrl file = QUrl::fromLocalFile(pathOfRecord(name));
    return inFront(controller.openDocumentWithContentsOfURL(file, true).valueOr(nullptr));
  }
  /// The front document, or none.
  RecordingDocument* front() const { return dynamic_cast<RecordingDocument*>(controller.currentDocument()); }
  QString identifierInFront() const { return front() ? front()->identifier() : QString(); }
  /// The files that were kept as rescue copies.
  QStringList rescueCopies() const {
    return fileNames(home.path(QStringLiteral(".local/share/%1/Rescued").arg(RecorderIdentifier)));
  }

  // The viewer.

  /// A request as the viewer's end sends it.
  void deliver(const QVariantMap& request) {
    desktop.distributedCenter.deliver(link::notificationName(RecorderIdentifier), link::RequestObject,
                                      request);
  }
  /// deliver(), and everything that it sets going at once.
  void chooseStudy(const QVariantMap& request) {
    deliver(request);
    settle();
  }
  const QList<RecordingDistributedCenter::Posted>& replies() const {
    return desktop.distributedCenter.posted();
  }
  /// Lets time pass.
  void pass(double seconds) { desktop.runLoop.advance(seconds); }
  void settle() { desktop.runLoop.settle(); }

 private:
  RecordingDocument& inFront(platform::Document* opened) {
    auto* document = dynamic_cast<RecordingDocument*>(opened);
    if (!document) throw std::runtime_error("the record does not open");
    user::bringToFront(*document);
    document->forgetCalls();
    return *document;
  }

  QLocale localeBefore_;
};

using RecordApplication = BasicRecordApplication<StandIns>;

/// The identifier, name and dates of a study that a request tells of.
VELMORA_EXPORT QVariantMap study(const QString& identifier);

/// The notice that a record was closed with unsaved changes, for a copy that is made now.
VELMORA_EXPORT platform::Alert closedWithChanges(RecordApplication& application, const QString& name);

}  // namespace velmora::testkit
