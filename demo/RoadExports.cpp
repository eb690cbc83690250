// SPDX-License-Identifier: LGPL-3.0-or-later
// The part of the road on which charts leave the application, and what every step leans on.
#include "demo/Road.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonDocument>

#include "demo/Case.h"
#include "demo/ChartPicture.h"
#include "demo/Report.h"
#include "testing/files/Files.h"
#include "testing/waiting/Waiting.h"

namespace demo {

void Road::exportToTheViewer() {
  viewer_.listen(2);
  const SeenWindow document = application_->document();
  const QSize size = document.size("tabView");
  Program& process = application_->process();
  const qsizetype from = process.lines().size();

  exportChart();
  exportChart();
  const qint64 exported = process.waitForLine("Batch export to osirix", 5, from).at;
  const Viewer::Reply first = viewer_.nextReply(10);
  const Viewer::Reply second = viewer_.nextReply(15);
  viewer_.finished(5);

  expect(first.at - exported >= 950 && first.at - exported < 4000, "the first reply 1 s after the export",
         seconds(first.at - exported));
  expect(second.at - first.at >= 3900 && second.at - first.at < 9000, "the second reply 4 s after the first",
         seconds(second.at - first.at));
  report_.saw("replies " + seconds(first.at - exported) + " after the export and " +
              seconds(second.at - first.at) + " after that");

  checkReply(first, size);
  checkReply(second, size);
  report_.saw(QString("every key there, JPEG %1 x %2, %3 bytes")
                  .arg(size.width())
                  .arg(size.height())
                  .arg(first.jpeg.size()));
  shots("sent");
  // What the queue says of itself, in its order.
  qsizetype at = from;
  for (const char* said :
       {"Batch export to osirix", "Initialise delayed batch export", "Batch export to osirix",
        "Delayed batch export", "Sending notification to OsiriX plugin", "Queue next delayed batch export",
        "Delayed batch export", "Sending notification to OsiriX plugin", "Queue next delayed batch export"}) {
    while (at < process.lines().size() && !process.lines()[at].text.contains(QLatin1String(said))) ++at;
    expect(at < process.lines().size(), QString("the log line \"%1\" in its place").arg(QLatin1String(said)),
           "not there");
    ++at;
  }
  expect(QDir(stage_.home() + "/Desktop").isEmpty(), "no file in the export folder", "there is one");
}

void Road::exportToTheFolder() {
  sendChartsTo("A folder");
  expect(!stored("Export to OsiriX").toBool(), "the setting \"Export to OsiriX\" off", "on");
  report_.saw("the preferences send charts to the folder");
  const SeenWindow document = application_->document();
  person().turnTo(document, "tabView", "Weight");
  const QString folder = stage_.home() + "/Desktop";
  const QString name = SavedIdentifier + " Weight.jpg";
  const QString path = folder + '/' + name;

  exportChart();
  expect(waitUntil(10, [&] { return QFile::exists(path); }), "the file " + name + " in ~/Desktop",
         fileNames(folder).join(", "));
  const QByteArray weight = readFile(path);
  checkPicture(weight, document.size("tabView"));
  report_.saw(QString("~/Desktop/%1, %2 bytes").arg(name).arg(weight.size()));

  const QString exists = "A file with that name already exists";
  exportChart();
  person().waitFor("the question", [&](const SeenWindow& window) { return window.alertText() == exists; });
  shots("overwrite-question");
  const SeenWindow alert = person().answer(exists, "Skip");
  const QString information = "A file named '" + name + "' is already present in '" + folder + "/'.";
  expect(alert.alertInformation() == information, information, alert.alertInformation());
  expect(alert.buttons().contains("Overwrite"), "the answers Overwrite and Skip", alert.buttons().join('/'));
  expect(readFile(path) == weight, "the file as it was after \"Skip\"", "another one");

  // Another examination's weight makes another picture: now what is there is replaced.
  person().enter(document, "weightField", CorrectedWeight);
  exportChart();
  person().answer(exists, "Overwrite");
  expect(waitUntil(10, [&] { return readFile(path) != weight; }), "another picture after \"Overwrite\"",
         "the file as it was");
  checkPicture(readFile(path), document.size("tabView"));
  report_.saw("asked before overwriting: \"Skip\" left it, \"Overwrite\" replaced it");

  person().turnTo(document, "tabView", "Height");
  exportChart();
  const QString height = folder + '/' + SavedIdentifier + " Height.jpg";
  expect(waitUntil(10, [&] { return QFile::exists(height); }),
         SavedIdentifier + " Height.jpg for the other tab", fileNames(folder).join(", "));
  report_.saw("the Height tab has a file of its own");
  shots("exported");
}

void Road::checkReply(const Viewer::Reply& reply, const QSize& size) {
  checkPicture(reply.jpeg, size);
  const ChartPicture chart = ChartPicture::fromBytes(reply.jpeg);
  expect(chart.hasExaminationAt(firstMark_) && chart.hasExaminationAt(secondMark_) &&
             chart.referenceCurvesAt(0.5) >= 5,
         "both examinations over the reference in the picture", "not all of it");
  expect(reply.complaints.isEmpty(), "nothing wrong with the reply", reply.complaints);
  const auto text = [&](const char* key) { return reply.details[QLatin1String(key)].toString(); };
  const auto day = [&](const char* key) { return reply.details[QLatin1String(key)]["date"].toString(); };
  const QString seen = QString::fromUtf8(QJsonDocument(reply.details).toJson(QJsonDocument::Compact));
  expect(text("Identifier") == SavedIdentifier, "Identifier " + SavedIdentifier, seen);
  expect(text("Name") == FirstVisit.name, "Name " + FirstVisit.name, seen);
  expect(text("OsiriXStudyID") == FirstVisit.studyId, "OsiriXStudyID " + FirstVisit.studyId, seen);
  expect(text("StudyDescription") == "Growth Chart", "StudyDescription Growth Chart", seen);
  expect(day("DateOfBirth") == FirstVisit.birthDate.toString(Qt::ISODate),
         "DateOfBirth " + FirstVisit.birthDate.toString(Qt::ISODate), seen);
  expect(day("DateOfStudy") == SecondExamination.toString(Qt::ISODate),
         "DateOfStudy " + SecondExamination.toString(Qt::ISODate), seen);
}

void Road::exportChart() { person().choose(application_->document(), {"File", "Export"}); }

void Road::checkPicture(const QByteArray& jpeg, const QSize& size) {
  expect(
      jpeg.startsWith("\xff\xd8") && jpeg.endsWith("\xff\xd9"), "a JPEG file, FF D8 to FF D9",
      QString::fromLatin1(jpeg.left(4).toHex(' ')) + "..." + QString::fromLatin1(jpeg.right(2).toHex(' ')));
  const QImage image = QImage::fromData(jpeg, "JPG");
  expect(image.size() == size,
         QString("a picture of the tab view's size %1 x %2").arg(size.width()).arg(size.height()),
         QString("%1 x %2").arg(image.width()).arg(image.height()));
  expect(!ChartPicture::fromBytes(jpeg).ring(), "no ring in an exported picture", "the ring");
}

// The ring marks the examination that is shown; where it stands for one examination, the other's mark must be
// seen while that one is shown, and a click there must bring it up.
void Road::checkBothExaminationsInTheChart() {
  const SeenWindow document = application_->document();
  person().turnTo(document, "tabView", "Weight");
  const auto at = [&](const char* number) {
    application_->document(QString("\"%1\"").arg(QLatin1String(number)), [&](const SeenWindow& window) {
      return window.text("examNumberField") == QLatin1String(number);
    });
    const QString file = QString("%1/screens/03-chart-%2.png").arg(cast_.out, QLatin1String(number, 1));
    application_->probe().picture(document, file, "tabView");
    return ChartPicture::fromFile(file);
  };
  const ChartPicture secondShown = at("2 of 2");
  person().push(document, "previousStudyButton");
  const ChartPicture firstShown = at("1 of 2");
  const std::optional<QPoint> second = secondShown.ring();
  const std::optional<QPoint> first = firstShown.ring();
  expect(first && second && *first != *second, "the ring around another examination after a step",
         first && second ? "the ring in the same place" : "no ring");
  expect(firstShown.hasExaminationAt(*second) && secondShown.hasExaminationAt(*first),
         "the mark of the examination that is not shown", "none where it was");
  firstMark_ = *first;
  secondMark_ = *second;
  const int curves = secondShown.referenceCurvesAt(0.5);
  expect(curves >= 5, "reference curves in the chart", QString("%1 lines").arg(curves));
  report_.saw(QString("both examinations in the chart, over %1 reference curves").arg(curves));

  const auto clickOn = [&](const QPoint& pixel, const char* number) {
    person().clickAt(document, "tabView", pixel / document.pixelRatio());
    application_->document(
        QString("\"%1\" after a click on its mark").arg(QLatin1String(number)),
        [&](const SeenWindow& window) { return window.text("examNumberField") == QLatin1String(number); });
  };
  clickOn(*second, "2 of 2");
  clickOn(*first, "1 of 2");
  clickOn(*second, "2 of 2");
  report_.saw("a click on a mark brings its examination up");
}

void Road::quit(bool unsavedChanges) {
  person().choose(application_->document(), {"File", "Quit"});
  if (unsavedChanges) {
    const SeenWindow alert = person().waitFor("the question about the changes", [](const SeenWindow& window) {
      return window.alertText() == "Save changes to document?";
    });
    shots("quit-question");
    person().press(alert, "Save");
  }
  application_->waitForGoodEnd(15);
}

void Road::shots(const QString& shot) {
  const QString prefix = QString("%1-%2-").arg(report_.number(), 2, 10, QChar(u'0')).arg(shot);
  if (stage_.hasVirtualScreen())  // on a user's own screen there are things that are not the demonstration's
    application_->probe().ask({{"do", "screen"}, {"file", cast_.out + "/screens/" + prefix + "screen.png"}});
  const QJsonObject answer =
      application_->probe().ask({{"do", "shots"}, {"folder", cast_.out + "/screens"}, {"prefix", prefix}});
  expect(answer["ok"].toBool(), "pictures of the windows", answer["error"].toString());
}

void Road::keepEverything(const QString& shot) {
  const auto keep = [](const QString& from, const QString& to) {
    for (const QString& name : fileNames(from)) QFile::copy(from + '/' + name, to + '/' + name);
  };
  keep(stage_.home() + "/Desktop", cast_.out + "/export");
  keep(stage_.home() + "/Documents/Growth Data", cast_.out + "/records");
  if (!shot.isEmpty() && application_ && application_->process().running()) {
    shots(shot);
    report_.trace("screen", person().screen());
  }
}

void Road::expectText(const SeenWindow& window, const QString& widget, const QString& text) {
  expect(window.text(widget) == text, widget + " \"" + text + '"', '"' + window.text(widget) + '"');
}

void Road::expectNoPanelSince(qsizetype before) {
  const QList<ProbeClient::News>& news = application_->probe().news();
  for (qsizetype i = before; i < news.size(); ++i)
    expect(!news[i].window["panel"].toBool(), "no panel", news[i].window["title"].toString());
}

}  // namespace demo
