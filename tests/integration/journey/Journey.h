// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QStringList>
#include <QTemporaryDir>
#include <QVariant>
#include <memory>

#include "demo/Report.h"
#include "testing/person/ProbedApplication.h"
#include "testing/person/Stage.h"
#include "tests/integration/journey/Hands.h"
#include "tests/integration/journey/Screen.h"

namespace journey {

/// The way through the whole program, from the first start on an empty home to quit, whatever hands go it.
/// Each leg of it throws Differs when the screen or the disk is otherwise than it must be.
class Journey {
 public:
  Journey();

  /// Starts the program. The hands are those of the caller, made for it and this screen.
  void start();
  velmora::testkit::ProbedApplication& application() { return *application_; }
  Screen& screen() { return screen_; }
  void goOnWith(Hands& hands) { hands_ = &hands; }

  void answerTheFirstQuestions();
  void recordTwoExaminations();
  void moveBetweenExaminations();
  /// Waits for that examination, as in "1 of 2", with that weight in its field.
  void waitForExamination(const QString& number, const QString& weight);
  void deleteAnExamination();
  void changeTheTab();
  void rememberRecentDocuments();
  void save();
  void changeThePreferences();
  void abandonThePreferences();
  void cancelPageSetupAndPrinting();
  void readAbout();
  void exportABatch();
  void openTheRecent();
  void quit();
  /// What is there when the program has gone: the record, the chart, the settings.
  void lookAtTheDisk();

  QString recordPath() const;
  QString chartPath() const;

  /// What was on the screen and in the trace, for a journey that went wrong.
  QString account();

 private:
  velmora::testkit::SeenWindow document(
      const QString& what, const std::function<bool(const velmora::testkit::SeenWindow&)>& holds);
  void answer(const QString& message, const QString& button);
  void press(const QString& window, const QString& button);
  void measure(const QString& date, const QString& weight, const QString& height, const QString& head);
  QVariant stored(const QString& setting) const;

  QTemporaryDir folder_;
  demo::Report report_;
  velmora::testkit::Stage stage_;
  Screen screen_;
  std::unique_ptr<velmora::testkit::ProbedApplication> application_;
  Hands* hands_ = nullptr;
};

}  // namespace journey
