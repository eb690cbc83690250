// SPDX-License-Identifier: LGPL-3.0-or-later
// The part of the road on which every record of the last days is exported.
#include <QDateTime>
#include <QDir>
#include <QFile>

#include "demo/Case.h"
#include "demo/Report.h"
#include "demo/Road.h"
#include "testing/files/Files.h"
#include "testing/waiting/Waiting.h"

namespace demo {

// Another child's record, with one examination, saved and closed.
void Road::recordAnotherPatient(const Study& study, const QString& weight) {
  const QString folder = stage_.home() + "/Documents/Growth Data/";
  viewer_.pick(study);
  const SeenWindow document = application_->document(
      "the identifier " + study.identifier,
      [&](const SeenWindow& w) { return w.text("referenceIDField") == study.identifier; });
  person().pick(document, "sexPopUp", "Female");
  person().enter(document, "weightField", weight);
  person().choose(document, {"File", "Close"});
  person().answer("Save changes to document?", "Save");
  expect(waitUntil(10, [&] { return QFile::exists(folder + study.identifier + ".growth"); }),
         "the record of " + study.identifier, fileNames(folder).join(", "));
  application_->document("a blank document",
                         [](const SeenWindow& w) { return w.text("referenceIDField").isEmpty(); });
}

// Three records of today, one of them in a folder of its own, and what must not be exported beside them.
void Road::prepareTheSaveFolder() {
  person().choose(application_->document(), {"File", "Close"});
  person().answer("Save changes to document?", "Save");
  application_->document("a blank document",
                         [](const SeenWindow& w) { return w.text("referenceIDField").isEmpty(); });
  recordAnotherPatient(SecondPatient, "9.8");
  recordAnotherPatient(ThirdPatient, "25.4");

  QDir folder(stage_.home() + "/Documents/Growth Data");
  const QString third = ThirdPatient.identifier + ".growth";
  expect(folder.mkdir("2025") && folder.rename(third, "2025/" + third), "to move a record into a folder",
         "it was not possible");
  const QString old = folder.filePath("old.growth");
  writeFile(old, readFile(folder.filePath(RecordName)));
  setModified(old, QDateTime::currentDateTime().addDays(-8));
  writeFile(folder.filePath("notes.txt"), {});
}

void Road::exportThreeRecords() {
  prepareTheSaveFolder();
  const QString folder = stage_.home() + "/Desktop";
  expect(fileNames(folder).size() == 2, "the two charts of before in ~/Desktop",
         fileNames(folder).join(", "));
  const qsizetype before = application_->probe().news().size();

  person().choose(application_->document(), {"File", "Batch Export..."});
  const SeenWindow batch = person().active("BatchExport");
  expectText(batch, "howManyDaysField", "7");
  person().push(batch, "eraseOldFilesCheckBox");
  shots("batch");
  person().press(batch, "Export");

  const QStringList charts{SavedIdentifier + " Weight.jpg", SecondPatient.identifier + " Weight.jpg",
                           ThirdPatient.identifier + " Weight.jpg"};
  expect(waitUntil(20, [&] { return fileNames(folder) == charts; }),
         charts.join(", ") + " alone in ~/Desktop", fileNames(folder).join(", "));
  const SeenWindow blank =
      application_->document("a blank document and nothing else",
                             [&](const SeenWindow& w) { return w.text("referenceIDField").isEmpty(); });
  person().waitUntilScreen("one window",
                           [](const QList<SeenWindow>& windows) { return windows.size() == 1; });
  for (const QString& chart : charts) checkPicture(readFile(folder + '/' + chart), blank.size("tabView"));
  int opened = 0;
  bool progress = false;
  const QList<ProbeClient::News>& news = application_->probe().news();
  for (qsizetype i = before; i < news.size(); ++i) {
    expect(news[i].window["class"] != "QMessageBox", "no question", news[i].window["title"].toString());
    if (news[i].shown && news[i].window["name"] == "VelmoraDocument") ++opened;
    if (news[i].shown && news[i].window["name"] == "BatchProgress") progress = true;
  }
  expect(opened == 3, "three records opened and closed", QString::number(opened));
  expect(progress, "a window that shows how far it is", "none");
  report_.saw("three records of the last 7 days, one in a sub-folder: " + charts.join(", "));
  report_.saw("the charts of before erased, the record of eight days ago left alone, no question");
  shots("batch-done");
}

}  // namespace demo
