// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QLocale>
#include <optional>

#include "base/Export.h"
#include "testing/TestServices.h"
#include "testing/application/RecordingDocument.h"
#include "testing/files/TemporaryHome.h"
#include "testing/window/UserActions.h"
#include "velmora/app/VelmoraAppController.h"
#include "velmora/document/VelmoraApplicationDelegate.h"

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

/// An application of the family, "Recorder", on a desktop of stand-ins and with a home folder of its own. Its
/// documents are RecordingDocuments, its data files end in ".rec", and dates look like 31/12/2024. The
/// controller has been woken (awakeFromNib), not launched.
class VELMORA_EXPORT RecordApplication {
 public:
  static QVariantMap informationOf(const QString& bundleIdentifier);

  RecordApplication();
  ~RecordApplication();

  TemporaryHome home;
  TestServices desktop;
  RecordingDelegate delegate;
  VelmoraAppController controller;

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
                   const QString& birthDate = QStringLiteral("03/04/2020"));
  /// writeRecord(), and the cache knows it.
  void keepRecord(const QString& name, const QStringList& exams = {QStringLiteral("01/02/2023")});
  /// A new, untitled document whose window is in front.
  RecordingDocument& newRecord();
  /// The open document of a record in the save folder, brought to the front.
  RecordingDocument& openRecord(const QString& name);
  /// The front document, or none.
  RecordingDocument* front() const;
  /// The files that were kept as rescue copies.
  QStringList rescueCopies() const;

  // The viewer.

  /// A request as the viewer's end sends it, and everything that it sets going at once.
  void chooseStudy(const QVariantMap& request);
  const QList<RecordingDistributedCenter::Posted>& replies() const {
    return desktop.distributedCenter.posted();
  }
  /// Lets time pass.
  void pass(double seconds) { desktop.runLoop.advance(seconds); }
  void settle() { desktop.runLoop.settle(); }

 private:
  QLocale localeBefore_;
};

/// The identifier, name and dates of a study that a request tells of.
VELMORA_EXPORT QVariantMap study(const QString& identifier);

/// The notice that a record was closed with unsaved changes, for a copy that is made now.
VELMORA_EXPORT platform::Alert closedWithChanges(RecordApplication& application, const QString& name);

}  // namespace velmora::testkit
