// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QPoint>
#include <QString>
#include <QVariant>
#include <functional>
#include <memory>

#include "demo/Viewer.h"
#include "testing/person/ProbedApplication.h"

namespace demo {

class Report;

using namespace velmora::testkit;

/// The real programs, and the folder that keeps what the demonstration produces.
struct Cast {
  QString application;            ///< the sample application
  QString applicationIdentifier;  ///< its bundle identifier
  QString link;                   ///< the program at the viewer's end
  QString out;                    ///< viewer/, export/ and screens/ are made in it
};

/// The road of one study, played step by step with the real parts: from the viewer into a record, through two
/// examinations and the chart back to the viewer, into the save folder, and back again; on the way the
/// windows of the settings and of the batch export.
///
/// Each step throws Differs when something is otherwise than it must be.
class Road {
 public:
  Road(Report& report, Stage& stage, const Cast& cast);

  /// Plays every step in order.
  void play();
  /// Keeps what the application wrote, and pictures of what is on the screen now. For the end, good or bad.
  void keepEverything(const QString& shot);

 protected:
  /// Plays one step: throws Differs when something is otherwise than it must be.
  void playStep(int number, const char* title, const std::function<void()>& step);
  void start();
  void exportChart();
  /// In the preferences: where charts go, "OsiriX" or "A folder".
  void sendChartsTo(const QString& place);
  void quit(bool unsavedChanges);
  void shots(const QString& shot);
  void expectText(const SeenWindow& window, const QString& widget, const QString& text);
  PersonWithMouse& person() { return application_->person(); }

  Report& report_;
  Stage& stage_;
  Cast cast_;
  Viewer viewer_;
  std::unique_ptr<ProbedApplication> application_;

 private:
  void startForTheFirstTime();
  void fillFromTheViewer();
  void recordTwoExaminations();
  void sendChartsToTheViewer();
  void installThePlugin();
  void exportToTheViewer();
  void closeAndSave();
  void reopenFromTheViewer();
  void exportToTheFolder();
  void exportThreeRecords();
  void startAgain();
  void startWithAFailingScript();

  SeenWindow openPreferences();
  void endPreferences(const QString& button);
  QVariant stored(const QString& setting);
  void recordAnotherPatient(const Study& study, const QString& weight);
  void prepareTheSaveFolder();
  void lookThePatientUp(const QString& weight, const QString& shot);
  void checkPicture(const QByteArray& jpeg, const QSize& size);
  void checkReply(const Viewer::Reply& reply, const QSize& size);
  void checkBothExaminationsInTheChart();
  void expectNoPanelSince(qsizetype news);

  QPoint firstMark_;  // where the examinations' marks are in the chart, in pixels of the tab view
  QPoint secondMark_;
};

}  // namespace demo
