// SPDX-License-Identifier: LGPL-3.0-or-later
#include "demo/guide/GuidePictures.h"

#include <QDate>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <iterator>

#include "demo/Report.h"
#include "demo/Viewer.h"
#include "demo/guide/SmallPicture.h"
#include "testing/waiting/Waiting.h"

namespace demo {

namespace {

const Study FirstStudy{"DEMO-0042", "Doe, Robin", QDate(2021, 3, 14), QDate(2021, 4, 27), "2.25.4711"};

struct Visit {
  QDate date;
  double weight, height, head;  ///< kilograms, centimetres, centimetres
};

// An invented boy near the median, with one year in which he gained little.
const Visit Visits[] = {{QDate(2021, 4, 27), 4.6, 55.8, 38.0},  {QDate(2021, 7, 13), 6.7, 63.0, 41.4},
                        {QDate(2021, 9, 21), 7.8, 67.4, 43.5},  {QDate(2022, 3, 15), 9.4, 75.2, 45.9},
                        {QDate(2022, 9, 13), 10.2, 81.0, 47.2}, {QDate(2023, 3, 21), 11.7, 86.6, 48.4}};

// The places of the items, whose texts depend on the language.
constexpr qsizetype MaleItem = 2;
constexpr qsizetype OsirixItem = 1;

/// By what name the viewer is known to the desktop.
constexpr const char* ViewerIdentifier = "com.rossetantoine.osirix";

}  // namespace

GuidePictures::GuidePictures(Report& report, const GuideCast& cast, const GuideLanguage& language,
                             const QString& folder, const QString& program)
    : report_(report),
      cast_(cast),
      locale_(language.locale),
      folder_(folder),
      stage_(report.tracer(), Stage::Screen::Virtual, program, language.locale) {
  for (const QString& each : {folder, QFileInfo(taken("")).path()})
    if (!QDir().mkpath(each)) throw Differs("to make " + each, "it was not possible");
  // So that the button offers the plugin and not the viewer itself.
  stage_.installDesktopEntry(ViewerIdentifier, "OsiriX");
}

void GuidePictures::take() {
  takeStart();
  takeMenu();
  takeRecord();
  takePreferences();
  takeBatchExport();
  takeAbout();
  quit();
  putInPlace();
}

void GuidePictures::takeStart() {
  application_ = std::make_unique<ProbedApplication>(report_.tracer(), stage_, cast_.application);
  const auto question = [this](int after) {
    return person().waitFor(
        "a question",
        [&](const SeenWindow& seen) { return seen.isAlert() && seen.active() && seen.id() != after; }, 20);
  };
  const SeenWindow first = question(0);
  take(first, "first-question");
  person().key("Escape");
  question(first.id());
  person().key("Return");
  window("About");
  person().waitUntilGone("About");
  take(application_->document(), "blank-document");
}

void GuidePictures::takeMenu() {
  const SeenWindow document = application_->document();
  const SeenWindow menu = person().open(document, "fileMenu");
  const QRect place = menu.place();
  const QPoint corner = document.place().topLeft();
  takeScreen(QRect(corner, QSize(place.right() + 180 - corner.x(), place.bottom() + 24 - corner.y())),
             "menu");
  dismiss(menu);
}

void GuidePictures::takeRecord() {
  Viewer viewer(report_, stage_, cast_.link, cast_.applicationIdentifier, stage_.workFolder());
  viewer.pick(FirstStudy);
  SeenWindow document = application_->document("the study", [](const SeenWindow& seen) {
    return seen.text("referenceIDField") == FirstStudy.identifier;
  });
  person().pick(document, "sexPopUp", document.entries("sexPopUp").value(MaleItem));
  for (int i = 0; i < static_cast<int>(std::size(Visits)); ++i) addExamination(i);
  // The keyboard leaves the fields.
  document = application_->document();
  person().push(document, "previousStudyButton");
  document = application_->document("the examination before the last", [](const SeenWindow& seen) {
    return !seen.hasFocus("headField") && !seen.text("weightResultField").isEmpty();
  });
  take(document, "filled-document");
}

void GuidePictures::addExamination(int index) {
  const Visit& visit = Visits[index];
  const SeenWindow document = application_->document();
  const auto number = [this](double value) { return locale_.toString(value, 'f', 1); };
  if (index > 0) {
    person().push(document, "newStudyButton");
    application_->document("an empty examination",
                           [](const SeenWindow& seen) { return seen.text("weightField").isEmpty(); });
    person().typeOver(document, "examDateField", typed(visit.date));
  }
  person().enter(document, "weightField", number(visit.weight));
  person().enter(document, "heightField", number(visit.height));
  person().enter(document, "headField", number(visit.head));
  application_->document("a result for the head",
                         [](const SeenWindow& seen) { return !seen.text("headResultField").isEmpty(); });
}

void GuidePictures::takePreferences() {
  person().choose(application_->document(), {"editMenu", "doPreferences"});
  SeenWindow preferences = window("Preferences");
  take(preferences, "preferences-folder");
  person().pick(preferences, "exportToPopUp", preferences.entries("exportToPopUp").value(OsirixItem));
  preferences = person().waitFor("the page of OsiriX", [](const SeenWindow& seen) {
    return seen.name() == "Preferences" && !seen.widget("installOsirixPluginButton").isEmpty();
  });
  take(preferences, "preferences-osirix");
  dismiss(preferences);
}

void GuidePictures::takeBatchExport() {
  person().choose(application_->document(), {"fileMenu", "doBatchExport"});
  const SeenWindow batch = window("BatchExport");
  take(batch, "batch-export");
  dismiss(batch);
}

void GuidePictures::takeAbout() {
  person().choose(application_->document(), {"helpMenu", "doSplashAboutBox"});
  const SeenWindow about = window("About");
  take(about, "about");
  dismiss(about);
}

void GuidePictures::quit() {
  person().choose(application_->document(), {"fileMenu", "doQuit"});
  const SeenWindow question = person().waitFor("the question about the changes", [](const SeenWindow& seen) {
    return seen.isAlert() && seen.active();
  });
  person().key("Return");
  application_->waitForGoodEnd(15);
}

QString GuidePictures::taken(const QString& name) const {
  return stage_.workFolder() + "/pictures/" + name + ".png";
}

void GuidePictures::putInPlace() {
  const QStringList earlier = QDir(folder_).entryList({"*.png"}, QDir::Files);
  for (const QString& name : earlier) QFile::remove(folder_ + '/' + name);
  const QFileInfoList all = QDir(QFileInfo(taken("")).path()).entryInfoList({"*.png"}, QDir::Files);
  for (const QFileInfo& file : all) {
    const QString to = folder_ + '/' + file.fileName();
    if (!QFile::copy(file.filePath(), to)) throw Differs("to write " + to, "it was not possible");
  }
}

SeenWindow GuidePictures::window(const QString& name) {
  return person().waitFor("the window " + name, [&](const SeenWindow& seen) {
    return seen.name() == name && (seen.active() || name == "About");
  });
}

void GuidePictures::dismiss(const SeenWindow& window) {
  person().key("Escape");
  person().waitUntilGone(window);
}

void GuidePictures::take(const SeenWindow& window, const QString& name) {
  application_->probe().picture(window, taken(name));
  shrink(name, {});
}

void GuidePictures::takeScreen(const QRect& part, const QString& name) {
  const QJsonObject answer = application_->probe().ask({{"do", "screen"}, {"file", taken(name)}});
  if (!answer["ok"].toBool()) throw Differs("a picture of the screen", answer["error"].toString());
  shrink(name, part);
}

void GuidePictures::shrink(const QString& name, const QRect& part) {
  const QString file = taken(name);
  const QImage picture(file);
  if (picture.isNull()) throw Differs("a picture in " + file, "none");
  const QImage wanted = part.isNull() ? picture : picture.copy(part & picture.rect());
  // 0 is the smallest file there is.
  if (!withFewColours(wanted).save(file, "PNG", 0)) throw Differs("to write " + file, "it was not possible");
  report_.trace("guide", QString("%1 of %2 x %3").arg(file).arg(wanted.width()).arg(wanted.height()));
}

// As the program itself writes it: the locale's short form, with the year in four digits.
QString GuidePictures::typed(const QDate& date) const {
  QString format = locale_.dateFormat(QLocale::ShortFormat);
  if (!format.contains("yyyy")) format.replace("yy", "yyyy");
  return locale_.toString(date, format);
}

}  // namespace demo
