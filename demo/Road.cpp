// SPDX-License-Identifier: LGPL-3.0-or-later
#include "demo/Road.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "demo/Case.h"
#include "demo/Report.h"
#include "testing/files/Files.h"
#include "testing/waiting/Waiting.h"

namespace demo {

Road::Road(Report& report, Stage& stage, const Cast& cast)
    : report_(report),
      stage_(stage),
      cast_(cast),
      viewer_(report, stage, cast.link, cast.applicationIdentifier, cast.out + "/viewer") {
  for (const char* folder : {"viewer", "export", "records", "screens"})
    if (!QDir(cast.out).mkpath(folder))
      throw Differs("to make " + cast.out + '/' + folder, "it was not possible");
}

void Road::play() {
  struct Step {
    const char* title;
    void (Road::*play)();
  };
  const Step steps[] = {{"first start on an empty home", &Road::startForTheFirstTime},
                        {"a study is picked in the viewer", &Road::fillFromTheViewer},
                        {"two examinations are recorded", &Road::recordTwoExaminations},
                        {"the preferences send charts to the viewer", &Road::sendChartsToTheViewer},
                        {"the plugin is installed", &Road::installThePlugin},
                        {"the chart goes to the viewer", &Road::exportToTheViewer},
                        {"the record is closed and saved", &Road::closeAndSave},
                        {"the patient comes back", &Road::reopenFromTheViewer},
                        {"the chart goes to the export folder", &Road::exportToTheFolder},
                        {"three records are exported at once", &Road::exportThreeRecords},
                        {"quit, start again, look the patient up", &Road::startAgain},
                        {"a start-up script fails", &Road::startWithAFailingScript}};
  int number = 0;
  for (const Step& step : steps) playStep(++number, step.title, [&] { (this->*step.play)(); });
}

void Road::playStep(int number, const char* title, const std::function<void()>& step) {
  report_.begin(number, title);
  step();
  report_.passed();
}

void Road::start() {
  application_.reset();
  application_ = std::make_unique<ProbedApplication>(report_.tracer(), stage_, cast_.application);
}

void Road::startForTheFirstTime() {
  start();
  const SeenWindow question = person().waitFor(
      "the first question", [](const SeenWindow& window) { return window.isAlert(); }, 20);
  shots("first-question");
  expect(question.alertText() == "Periodically check for updates?",
         "\"Periodically check for updates?\" first", question.summary());
  person().answer("Periodically check for updates?", "Don't Check");
  person().waitFor("the second question",
                   [](const SeenWindow& window) { return window.alertText() == "Set Up Database?"; });
  shots("second-question");
  person().answer("Set Up Database?", "Yes");
  report_.saw("both questions asked and answered");

  person().waitFor("the splash", [](const SeenWindow& window) { return window.name() == "About"; });
  application_->waitForStatus("Caching database...", 5);
  shots("splash");
  application_->waitForStatus(QString(), 5);
  person().waitUntilGone("About");
  qint64 opened = 0;
  qint64 closed = 0;
  for (const ProbeClient::News& news : application_->probe().news())
    if (news.window["name"] == "About") (news.shown ? opened : closed) = news.at;
  expect(closed - opened >= 2950 && closed - opened < 5000, "the splash to stay 3 s",
         seconds(closed - opened));
  report_.saw("status \"Caching database...\", then empty");
  report_.saw("splash closed itself after " + seconds(closed - opened));

  const QString folder = stage_.home() + "/Documents/Growth Data";
  expect(QFileInfo(folder).isDir(), "the folder ~/Documents/Growth Data", "none");
  const SeenWindow document = application_->document();
  expect(document.text("referenceIDField").isEmpty(), "a blank document", document.summary());
  report_.saw("~/Documents/Growth Data made, blank document open");
  shots("blank-document");
}

void Road::fillFromTheViewer() {
  viewer_.pick(FirstVisit);
  const SeenWindow document = application_->document(
      "the identifier " + SavedIdentifier,
      [](const SeenWindow& window) { return window.text("referenceIDField") == SavedIdentifier; });
  expectText(document, "birthDateField", shown(FirstVisit.birthDate));
  expectText(document, "examDateField", shown(FirstVisit.studyDate));
  expectText(document, "nameField", FirstVisit.name);
  expectText(document, "examNumberField", "1 of 1");
  report_.saw("identifier reads " + SavedIdentifier);
  report_.saw("born " + document.text("birthDateField") + ", examined " + document.text("examDateField") +
              ", name " + document.text("nameField"));
  shots("filled");
}

void Road::recordTwoExaminations() {
  SeenWindow document = application_->document();
  person().pick(document, "sexPopUp", "Male");
  person().enter(document, "weightField", First.weight);
  person().enter(document, "heightField", First.height);
  person().enter(document, "headField", First.head);
  document = application_->document("a result for the weight", [](const SeenWindow& window) {
    return !window.text("weightResultField").isEmpty();
  });
  const QString firstResult = document.text("weightResultField");
  report_.saw(First.weight + " kg: " + firstResult);

  person().push(document, "newStudyButton");
  document = application_->document("\"2 of 2\"", [](const SeenWindow& window) {
    return window.text("examNumberField") == "2 of 2" && window.text("weightField").isEmpty();
  });
  person().typeOver(document, "examDateField", shown(SecondExamination));
  person().enter(document, "weightField", Second.weight);
  person().enter(document, "heightField", Second.height);
  person().enter(document, "headField", Second.head);
  const auto second = [&](const SeenWindow& window) {
    return window.text("examNumberField") == "2 of 2" && window.text("weightField") == Second.weight &&
           window.text("heightField") == Second.height && window.text("headField") == Second.head &&
           window.text("examDateField") == shown(SecondExamination);
  };
  const auto first = [&](const SeenWindow& window) {
    return window.text("examNumberField") == "1 of 2" && window.text("weightField") == First.weight &&
           window.text("heightField") == First.height && window.text("headField") == First.head &&
           window.text("examDateField") == shown(FirstVisit.studyDate) &&
           window.text("weightResultField") == firstResult;
  };
  application_->document("the second examination", second);
  person().push(document, "previousStudyButton");
  application_->document("the first examination again", first);
  person().push(document, "nextStudyButton");
  application_->document("the second examination again", second);
  report_.saw("stepped back to 1 of 2 and forth to 2 of 2");
  checkBothExaminationsInTheChart();
  shots("two-examinations");
}

void Road::closeAndSave() {
  const qsizetype before = application_->probe().news().size();
  const QString path = stage_.home() + "/Documents/Growth Data/" + RecordName;
  expect(!QFile::exists(path), "no data file yet", path);
  const SeenWindow record = application_->document();
  person().choose(record, {"File", "Close"});
  person().waitFor("the question", [](const SeenWindow& window) {
    return window.alertText() == "Save changes to document?";
  });
  shots("save-question");
  const SeenWindow alert = person().answer("Save changes to document?", "Save");
  expect(alert.buttons().contains("Don't Save") && alert.buttons().contains("Cancel"),
         "the answers Save, Don't Save and Cancel", alert.buttons().join('/'));
  const SeenWindow blank = application_->document("a new blank document", [&](const SeenWindow& window) {
    return window.id() != record.id() && window.text("referenceIDField").isEmpty();
  });
  person().waitUntilGone(record);
  expect(QFileInfo(path).size() > 0, "the record at ~/Documents/Growth Data/" + RecordName,
         fileNames(stage_.home() + "/Documents/Growth Data").join(", "));
  expectNoPanelSince(before);
  report_.saw(QString("~/Documents/Growth Data/%1 of %2 bytes").arg(RecordName).arg(QFileInfo(path).size()));
  report_.saw("no panel shown, a blank document in its place");
  shots("closed");
}

void Road::reopenFromTheViewer() {
  const int blank = application_->document().id();
  viewer_.pick(LaterVisit);
  const SeenWindow document =
      application_->document("the saved record with a third examination", [&](const SeenWindow& window) {
        return window.id() != blank && window.text("examNumberField") == "3 of 3";
      });
  expectText(document, "referenceIDField", SavedIdentifier);
  expectText(document, "birthDateField", shown(FirstVisit.birthDate));
  application_->document("the request's study date", [](const SeenWindow& window) {
    return window.text("examDateField") == shown(LaterVisit.studyDate);
  });
  person().waitUntilScreen("the record in place of the blank document",
                           [&](const QList<SeenWindow>& windows) {
                             return windows.size() == 1 && windows.first().id() == document.id();
                           });
  person().enter(document, "weightField", Third.weight);
  person().enter(document, "heightField", Third.height);
  person().push(document, "previousStudyButton");
  const SeenWindow second =
      application_->document("the second examination as it was saved", [](const SeenWindow& window) {
        return window.text("examNumberField") == "2 of 3" && window.text("weightField") == Second.weight;
      });
  expectText(second, "examDateField", shown(SecondExamination));
  person().push(document, "nextStudyButton");
  application_->document("the third examination", [](const SeenWindow& window) {
    return window.text("examNumberField") == "3 of 3" && window.text("weightField") == Third.weight;
  });
  report_.saw("\"" + document.title() + "\" opened in place of the blank document");
  report_.saw("3 of 3, examined " + shown(LaterVisit.studyDate));
  shots("reopened");
}

void Road::lookThePatientUp(const QString& weight, const QString& shot) {
  const SeenWindow blank = application_->document();
  person().enter(blank, "referenceIDField", SavedIdentifier);
  person().waitFor("the question",
                   [](const SeenWindow& window) { return window.alertText() == "Patient Data Found"; });
  if (!shot.isEmpty()) shots(shot);
  const SeenWindow alert = person().answer("Patient Data Found", "Open");
  const QString information = "A previously saved data file is available for patient '" + SavedIdentifier +
                              "'.  Would you like to open it?";
  expect(alert.alertInformation() == information, information, alert.alertInformation());
  const SeenWindow opened = application_->document("the saved record", [&](const SeenWindow& window) {
    return window.id() != blank.id() && window.text("examNumberField") == "3 of 3";
  });
  expectText(opened, "referenceIDField", SavedIdentifier);
  expectText(opened, "weightField", weight);
}

void Road::startAgain() {
  application_->process().waitForLine("Zero items in array, exiting",
                                      6);  // the end of the exports to the viewer
  lookThePatientUp(CorrectedWeight, {});
  person().enter(application_->document(), "weightField", FinalWeight);
  quit(true);
  report_.saw("quit with \"Save\", exit code 0");
  start();
  application_->document(20);
  application_->waitForStatus("Caching database...", 10);
  application_->waitForStatus(QString(), 5);
  for (const ProbeClient::News& news : application_->probe().news())
    expect(news.window["class"] != "QMessageBox", "no question at the second start",
           news.window["title"].toString());
  lookThePatientUp(FinalWeight, "patient-found");
  report_.saw("typed identifier offered the saved file, opened with 3 of 3, " + FinalWeight + " kg");
  shots("found-again");
  quit(false);
  report_.saw("quit again, exit code 0");
}

}  // namespace demo
