// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QLocale>
#include <QRect>
#include <QString>
#include <memory>

#include "testing/person/ProbedApplication.h"
#include "testing/person/Stage.h"

namespace demo {

class Report;

using namespace velmora::testkit;

/// A language of the guide, and where it is at home, which decides how dates and numbers are written.
struct GuideLanguage {
  QString code;    ///< names the folder: "de"
  QString locale;  ///< "de_DE"
};

/// The programs that the pictures are taken of and with.
struct GuideCast {
  QString application;
  QString applicationIdentifier;  ///< its bundle identifier
  QString link;                   ///< the program at the viewer's end
};

/// Takes the pictures of the user guide in one language: of the running program, on a virtual screen, with
/// the record of an invented child. It finds its way by the names of the controls and never by their texts.
///
/// The same programs, fonts and style give the same files, byte for byte, but for the date of the build in
/// the about window.
class GuidePictures {
 public:
  /// Pictures go into `folder`. Throws when a part of the stage is missing.
  GuidePictures(Report& report, const GuideCast& cast, const GuideLanguage& language, const QString& folder,
                const QString& program);

  /// Takes all of them, and then puts them in the place of those that were there. Throws Differs at the first
  /// window that does not come as expected; then those stay.
  void take();

 private:
  void takeStart();
  void takeMenu();
  void takeBatchExport();
  void takeRecord();
  void takePreferences();
  void takeAbout();
  void addExamination(int index);
  void quit();
  void putInPlace();

  SeenWindow window(const QString& name);
  void take(const SeenWindow& window, const QString& name);
  void takeScreen(const QRect& part, const QString& name);
  void shrink(const QString& name, const QRect& part);
  QString taken(const QString& name) const;
  void dismiss(const SeenWindow& window);
  QString typed(const QDate& date) const;
  PersonWithMouse& person() { return application_->person(); }

  Report& report_;
  GuideCast cast_;
  QLocale locale_;
  QString folder_;
  Stage stage_;
  std::unique_ptr<ProbedApplication> application_;
};

}  // namespace demo
