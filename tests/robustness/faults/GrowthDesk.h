// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <functional>

#include "apps/growth/testing/GrowthApplication.h"
#include "testing/files/TemporaryHome.h"
#include "testing/main/Shown.h"
#include "testing/standins/LogRecorder.h"
#include "testing/standins/TestServices.h"
#include "velmora/app/VelmoraAppController.h"

namespace faults {

/// Somebody who reads every alert and answers it at once.
class AnsweringAlerts : public velmora::platform::Alerts {
 public:
  explicit AnsweringAlerts(velmora::platform::RunLoop& runLoop) : runLoop_(runLoop) {}

  /// How alerts are answered; at first with the default button, but "Don't Save" to "Save Elsewhere...".
  std::function<int(const velmora::platform::Alert&)> answer;
  /// Every alert that came, in order.
  QList<velmora::platform::Alert> shown;

  int runModal(const velmora::platform::Alert& alert) override;
  void beginSheetModalForWindow(const velmora::platform::Alert& alert, QWidget*, const QObject*,
                                DidEnd didEnd) override;

 private:
  velmora::platform::RunLoop& runLoop_;
};

/// A desktop with that person before it.
struct AnsweredParts : velmora::testkit::StandIns {
  using Alerts = AnsweringAlerts;
};

/// The growth application with its real documents and real files, a home folder of its own, and somebody who
/// answers its alerts. Records are saved automatically in ~/Records, charts go to ~/Charts.
class GrowthDesk : public growth::BasicGrowthApplication<AnsweredParts> {
 public:
  GrowthDesk();

  AnsweringAlerts& alerts = desktop.alerts;
  velmora::platform::Services& services = desktop.services;

  QString rescueFolder() const;
  QString earlierVersionsFolder() const;
  /// The names in the rescue folder.
  QStringList rescued() const;

  /// A new window in which an identifier and a first examination have been entered.
  GrowthDocument& newRecord(const QString& identifier);
  /// newRecord(), saved and open from its file.
  GrowthDocument& savedRecord(const QString& identifier);
  /// The open document of a file; throws, with the reason, when it does not open.
  GrowthDocument& opened(const QString& path);
  /// Why a file does not open, or an empty text.
  QString whyNotOpened(const QString& path);
  /// Enters a weight into the examination shown.
  void enterWeight(GrowthDocument& document, const QString& weight);
  QLineEdit& field(GrowthDocument& document, const char* name) const;
  /// Closes every document without a question.
  void closeAll();
  /// What the application does when it is started again.
  void start();
  /// Makes the temporary files of writes that were cut off look as old as they are by the next working day.
  void letWritesGrowOld() const;

  /// Everything below the home folder, as paths relative to it, without folders.
  QStringList files() const;
  /// Those of them that are neither records nor kept copies of records.
  QStringList strayFiles() const;
};

/// The record in a file, read by the document that the application uses; throws when it cannot be read.
growth::GrowthRecord recordIn(GrowthDesk& desk, const QString& path);
/// The weight of a record's first examination, as it is shown.
QString firstWeight(const growth::GrowthRecord& record);

/// Whether the long forms of the tests were asked for.
bool tortures();

}  // namespace faults
