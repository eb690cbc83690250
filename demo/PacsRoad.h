// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <memory>

#include "bridge/dicom/Study.h"
#include "bridge/testing/Orthanc.h"
#include "demo/Road.h"

namespace demo {

/// The road of one study that is in an archive, played with a real one: from the archive's own page into a
/// record, through one examination, and as a chart back into the same study, by way of the program that
/// clinics run.
class PacsRoad : public Road {
 public:
  /// `plugin` is ours for the archive's page. The archive runs from now on, empty.
  PacsRoad(Report& report, Stage& stage, const Cast& cast, const QString& plugin);

  void play();
  /// As for the other road, and the archive's log.
  void keepEverything(const QString& shot);

 private:
  void fillTheArchive();
  void startTheService();
  void startTheApplication();
  void chooseOnThePage();
  void recordOneExamination();
  void chartGoesBack();
  void checkTheStoredObject();
  void lookAtThePage();
  void endAndTakeStock();

  /// Runs velmora-link to its end; what it printed. Throws when it ends otherwise than with 0.
  QString link(const QStringList& arguments);
  /// Looks at the study's page, keeps the picture; what the script answers there.
  QJsonValue page(const QString& until, const QString& script, const QString& picture);
  QString idOf(const QString& uid) const;
  void keep(const QString& name, const QByteArray& contents) const;

  bridge_testing::Orthanc archive_;
  bridge::Study study_;
  std::unique_ptr<Program> service_;
  QByteArray sent_;    // the chart, as it left the application
  QString storedUid_;  // of the object that it has become
};

}  // namespace demo
