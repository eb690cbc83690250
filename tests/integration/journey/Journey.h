// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QStringList>
#include <QVariant>
#include <memory>

#include "testing/person/ProbedApplication.h"

namespace journey {

using namespace velmora::testkit;

/// The way through the whole program, from the first start on an empty home to quit, however the person in
/// front of it works. Each leg of it throws Differs when the screen or the disk is otherwise than it must be.
class Journey {
 public:
  Journey();

  /// Starts the program.
  ProbedApplication& start();
  const Stage& stage() const { return stage_; }
  /// The rest of the way is that person's, who is the caller's.
  void goOnWith(Person& person) { person_ = &person; }

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
  Program::Trace tracer();
  SeenWindow window(const QString& name, const QString& what,
                    const std::function<bool(const SeenWindow&)>& holds);
  SeenWindow document(const QString& what, const std::function<bool(const SeenWindow&)>& holds);
  // In the document's window.
  void choose(const QStringList& path);
  void push(const QString& widget);
  void fill(const QString& field, const QString& text);
  void measure(const QString& date, const QString& weight, const QString& height, const QString& head);
  QVariant stored(const QString& setting) const;

  QStringList trace_;
  Stage stage_;
  std::unique_ptr<ProbedApplication> application_;
  Person* person_ = nullptr;
};

}  // namespace journey
