// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QLocale>
#include <memory>

#include "testing/files/TemporaryHome.h"
#include "testing/standins/LogRecorder.h"
#include "tests/model/Desktop.h"
#include "tests/model/TracedDocument.h"
#include "velmora/app/VelmoraAppController.h"

namespace model {

/// Plays steps on the real program: its controller, windows, text fields and files, in virtual time and with
/// a home folder of its own.
class Player {
 public:
  Player();
  ~Player();

  /// Plays the step that the model has played already: it knows what will be asked.
  void play(const Step& step, const Model& model);

  QList<TracedDocument*> frontToBack() const;
  VelmoraAppController& controller() const { return *controller_; }
  const Desktop& desktop() const { return desktop_; }
  QString home() const { return home_.path(); }
  bool sheetIsOn(const TracedDocument& document) const;
  /// What went wrong in the last step: questions that were not foreseen, and failures caught and logged.
  QStringList complaints() const { return desktop_.alerts.complaints(); }
  QStringList failuresLogged() const;
  bool restarted() const { return restarted_; }

 private:
  void start();
  void settleWindows();
  void happens(const Event& event);
  void userStep(const Step& step, const Model& model);
  void inFrontWindow(const Step& step, TracedDocument& document);
  void somebodySaves(const QString& path);
  QString pathOfKept(const Record& record) const;
  void foreign(const Step& step, const QString& path);
  void type(QLineEdit* field, const QString& text, bool pressReturn);
  static void typeOn(const TracedDocument& document, const QString& text, bool pressReturn);
  void setFull(const QString& folder, bool full);
  void trigger(TracedDocument& document, const char* action);

  class Quiet {
   public:
    Quiet();
    ~Quiet();
    Quiet(const Quiet&) = delete;
    Quiet& operator=(const Quiet&) = delete;

   private:
    QtMessageHandler before_;
  };

  Quiet quiet_;
  velmora::testkit::TemporaryHome home_;
  QLocale localeBefore_;
  velmora::testkit::LogRecorder log_;
  Desktop desktop_;
  std::unique_ptr<VelmoraAppController> controller_;
  int lastToken_ = 100;
  bool restarted_ = false;
  bool keepsBlank_ = false;
};

}  // namespace model
