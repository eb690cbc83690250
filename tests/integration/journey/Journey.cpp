// SPDX-License-Identifier: LGPL-3.0-or-later
#include "tests/integration/journey/Journey.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSettings>
#include <algorithm>

#include "testing/files/Files.h"
#include "testing/waiting/Waiting.h"

using namespace velmora::testkit;

namespace journey {

namespace {

const QString Document = "VelmoraDocument";
const QString Preferences = "Preferences";
const QString AlertBox = "QMessageBox";
const QString Identifier = "12-345-6";

}  // namespace

Journey::Journey() : stage_(tracer(), Stage::Screen::Virtual, QString()) {}

Program::Trace Journey::tracer() {
  return [this](const QString& who, const QString& what) { trace_.append(who.leftJustified(12) + what); };
}

ProbedApplication& Journey::start() {
  application_ = std::make_unique<ProbedApplication>(tracer(), stage_, GROWTH);
  return *application_;
}

QString Journey::recordPath() const {
  return stage_.home() + "/Documents/Growth Data/" + Identifier + ".growth";
}

QString Journey::chartPath() const { return stage_.home() + "/Desktop/" + Identifier + " Height.jpg"; }

QVariant Journey::stored(const QString& setting) const {
  return QSettings(stage_.home() + "/.config/org.velmora.growth.conf", QSettings::IniFormat).value(setting);
}

QString Journey::account() {
  QString screen = "the program has ended";
  try {
    // Not of the person, who may have gone already with the leg of the journey that failed.
    if (application_ && application_->process().running()) screen = application_->probe().screen();
  } catch (const std::exception& error) {
    screen = error.what();
  }
  return screen + '\n' + trace_.join('\n').right(6000);
}

SeenWindow Journey::window(const QString& name, const QString& what,
                           const std::function<bool(const SeenWindow&)>& holds) {
  return person_->waitFor(what, [&](const SeenWindow& seen) { return seen.isCalled(name) && holds(seen); });
}

SeenWindow Journey::document(const QString& what, const std::function<bool(const SeenWindow&)>& holds) {
  return window(Document, what, holds);
}

void Journey::waitForExamination(const QString& number, const QString& weight) {
  document(number + " with " + weight + " kg", [&](const SeenWindow& seen) {
    return seen.text("examNumberField") == number && seen.text("weightField") == weight;
  });
}

void Journey::choose(const QStringList& path) { person_->choose(person_->active(Document), path); }

void Journey::push(const QString& widget) { person_->push(person_->active(Document), widget); }

void Journey::fill(const QString& field, const QString& text) {
  person_->fill(person_->active(Document), field, text);
}

void Journey::answerTheFirstQuestions() {
  person_->answer("Periodically check for updates?", "Don't Check");
  person_->answer("Set Up Database?", "Yes");
  // The splash comes over the document and goes by itself.
  window("About", "the splash", [](const SeenWindow&) { return true; });
  person_->waitUntilScreen("the blank document alone", [](const QList<SeenWindow>& windows) {
    return windows.size() == 1 && windows.first().isCalled(Document);
  });
  person_->active(Document);
}

void Journey::measure(const QString& date, const QString& weight, const QString& height,
                      const QString& head) {
  fill("examDateField", date);
  fill("weightField", weight);
  fill("heightField", height);
  fill("headField", head);
}

void Journey::recordTwoExaminations() {
  fill("referenceIDField", Identifier);
  fill("birthDateField", "21 Jan 2019");
  person_->pick(person_->active(Document), "sexPopUp", "Male");
  measure("6 May 2022", "14.6", "97.2", "50.1");
  document("an age and a place among other children", [](const SeenWindow& seen) {
    return seen.text("ageField").contains('3') && !seen.text("weightResultField").isEmpty();
  });
  choose({"examinationMenu", "doNewRecord"});
  waitForExamination("2 of 2", QString());
  measure("14 Nov 2023", "17.6", "107.8", "50.9");
}

void Journey::moveBetweenExaminations() {
  waitForExamination("2 of 2", "17.6");
  choose({"examinationMenu", "doPreviousRecord"});
  waitForExamination("1 of 2", "14.6");
  push("nextStudyButton");
  waitForExamination("2 of 2", "17.6");
  push("previousStudyButton");
  waitForExamination("1 of 2", "14.6");
  choose({"examinationMenu", "doNextRecord"});
  waitForExamination("2 of 2", "17.6");
}

void Journey::deleteAnExamination() {
  push("newStudyButton");
  waitForExamination("3 of 3", QString());
  fill("examDateField", "15 May 2025");
  fill("weightField", "99.9");
  const QString question = "Are you sure you want to remove this exam?";
  push("deleteStudyButton");
  window(AlertBox, "the question",
         [&](const SeenWindow& seen) { return seen.active() && seen.alertText() == question; });
  person_->cancel(person_->active(AlertBox));
  waitForExamination("3 of 3", "99.9");
  choose({"examinationMenu", "doDeleteRecord"});
  person_->answer(question, "Remove");
  waitForExamination("2 of 2", "17.6");
}

void Journey::changeTheTab() {
  person_->turnTo(person_->active(Document), "tabView", "Head");
  person_->turnTo(person_->active(Document), "tabView", "Height");
}

void Journey::rememberRecentDocuments() {
  choose({"fileMenu", "openRecentMenu", "doRememberRecentDocuments"});
  expect(waitUntil(Patience.count(), [&] { return stored("Remember Recent Documents").toBool(); }),
         "recent documents to be remembered", "they are not");
}

void Journey::save() {
  document("a change", &SeenWindow::edited);
  choose({"fileMenu", "doSave"});
  document("the record saved",
           [](const SeenWindow& seen) { return !seen.edited() && seen.title().contains(Identifier); });
  expect(!readFile(recordPath()).isEmpty(), recordPath(),
         fileNames(stage_.home() + "/Documents/Growth Data").join(", "));
}

void Journey::changeThePreferences() {
  choose({"editMenu", "doPreferences"});
  person_->pick(person_->active(Preferences), "checkVersionIntervalPopUp", "Weekly");
  person_->fill(person_->active(Preferences), "launchScriptField", "true");
  person_->closeWith(person_->active(Preferences), "OK");
  expect(stored("Version Check Interval").toInt() == 7, "an interval of 7 days",
         stored("Version Check Interval").toString());
  expect(stored("Launch Script") == "true", "the script", stored("Launch Script").toString());
}

void Journey::abandonThePreferences() {
  choose({"editMenu", "doPreferences"});
  window(Preferences, "the preferences as they were stored", [](const SeenWindow& seen) {
    return seen.text("checkVersionIntervalPopUp") == "Weekly" && seen.text("launchScriptField") == "true";
  });
  person_->push(person_->active(Preferences), "autoCheckVersionCheckBox");
  window(Preferences, "the check box to be turned on",
         [](const SeenWindow& seen) { return seen.widget("autoCheckVersionCheckBox")["checked"].toBool(); });
  person_->pick(person_->active(Preferences), "exportToPopUp", "OsiriX");
  person_->cancel(person_->active(Preferences));
  expect(!stored("Export to OsiriX").toBool() && !stored("Automatic Version Check").toBool(),
         "nothing stored after Cancel", "a setting has changed");
}

void Journey::cancelPageSetupAndPrinting() {
  choose({"fileMenu", "doPageSetup"});
  person_->cancel(person_->active("QPageSetupDialog"));
  choose({"fileMenu", "doPrint"});
  person_->cancel(person_->active("QPrintDialog"));
  document("nothing changed by it", [](const SeenWindow& seen) { return !seen.edited(); });
}

void Journey::readAbout() {
  choose({"helpMenu", "doSplashAboutBox"});
  const SeenWindow about =
      window("About", "the about window", [](const SeenWindow& seen) { return seen.active(); });
  expect(about.text("nameField").startsWith("Growth "), "the program's name and version",
         about.text("nameField"));
  person_->dismiss(person_->active("About"));
}

void Journey::exportABatch() {
  expect(!QFile::exists(chartPath()), "no chart yet", chartPath());
  choose({"fileMenu", "doBatchExport"});
  window("BatchExport", "seven days",
         [](const SeenWindow& seen) { return seen.text("howManyDaysField") == "7"; });
  person_->fill(person_->active("BatchExport"), "howManyDaysField", "3");
  person_->closeWith(person_->active("BatchExport"), "Export");
  const QString folder = stage_.home() + "/Desktop";
  expect(waitUntil(Patience.count(), [&] { return QFile::exists(chartPath()); }), chartPath(),
         fileNames(folder).join(", "));
  person_->waitUntilScreen("one window", [](const QList<SeenWindow>& windows) {
    return windows.size() == 1 && windows.first().isCalled(Document);
  });
}

void Journey::openTheRecent() {
  // The batch has closed the record after its turn.
  document("a blank document",
           [](const SeenWindow& seen) { return seen.active() && seen.text("referenceIDField").isEmpty(); });
  choose({"fileMenu", "openRecentMenu", Identifier});
  const SeenWindow again = document("the record again", [](const SeenWindow& seen) {
    return seen.active() && seen.text("referenceIDField") == Identifier;
  });
  expect(again.text("examNumberField") == "2 of 2" && again.text("birthDateField") == "21 Jan 2019" &&
             again.text("sexPopUp") == "Male",
         "what was saved", again.summary());
}

void Journey::quit() {
  choose({"fileMenu", "doQuit"});
  application_->waitForGoodEnd(Patience.count());
}

void Journey::lookAtTheDisk() {
  const QJsonObject record = QJsonDocument::fromJson(readFile(recordPath())).object();
  const QString text = QString::fromUtf8(QJsonDocument(record).toJson(QJsonDocument::Compact));
  for (const char* part : {"\"12-345-6\"", "\"2019-01-21\"", "\"male\"", "\"2022-05-06\"", "14.6", "97.2",
                           "50.1", "\"2023-11-14\"", "17.6", "107.8", "50.9"})
    expect(text.contains(QLatin1String(part)), QLatin1String(part) + QString(" in the record"), text);
  expect(!text.contains("99.9"), "the deleted examination to be gone", text);

  const QStringList charts = fileNames(stage_.home() + "/Desktop");
  expect(charts == QStringList{QFileInfo(chartPath()).fileName()}, "one chart of the patient",
         charts.join(", "));
  const QImage chart(chartPath());
  expect(chart.width() > 300 && chart.height() > 200, "a picture of the chart", "none that can be read");

  const QMap<QString, QVariant> settings{{"Save Directory", "~/Documents/Growth Data"},
                                         {"Auto Save", true},
                                         {"Automatic Version Check", false},
                                         {"Version Check Interval", 7},
                                         {"Launch Script", "true"},
                                         {"Export to OsiriX", false},
                                         {"Batch Export Days", 3}};
  for (auto it = settings.cbegin(); it != settings.cend(); ++it)
    expect(stored(it.key()).toString() == it->toString() || (!it->toBool() && !stored(it.key()).toBool()),
           it.key() + " = " + it->toString(), stored(it.key()).toString());
}

}  // namespace journey
