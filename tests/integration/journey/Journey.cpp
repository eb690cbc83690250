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

using velmora::testkit::Differs;
using velmora::testkit::SeenWindow;

namespace journey {

namespace {

const QString Document = "VelmoraDocument";
const QString Preferences = "Preferences";
const QString AlertBox = "QMessageBox";
const QString Identifier = "12-345-6";

void expect(bool holds, const QString& what, const QString& seen) {
  if (!holds) throw Differs(what, seen);
}

bool isEdited(const SeenWindow& window) { return window.description()["edited"].toBool(); }

}  // namespace

Journey::Journey()
    : report_(folder_.path()),
      stage_(report_.tracer(), velmora::testkit::Stage::Screen::Virtual, QString()),
      screen_(stage_.environment()) {}

void Journey::start() {
  application_ = std::make_unique<velmora::testkit::ProbedApplication>(report_.tracer(), stage_, GROWTH);
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
    if (application_ && application_->process().running()) screen = application_->person().screen();
  } catch (const std::exception& error) {
    screen = error.what();
  }
  return screen + '\n' +
         QString::fromUtf8(velmora::testkit::readFile(folder_.filePath("trace.txt"))).right(6000);
}

SeenWindow Journey::document(const QString& what, const std::function<bool(const SeenWindow&)>& holds) {
  return hands_->when(what, Document, holds);
}

void Journey::waitForExamination(const QString& number, const QString& weight) {
  document(number + " with " + weight + " kg", [&](const SeenWindow& seen) {
    return seen.text("examNumberField") == number && seen.text("weightField") == weight;
  });
}

void Journey::press(const QString& window, const QString& button) {
  const SeenWindow seen = hands_->active(window);
  hands_->press(window, button);
  hands_->waitUntilGone(seen);
}

void Journey::answer(const QString& message, const QString& button) {
  const SeenWindow alert =
      hands_->when("the alert \"" + message + '"', AlertBox,
                   [&](const SeenWindow& seen) { return seen.active() && seen.alertText() == message; });
  hands_->press(AlertBox, button);
  hands_->waitUntilGone(alert);
}

void Journey::answerTheFirstQuestions() {
  answer("Periodically check for updates?", "Don't Check");
  answer("Set Up Database?", "Yes");
  // The splash comes over the document and goes by itself.
  hands_->when("the splash", "About", [](const SeenWindow&) { return true; });
  application_->person().waitUntilScreen(
      "the blank document alone",
      [](const QList<SeenWindow>& windows) { return windows.size() == 1 && is(windows.first(), Document); },
      Patience);
  hands_->active(Document);
}

void Journey::measure(const QString& date, const QString& weight, const QString& height,
                      const QString& head) {
  hands_->fill(Document, "examDateField", date);
  hands_->fill(Document, "weightField", weight);
  hands_->fill(Document, "heightField", height);
  hands_->fill(Document, "headField", head);
}

void Journey::recordTwoExaminations() {
  hands_->fill(Document, "referenceIDField", Identifier);
  hands_->fill(Document, "birthDateField", "21 Jan 2019");
  hands_->pick(Document, "sexPopUp", "Male");
  measure("6 May 2022", "14.6", "97.2", "50.1");
  document("an age and a place among other children", [](const SeenWindow& seen) {
    return seen.text("ageField").contains('3') && !seen.text("weightResultField").isEmpty();
  });
  hands_->choose({"examinationMenu", "doNewRecord"});
  waitForExamination("2 of 2", QString());
  measure("14 Nov 2023", "17.6", "107.8", "50.9");
}

void Journey::moveBetweenExaminations() {
  waitForExamination("2 of 2", "17.6");
  hands_->choose({"examinationMenu", "doPreviousRecord"});
  waitForExamination("1 of 2", "14.6");
  hands_->push(Document, "nextStudyButton");
  waitForExamination("2 of 2", "17.6");
  hands_->push(Document, "previousStudyButton");
  waitForExamination("1 of 2", "14.6");
  hands_->choose({"examinationMenu", "doNextRecord"});
  waitForExamination("2 of 2", "17.6");
}

void Journey::deleteAnExamination() {
  hands_->push(Document, "newStudyButton");
  waitForExamination("3 of 3", QString());
  hands_->fill(Document, "examDateField", "15 May 2025");
  hands_->fill(Document, "weightField", "99.9");
  const QString question = "Are you sure you want to remove this exam?";
  hands_->push(Document, "deleteStudyButton");
  hands_->when("the question", AlertBox,
               [&](const SeenWindow& seen) { return seen.active() && seen.alertText() == question; });
  hands_->cancel(AlertBox);
  waitForExamination("3 of 3", "99.9");
  hands_->choose({"examinationMenu", "doDeleteRecord"});
  answer(question, "Remove");
  waitForExamination("2 of 2", "17.6");
}

void Journey::changeTheTab() {
  hands_->turnTo(Document, "tabView", "Head");
  hands_->turnTo(Document, "tabView", "Height");
}

void Journey::rememberRecentDocuments() {
  hands_->choose({"fileMenu", "openRecentMenu", "doRememberRecentDocuments"});
  expect(velmora::testkit::waitUntil(Patience, [&] { return stored("Remember Recent Documents").toBool(); }),
         "recent documents to be remembered", "they are not");
}

void Journey::save() {
  document("a change", isEdited);
  hands_->choose({"fileMenu", "doSave"});
  document("the record saved",
           [](const SeenWindow& seen) { return !isEdited(seen) && seen.title().contains(Identifier); });
  expect(!velmora::testkit::readFile(recordPath()).isEmpty(), recordPath(),
         velmora::testkit::fileNames(stage_.home() + "/Documents/Growth Data").join(", "));
}

void Journey::changeThePreferences() {
  hands_->choose({"editMenu", "doPreferences"});
  hands_->pick(Preferences, "checkVersionIntervalPopUp", "Weekly");
  hands_->fill(Preferences, "launchScriptField", "true");
  press(Preferences, "OK");
  expect(stored("Version Check Interval").toInt() == 7, "an interval of 7 days",
         stored("Version Check Interval").toString());
  expect(stored("Launch Script") == "true", "the script", stored("Launch Script").toString());
}

void Journey::abandonThePreferences() {
  hands_->choose({"editMenu", "doPreferences"});
  hands_->when("the preferences as they were stored", Preferences, [](const SeenWindow& seen) {
    return seen.text("checkVersionIntervalPopUp") == "Weekly" && seen.text("launchScriptField") == "true";
  });
  hands_->push(Preferences, "autoCheckVersionCheckBox");
  hands_->when("the check box to be turned on", Preferences, [](const SeenWindow& seen) {
    return seen.widget("autoCheckVersionCheckBox")["checked"].toBool();
  });
  hands_->pick(Preferences, "exportToPopUp", "OsiriX");
  hands_->cancel(Preferences);
  expect(!stored("Export to OsiriX").toBool() && !stored("Automatic Version Check").toBool(),
         "nothing stored after Cancel", "a setting has changed");
}

void Journey::cancelPageSetupAndPrinting() {
  hands_->choose({"fileMenu", "doPageSetup"});
  hands_->cancel("QPageSetupDialog");
  hands_->choose({"fileMenu", "doPrint"});
  hands_->cancel("QPrintDialog");
  document("nothing changed by it", [](const SeenWindow& seen) { return !isEdited(seen); });
}

void Journey::readAbout() {
  hands_->choose({"helpMenu", "doSplashAboutBox"});
  const SeenWindow about =
      hands_->when("the about window", "About", [](const SeenWindow& seen) { return seen.active(); });
  expect(about.text("nameField").startsWith("Growth "), "the program's name and version",
         about.text("nameField"));
  hands_->dismiss("About");
}

void Journey::exportABatch() {
  expect(!QFile::exists(chartPath()), "no chart yet", chartPath());
  hands_->choose({"fileMenu", "doBatchExport"});
  hands_->when("seven days", "BatchExport",
               [](const SeenWindow& seen) { return seen.text("howManyDaysField") == "7"; });
  hands_->fill("BatchExport", "howManyDaysField", "3");
  press("BatchExport", "Export");
  const QString folder = stage_.home() + "/Desktop";
  expect(velmora::testkit::waitUntil(Patience, [&] { return QFile::exists(chartPath()); }), chartPath(),
         velmora::testkit::fileNames(folder).join(", "));
  application_->person().waitUntilScreen(
      "one window",
      [](const QList<SeenWindow>& windows) { return windows.size() == 1 && is(windows.first(), Document); },
      Patience);
}

void Journey::openTheRecent() {
  // The batch has closed the record after its turn.
  document("a blank document",
           [](const SeenWindow& seen) { return seen.active() && seen.text("referenceIDField").isEmpty(); });
  hands_->choose({"fileMenu", "openRecentMenu", Identifier});
  const SeenWindow again = document("the record again", [](const SeenWindow& seen) {
    return seen.active() && seen.text("referenceIDField") == Identifier;
  });
  expect(again.text("examNumberField") == "2 of 2" && again.text("birthDateField") == "21 Jan 2019" &&
             again.text("sexPopUp") == "Male",
         "what was saved", again.summary());
}

void Journey::quit() {
  hands_->choose({"fileMenu", "doQuit"});
  application_->waitForGoodEnd(Patience);
}

void Journey::lookAtTheDisk() {
  const QJsonObject record = QJsonDocument::fromJson(velmora::testkit::readFile(recordPath())).object();
  const QString text = QString::fromUtf8(QJsonDocument(record).toJson(QJsonDocument::Compact));
  for (const char* part : {"\"12-345-6\"", "\"2019-01-21\"", "\"male\"", "\"2022-05-06\"", "14.6", "97.2",
                           "50.1", "\"2023-11-14\"", "17.6", "107.8", "50.9"})
    expect(text.contains(QLatin1String(part)), QLatin1String(part) + QString(" in the record"), text);
  expect(!text.contains("99.9"), "the deleted examination to be gone", text);

  const QStringList charts = velmora::testkit::fileNames(stage_.home() + "/Desktop");
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
