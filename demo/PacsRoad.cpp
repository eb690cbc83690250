// SPDX-License-Identifier: LGPL-3.0-or-later
#include "demo/PacsRoad.h"

#include <QJsonArray>
#include <QJsonDocument>

#include "bridge/testing/SyntheticStudy.h"
#include "demo/Case.h"
#include "demo/Report.h"
#include "testing/files/Files.h"
#include "testing/waiting/Waiting.h"
#include "testing/web/WebDriver.h"

namespace demo {

namespace {

/// The first visit of the demonstration's patient, as an archive holds it.
bridge::Study studyInTheArchive() {
  bridge::Study study = bridge_testing::inventedStudy();
  study.studyInstanceUID = FirstVisit.studyId;
  study.patientID = FirstVisit.identifier;
  study.patientName = "Doe^Robin";
  study.sex = "M";
  study.birthDate = FirstVisit.birthDate;
  study.studyDate = FirstVisit.studyDate;
  study.accessionNumber = "ACC-4711";
  study.description = "Growth check";
  return study;
}

bridge_testing::OrthancOptions archiveOptions(const QString& plugin, const QString& application) {
  bridge_testing::OrthancOptions options;
  options.plugins = {plugin};
  options.more = {
      {"Name", "Demonstration"},
      {"Velmora", QJsonObject{{"Applications", QJsonArray{QJsonObject{{"Name", "Growth"},
                                                                      {"BundleIdentifier", application}}}}}}};
  return options;
}

constexpr int PixelsOfTheImage = 256;

}  // namespace

PacsRoad::PacsRoad(Report& report, Stage& stage, const Cast& cast, const QString& plugin)
    : Road(report, stage, cast),
      archive_(archiveOptions(plugin, cast.applicationIdentifier)),
      study_(studyInTheArchive()) {}

void PacsRoad::play() {
  playStep(1, "an archive holds one synthetic study", [this] { fillTheArchive(); });
  playStep(2, "velmora-link is set up", [this] { startTheService(); });
  playStep(3, "the application is started", [this] { startTheApplication(); });
  playStep(4, "the study is chosen on the archive's page", [this] { chooseOnThePage(); });
  playStep(5, "an examination is recorded", [this] { recordOneExamination(); });
  playStep(6, "the chart goes back", [this] { chartGoesBack(); });
  playStep(7, "the stored object is looked at", [this] { checkTheStoredObject(); });
  playStep(8, "the archive's page shows the chart", [this] { lookAtThePage(); });
  playStep(9, "all is ended, and nothing is left over", [this] { endAndTakeStock(); });
}

void PacsRoad::fillTheArchive() {
  archive_.put(bridge_testing::syntheticStudy(study_, 1, PixelsOfTheImage));
  const QStringList held = archive_.instances();
  expect(held == QStringList{bridge_testing::syntheticUID(study_)}, "one image in the archive",
         held.join(", "));
  keep("study.dcm", archive_.fileOf(held.first()));
  report_.saw(QString("Orthanc on loopback, DICOM port %1").arg(archive_.dicomPort()));
  report_.saw("study " + study_.studyInstanceUID + " of patient " + study_.patientID + ", one image");
}

void PacsRoad::startTheService() {
  const bridge::PacsSettings pacs = archive_.dimse();
  writeFile(stage_.home() + "/.config/velmora-link/velmora-link.conf",
            QString("[pacs]\nhost = %1\nport = %2\ncalled-ae-title = %3\ncalling-ae-title = %4\n"
                    "[link]\napplications = %5\ncharts-without-patient = %5\n")
                .arg(pacs.host)
                .arg(pacs.port)
                .arg(pacs.calledAETitle, pacs.callingAETitle, cast_.applicationIdentifier)
                .toUtf8());
  service_ = std::make_unique<Program>("service", cast_.link, stage_.environment(), report_.tracer());
  service_->start({"serve"});
  service_->waitForLine("listening", 20);
  const QString answers = link({"check"});
  expect(!answers.contains("wrong"), "\"velmora-link check\" to find nothing wrong", answers);
  report_.saw("\"velmora-link check\" finds everything in order: configuration, spool, bus, server, archive");
}

void PacsRoad::startTheApplication() {
  start();
  person().answer("Periodically check for updates?", "Don't Check", 20);
  person().answer("Set Up Database?", "Yes");
  application_->document(20);
  person().waitUntilGone("About");
  sendChartsTo("OsiriX");
  report_.saw("a blank document is open, charts go to the viewer");
}

void PacsRoad::chooseOnThePage() {
  const QJsonValue link =
      page("document.querySelector('#velmora-measure a') !== null",
           "return document.querySelector('#velmora-measure a').getAttribute('href');", "before");
  expect(link.toString().startsWith("velmora-link:study?uid=" + study_.studyInstanceUID),
         "the page's button to name the study", link.toString());
  report_.saw("the page's button is the link " + link.toString());

  this->link({"open", link.toString()});
  const SeenWindow document = application_->document(
      "the identifier " + SavedIdentifier,
      [](const SeenWindow& window) { return window.text("referenceIDField") == SavedIdentifier; }, 10);
  expectText(document, "birthDateField", shown(study_.birthDate));
  expectText(document, "examDateField", shown(study_.studyDate));
  expect(document.text("nameField").contains("Doe") && document.text("nameField").contains("Robin"),
         "the patient's name", document.text("nameField"));
  report_.saw("\"velmora-link open\" fills the document: " + SavedIdentifier + ", " +
              document.text("nameField") + ", born " + document.text("birthDateField"));
  shots("filled");
}

void PacsRoad::recordOneExamination() {
  const SeenWindow document = application_->document();
  person().pick(document, "sexPopUp", "Male");
  person().enter(document, "weightField", First.weight);
  person().enter(document, "heightField", First.height);
  person().enter(document, "headField", First.head);
  const SeenWindow measured = application_->document("a result for the weight", [](const SeenWindow& window) {
    return !window.text("weightResultField").isEmpty();
  });
  report_.saw(First.weight + " kg: " + measured.text("weightResultField"));
  shots("measured");
}

void PacsRoad::chartGoesBack() {
  // A second listener on the bus keeps what the application sends, for comparison with what is stored.
  viewer_.listen(1);
  exportChart();
  const Viewer::Reply reply = viewer_.nextReply(20);
  viewer_.finished(5);
  expect(reply.details["OsiriXStudyID"].toString() == study_.studyInstanceUID, "the study's UID in the reply",
         QString::fromUtf8(QJsonDocument(reply.details).toJson(QJsonDocument::Compact)));
  sent_ = reply.jpeg;
  service_->waitForLine("stored", 30);
  QStringList held = archive_.instancesOf(study_.studyInstanceUID);
  expect(held.size() == 2 && held.removeOne(bridge_testing::syntheticUID(study_)),
         "the image and one object more in the study", held.join(", "));
  storedUid_ = held.first();
  expect(archive_.instances().size() == 2, "nothing outside the study", archive_.instances().join(", "));
  report_.saw(QString("a chart of %1 bytes left the application").arg(sent_.size()));
  report_.saw("the study in the archive has the new object " + storedUid_);
  shots("sent");
}

void PacsRoad::checkTheStoredObject() {
  const QString instance = idOf(storedUid_);
  const QJsonObject tags = archive_.get("/instances/" + instance + "/simplified-tags").object();
  const QJsonObject image =
      archive_.get("/instances/" + idOf(bridge_testing::syntheticUID(study_)) + "/simplified-tags").object();
  for (const char* same : {"PatientID", "PatientName", "PatientBirthDate", "PatientSex", "StudyInstanceUID",
                           "StudyDate", "AccessionNumber", "StudyID"})
    expect(tags[QLatin1String(same)] == image[QLatin1String(same)],
           QString(same) + " as in the study's image", tags[QLatin1String(same)].toString());
  const auto expectTag = [&](const char* name, const char* value) {
    const QString seen = tags[QLatin1String(name)].toString();
    expect(seen == QLatin1String(value), QString("%1 %2").arg(QLatin1String(name), QLatin1String(value)),
           seen);
  };
  expectTag("SOPClassUID", "1.2.840.10008.5.1.4.1.1.7");
  expectTag("Modality", "OT");
  expectTag("ConversionType", "WSD");
  expectTag("BurnedInAnnotation", "NO");
  expectTag("SeriesDescription", "Growth Chart");
  expect(tags["SeriesInstanceUID"] != image["SeriesInstanceUID"], "a series of its own", "the image's");
  report_.saw("patient and study as in the image, a series of its own");

  QByteArray frame = archive_.getBytes("/instances/" + instance + "/frames/0/raw");
  // PS3.5 A.4: an odd number of bytes has one more, so that it is even.
  if (frame.size() == sent_.size() + 1 && frame.endsWith('\0')) frame.chop(1);
  expect(frame == sent_, "the frame's bytes to be those that the application sent",
         QString("%1 bytes, and %2").arg(frame.size()).arg(sent_.size()));
  report_.saw("the frame is the chart, byte by byte");

  keep("capture.dcm", archive_.fileOf(storedUid_));
  Program validator("dciodvfy", "dciodvfy", stage_.environment(), report_.tracer());
  expect(validator.run({cast_.out + "/capture.dcm"}) == 0, "dciodvfy to take the object", validator.ending());
  for (const Program::Line& line : validator.lines())
    expect(!line.text.contains("Error") && !line.text.contains("Warning"), "nothing from dciodvfy",
           line.text);
  report_.saw("dciodvfy has neither error nor warning");
}

void PacsRoad::lookAtThePage() {
  const QJsonValue charts = page(
      "[...document.querySelectorAll('#velmora-charts img')].filter(i => i.naturalWidth > 0).length > 0",
      "return [...document.querySelectorAll('#velmora-charts h3')].map(each => each.textContent);", "after");
  expect(charts == QJsonArray{"Growth Chart"}, "one chart, \"Growth Chart\"",
         QString::fromUtf8(QJsonDocument(charts.toArray()).toJson(QJsonDocument::Compact)));
  report_.saw("one chart with its preview, \"Growth Chart\"");
}

void PacsRoad::endAndTakeStock() {
  quit(true);
  const QJsonObject status = QJsonDocument::fromJson(link({"status", "--json"}).toUtf8()).object();
  const auto count = [&](const char* kind) { return status[QLatin1String(kind)]["count"].toInt(); };
  expect(count("waiting") == 0 && count("stored") == 1 && count("setAside") == 0,
         "nothing waiting, one stored, nothing set aside",
         QString("%1, %2, %3").arg(count("waiting")).arg(count("stored")).arg(count("setAside")));
  const QString stored = status["stored"]["items"][0]["sopInstanceUID"].toString();
  expect(stored == storedUid_, "the stored object in the list", stored);
  service_->terminate();
  service_.reset();
  report_.saw("\"velmora-link status\": nothing waits, one stored as " + stored + ", nothing set aside");
}

void PacsRoad::keepEverything(const QString& shot) {
  Road::keepEverything(shot);
  keep("orthanc.log", archive_.log());
}

QString PacsRoad::link(const QStringList& arguments) {
  Program program("velmora-link", cast_.link, stage_.environment(), report_.tracer());
  if (program.run(arguments) != 0)
    throw Differs("velmora-link " + arguments.first() + " to end with 0",
                  program.ending() + ", " + program.output());
  return program.output();
}

QJsonValue PacsRoad::page(const QString& until, const QString& script, const QString& picture) {
  velmora::testkit::WebDriver browser(QSize(1280, 1024));
  browser.open(
      QUrl(archive_.url("/app/explorer.html").toString() + "#study?uuid=" + idOf(study_.studyInstanceUID)));
  browser.waitUntil(until);
  const QJsonValue answer = browser.run(script);
  const QString name = QString("%1-page-%2.png").arg(report_.number(), 2, 10, QChar(u'0')).arg(picture);
  keep("screens/" + name, browser.screenshot());
  return answer;
}

QString PacsRoad::idOf(const QString& uid) const {
  const QJsonArray found = QJsonDocument::fromJson(archive_.post("/tools/lookup", uid.toUtf8())).array();
  if (found.size() != 1) throw Differs(uid + " once in the archive", QString("%1 times").arg(found.size()));
  return found.first()["ID"].toString();
}

void PacsRoad::keep(const QString& name, const QByteArray& contents) const {
  writeFile(cast_.out + '/' + name, contents);
}

}  // namespace demo
