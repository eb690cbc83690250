// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTimeZone>

#include "bridge/dicom/Capture.h"
#include "bridge/testing/Orthanc.h"
#include "bridge/testing/SyntheticStudy.h"
#include "testing/web/WebDriver.h"

namespace {

using bridge::Study;
using velmora::testkit::WebDriver;

/// What would run if something of this were taken for HTML.
const QString Hostile =
    QStringLiteral("<img src=x onerror=\"window.ran=1\"><script>window.ran=1</script>'\"&amp;");

QJsonObject application(const char* name, const char* identifier) {
  return {{QStringLiteral("Name"), QLatin1String(name)},
          {QStringLiteral("BundleIdentifier"), QLatin1String(identifier)}};
}

bridge_testing::OrthancOptions optionsFor(const QJsonArray& applications) {
  bridge_testing::OrthancOptions options;
  options.dicomWeb = true;
  options.plugins = QStringList{QStringLiteral(VELMORA_ORTHANC)};
  options.more = {{QStringLiteral("DefaultEncoding"), QStringLiteral("Utf8")},
                  {QStringLiteral("Name"), QStringLiteral("Clinic")},
                  {QStringLiteral("Velmora"), QJsonObject{{QStringLiteral("Applications"), applications}}}};
  return options;
}

/// The JPEG of a chart, in one colour or another.
QByteArray jpegOf(Qt::GlobalColor colour) {
  QImage image(640, 480, QImage::Format_RGB32);
  image.fill(colour);
  QBuffer jpeg;
  jpeg.open(QBuffer::WriteOnly);
  EXPECT_TRUE(image.save(&jpeg, "JPEG"));
  return jpeg.data();
}

/// An Orthanc with the plugin, and a browser that looks at it.
class Page {
 public:
  explicit Page(const QJsonArray& applications = {})
      : orthanc_(optionsFor(applications)), browser_(QSize(1280, 1300)) {}

  WebDriver& browser() { return browser_; }

  /// A study with one image, as it is before anything was measured.
  Study addStudy(int number, const QString& patientName = QStringLiteral("Sample^Anna"),
                 const QString& uid = {}) {
    Study study = bridge_testing::inventedStudy(number);
    study.patientID = QStringLiteral("P-1");
    study.patientName = patientName;
    if (!uid.isEmpty()) study.studyInstanceUID = uid;
    orthanc_.put(bridge_testing::syntheticStudy(study));
    return study;
  }

  /// A chart of the study, as velmora-link stores it.
  void addChart(const Study& study, const QString& description, int number, const QDateTime& captured) {
    orthanc_.put(chart(study, description, number, captured, QStringLiteral(".9")));
  }

  /// A chart whose picture was damaged on its way.
  void addDamagedChart(const Study& study, const QString& description, int number,
                       const QDateTime& captured) {
    QByteArray file = chart(study, description, number, captured, QStringLiteral(".9"));
    ASSERT_TRUE(file.contains("\xff\xd8\xff"));
    orthanc_.put(file.replace("\xff\xd8\xff", "xxx"));
  }

  /// An object like a chart, from a device of somebody else.
  void addForeignCapture(const Study& study) {
    QByteArray file =
        chart(study, QStringLiteral("Foreign"), 1, QDateTime::currentDateTime(), QStringLiteral(".8"));
    orthanc_.put(file.replace("Velmora", "Another"));
  }

  /// Opens the study's page and waits until everything is there.
  void show(const Study& study) {
    QUrl address = orthanc_.url(QStringLiteral("/app/explorer.html"));
    address.setFragment(QStringLiteral("study?uuid=") + idOf(study));
    browser_.open(address);
    waitForCharts();
  }

  /// From one study to the next, as the browser's own back and forward do it.
  void goOnTo(const Study& study) {
    browser_.run(QStringLiteral("window.location.hash = '#study?uuid=' + arguments[0];"), {idOf(study)});
    browser_.waitUntil(QStringLiteral("document.querySelector('#velmora-measure a').href.includes('uid=%1')")
                           .arg(study.studyInstanceUID));
    waitForCharts();
  }

  QJsonValue run(const QString& body) { return browser_.run(body); }

  /// Keeps what the window shows in the folder that the environment names, if it does.
  void keepPicture(const QString& name) {
    const QString folder = qEnvironmentVariable("VELMORA_PAGE_PICTURES");
    if (folder.isEmpty()) return;
    QFile file(QDir(folder).filePath(name));
    ASSERT_TRUE(file.open(QFile::WriteOnly)) << qPrintable(file.errorString());
    file.write(browser_.screenshot());
  }

 private:
  static QByteArray chart(const Study& study, const QString& description, int number,
                          const QDateTime& captured, const QString& series) {
    bridge::CaptureIdentity identity;
    identity.seriesInstanceUID = study.studyInstanceUID + series;
    identity.sopInstanceUID = identity.seriesInstanceUID + QStringLiteral(".%1").arg(number);
    identity.instanceNumber = number;
    identity.seriesNumber = 9001;
    identity.captured = captured;
    const QByteArray jpeg = jpegOf(number % 2 == 1 ? Qt::darkCyan : Qt::darkYellow);
    const auto capture =
        bridge::secondaryCapture(study, {jpeg, description, QStringLiteral("org.velmora.growth")}, identity);
    EXPECT_TRUE(capture.ok()) << qPrintable(capture.error());
    return *capture;
  }

  /// Orthanc's own name for a study.
  QString idOf(const Study& study) const {
    const QByteArray found =
        orthanc_.post(QStringLiteral("/tools/lookup"), study.studyInstanceUID.toLatin1());
    return QJsonDocument::fromJson(found).array().first().toObject().value(QLatin1String("ID")).toString();
  }

  void waitForCharts() {
    browser_.waitUntil(QStringLiteral(R"(
      document.querySelectorAll('#velmora-measure > *').length > 0 &&
      document.querySelectorAll('#velmora-charts > li').length > 1 &&
      !document.querySelector('#velmora-charts').textContent.includes('Reading') &&
      document.querySelectorAll('#list-series > li').length > 0 &&
      [...document.querySelectorAll('#velmora-charts img')].every(image => image.complete))"));
  }

  bridge_testing::Orthanc orthanc_;
  WebDriver browser_;
};

QJsonArray array(std::initializer_list<QString> texts) {
  return QJsonArray::fromStringList(QStringList(texts));
}

TEST(StudyPage, OffersAButtonThatHandsTheStudyOver) {
  Page page;
  const Study study = page.addStudy(1);
  page.addForeignCapture(study);
  page.show(study);
  page.keepPicture(QStringLiteral("page-without-charts.png"));

  const QString link = QStringLiteral("velmora-link:study?uid=2.25.4711.1");
  EXPECT_EQ(page.run(QStringLiteral(
                "return [...document.querySelectorAll('#velmora-measure a')].map(a => a.href);")),
            QJsonValue(array({link})));
  EXPECT_EQ(page.run(QStringLiteral("return document.querySelector('#velmora-measure').innerText.trim();")),
            QJsonValue(QStringLiteral("Measure")));
  EXPECT_EQ(page.run(QStringLiteral("return document.querySelector('#velmora-charts').innerText;"))
                .toString()
                .simplified(),
            QStringLiteral("Charts There are no charts in this study."));

  // The Tab key gets there, and Enter opens the link: nothing on the page holds it up.
  page.run(QStringLiteral(R"(
    window.opened = null;
    window.addEventListener('click', event => {
      const link = event.target.closest('a');
      window.opened = { href: link.href, heldUp: event.defaultPrevented };
      event.preventDefault();
    });)"));
  bool reached = false;
  for (int presses = 0; presses < 30 && !reached; ++presses) {
    page.browser().press(WebDriver::Tab);
    reached = page.run(QStringLiteral("return document.activeElement.href === '%1';").arg(link)).toBool();
  }
  ASSERT_TRUE(reached);
  EXPECT_EQ(page.run(QStringLiteral("return getComputedStyle(document.activeElement).outlineStyle;")),
            QJsonValue(QStringLiteral("solid")));
  page.browser().press(WebDriver::Enter);
  EXPECT_EQ(page.run(QStringLiteral("return window.opened;")),
            QJsonValue(QJsonObject{{QStringLiteral("href"), link}, {QStringLiteral("heldUp"), false}}));
}

TEST(StudyPage, OffersNoButtonForAUidThatVelmoraLinkWouldRefuse) {
  Page page;
  page.show(page.addStudy(4, QStringLiteral("Sample^Anna"), QStringLiteral("12")));
  EXPECT_EQ(page.run(QStringLiteral("return document.querySelector('#velmora-measure').innerText.trim();")),
            QJsonValue(QStringLiteral("This study cannot be measured: its Study Instance UID is damaged.")));
}

TEST(StudyPage, ShowsTheChartsThatCameBackNewestFirst) {
  Page page;
  const Study study = page.addStudy(2);
  const Study other = page.addStudy(3);
  const QTimeZone zone(3600);
  page.addForeignCapture(study);
  page.addChart(study, QStringLiteral("Height"), 1, QDateTime(QDate(2024, 1, 2), QTime(11, 12, 13), zone));
  page.addChart(study, QStringLiteral("Größe"), 2, QDateTime(QDate(2024, 1, 3), QTime(9, 0), zone));
  page.addChart(study, QStringLiteral("Weight"), 3, QDateTime(QDate(2024, 1, 3), QTime(9, 0), zone));
  page.addChart(study, QStringLiteral("Head"), 4, QDateTime(QDate(2024, 1, 1), QTime(23, 59, 59), zone));
  page.show(study);
  page.keepPicture(QStringLiteral("page-with-charts.png"));

  const auto texts = [&](const char* selector, const char* property) {
    return page.run(
        QStringLiteral("return [...document.querySelectorAll('#velmora-charts %1')].map(each => each.%2);")
            .arg(QLatin1String(selector), QLatin1String(property)));
  };
  const auto headings = texts("h3", "textContent");
  EXPECT_EQ(headings, QJsonValue(array({QStringLiteral("Weight"), QStringLiteral("Größe"),
                                        QStringLiteral("Height"), QStringLiteral("Head")})));
  EXPECT_EQ(
      texts("li p", "textContent"),
      QJsonValue(array({QStringLiteral("2024-01-03 09:00:00"), QStringLiteral("2024-01-03 09:00:00"),
                        QStringLiteral("2024-01-02 11:12:13"), QStringLiteral("2024-01-01 23:59:59")})));
  EXPECT_EQ(texts("img", "naturalWidth"), QJsonValue(QJsonArray{640, 640, 640, 640}));
  EXPECT_EQ(texts("img", "naturalHeight"), QJsonValue(QJsonArray{480, 480, 480, 480}));
  EXPECT_EQ(texts("img", "alt").toArray().first().toString(),
            QStringLiteral("Preview of the chart \"Weight\", 2024-01-03 09:00:00"));
  // The two colours in which they were drawn.
  EXPECT_EQ(page.run(QStringLiteral(R"(
    return [...document.querySelectorAll('#velmora-charts img')].map(image => {
      const canvas = document.createElement('canvas');
      canvas.getContext('2d').drawImage(image, 0, 0);
      const [red, green, blue] = canvas.getContext('2d').getImageData(5, 5, 1, 1).data;
      return red > blue ? 'yellow' : 'cyan';
    });)")),
            QJsonValue(array({QStringLiteral("cyan"), QStringLiteral("yellow"), QStringLiteral("cyan"),
                              QStringLiteral("yellow")})));
  EXPECT_EQ(texts("a", "tabIndex"), QJsonValue(QJsonArray{0, 0, 0, 0}));

  page.goOnTo(other);
  EXPECT_EQ(texts("h3", "textContent"), QJsonValue(QJsonArray{}));
  page.goOnTo(study);
  EXPECT_EQ(texts("h3", "textContent"), headings);
  EXPECT_EQ(page.run(QStringLiteral("return document.querySelectorAll('#velmora-measure a').length;")),
            QJsonValue(1));
}

TEST(StudyPage, SaysWhichChartsItDoesNotShow) {
  Page page;
  const Study study = page.addStudy(5);
  const QDateTime first(QDate(2024, 1, 2), QTime(11, 12, 13), QTimeZone(0));
  for (int number = 1; number <= 51; ++number) {
    page.addChart(study, QStringLiteral("Chart %1").arg(number), number, first.addSecs(number));
  }
  page.addDamagedChart(study, QStringLiteral("Damaged"), 52, first.addSecs(52));
  page.show(study);
  page.browser().waitUntil(
      QStringLiteral("document.querySelector('.velmora-preview').textContent.length > 0"));

  const auto headings = page.run(QStringLiteral(
      "return [...document.querySelectorAll('#velmora-charts h3')].map(each => each.textContent);"));
  EXPECT_EQ(headings.toArray().size(), 50);
  EXPECT_EQ(headings.toArray().first().toString(), QStringLiteral("Damaged"));
  EXPECT_EQ(headings.toArray().last().toString(), QStringLiteral("Chart 3"));
  EXPECT_EQ(page.run(QStringLiteral(
                "return document.querySelector('#velmora-charts .velmora-preview').textContent;")),
            QJsonValue(QStringLiteral("There is no preview of this chart.")));
  EXPECT_EQ(page.run(QStringLiteral("return document.querySelectorAll('#velmora-charts img').length;")),
            QJsonValue(49));
  EXPECT_EQ(page.run(QStringLiteral(
                "return document.querySelector('#velmora-charts > li:last-child').textContent;")),
            QJsonValue(QStringLiteral("Older charts that are not shown here: 2")));
}

TEST(StudyPage, TakesNothingOfTheArchiveOrTheConfigurationForHtml) {
  Page page({application("Growth <b onclick=x>&amp;</script>", "org.velmora.growth"),
             application("Bad", "org&uid=1"), application("Bone age", "org.velmora.bones")});
  const Study study =
      page.addStudy(4, QStringLiteral("<script>window.ran=1</script>^<img src=x onerror=window.ran=1>"));
  page.addChart(study, Hostile.left(64), 1, QDateTime(QDate(2024, 1, 2), QTime(11, 12, 13), QTimeZone(0)));
  page.show(study);
  page.keepPicture(QStringLiteral("page-hostile.png"));

  EXPECT_EQ(page.run(QStringLiteral("return typeof window.ran;")), QJsonValue(QStringLiteral("undefined")));
  EXPECT_EQ(page.run(QStringLiteral("return document.querySelector('#velmora-charts h3').textContent;")),
            QJsonValue(Hostile.left(64)));
  EXPECT_EQ(page.run(QStringLiteral("return document.querySelectorAll('#velmora-charts img').length;")),
            QJsonValue(1));
  EXPECT_EQ(page.run(QStringLiteral("return document.querySelectorAll('#velmora-measure b').length;")),
            QJsonValue(0));
  EXPECT_EQ(
      page.run(QStringLiteral(
          "return [...document.querySelectorAll('#velmora-measure a')].map(a => a.textContent.trim());")),
      QJsonValue(array({QStringLiteral("Measure with Growth <b onclick=x>&amp;</script>"),
                        QStringLiteral("Measure with Bone age")})));
  EXPECT_EQ(page.run(QStringLiteral(
                "return [...document.querySelectorAll('#velmora-measure a')].map(a => a.href);")),
            QJsonValue(
                array({QStringLiteral("velmora-link:study?uid=2.25.4711.4&application=org.velmora.growth"),
                       QStringLiteral("velmora-link:study?uid=2.25.4711.4&application=org.velmora.bones")})));
}

}  // namespace
