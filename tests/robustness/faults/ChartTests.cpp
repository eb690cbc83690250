// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Charts of windows that nobody sees, and of values that nobody has.
#include <gtest/gtest.h>

#include <QComboBox>
#include <QElapsedTimer>
#include <QImage>
#include <QProcess>
#include <QTabWidget>
#include <QTest>
#include <cmath>
#include <limits>

#include "apps/growth/document/GrowthCharts.h"
#include "orv/chart/OrvGraphView.h"
#include "tests/robustness/faults/GrowthDesk.h"

using faults::GrowthDesk;

namespace {

class ChartExport : public testing::Test {
 protected:
  QTabWidget* tabs(GrowthDocument& document) const {
    return document.window()->findChild<QTabWidget*>(QStringLiteral("tabView"));
  }
  QString chart(const QString& identifier = QStringLiteral("A1")) const {
    return desk.exportFolder() + QStringLiteral("/%1 Weight.jpg").arg(identifier);
  }
  QImage exported(GrowthDocument& document) {
    QFile::remove(chart());
    document.doExport(false);
    return QImage(chart());
  }
  /// Something is drawn on white: many pixels of each.
  static void expectSane(const QImage& picture) {
    ASSERT_FALSE(picture.isNull());
    int white = 0;
    int dark = 0;
    for (int y = 0; y < picture.height(); ++y) {
      for (int x = 0; x < picture.width(); ++x) {
        const int grey = qGray(picture.pixel(x, y));
        if (grey > 250) ++white;
        if (grey < 100) ++dark;
      }
    }
    EXPECT_GT(white, picture.width() * picture.height() / 4);
    EXPECT_GT(dark, 500);
  }

  GrowthDesk desk;
};

TEST_F(ChartExport, OfAWindowThatIsHiddenMinimisedOrWasNeverShownIsTheSamePicture) {
  GrowthDocument& document = desk.newRecord(QStringLiteral("A1"));
  QWidget* window = document.window();
  window->resize(900, 700);
  window->show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
  const QImage shown = exported(document);
  expectSane(shown);
  EXPECT_EQ(shown.size(), tabs(document)->size());
  window->hide();
  EXPECT_EQ(exported(document), shown) << "hidden";
  window->showMinimized();
  EXPECT_EQ(exported(document), shown) << "minimised";

  desk.closeAll();
  GrowthDocument& unseen = desk.newRecord(QStringLiteral("A1"));
  expectSane(exported(unseen));
}

TEST_F(ChartExport, OfAChartOfNoSizeMakesNoFile) {
  GrowthDocument& document = desk.newRecord(QStringLiteral("A1"));
  for (const QSize& size : {QSize(0, 0), QSize(0, 400), QSize(400, 0)}) {
    tabs(document)->setFixedSize(size);
    tabs(document)->resize(size);
    exported(document);
    EXPECT_FALSE(QFile::exists(chart())) << size.width() << " by " << size.height();
  }
  for (const QSize& size : {QSize(1, 1), QSize(3, 200), QSize(200, 3), QSize(4000, 20)}) {
    tabs(document)->setFixedSize(size);
    tabs(document)->resize(size);
    EXPECT_EQ(exported(document).size(), size);
  }
}

TEST_F(ChartExport, OnAScreenOfScaleTwoHasEveryPixelOfIt) {
  const QString twice = QStringLiteral("2");
  if (qEnvironmentVariable("QT_SCALE_FACTOR") != twice) {
    // The scale is settled when a process begins: so this test once more, in one that has it.
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_SCALE_FACTOR"), twice);
    child.setProcessEnvironment(environment);
    child.setProcessChannelMode(QProcess::MergedChannels);
    child.start(QCoreApplication::applicationFilePath(),
                {QStringLiteral("--gtest_filter=ChartExport.OnAScreenOfScaleTwoHasEveryPixelOfIt")});
    ASSERT_TRUE(child.waitForFinished(100000));
    const QByteArray said = child.readAll();
    EXPECT_EQ(child.exitCode(), 0) << said.constData();
    EXPECT_TRUE(said.contains("[  PASSED  ] 1 test.")) << said.constData();
    return;
  }
  GrowthDocument& document = desk.newRecord(QStringLiteral("A1"));
  document.window()->show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(document.window()));
  ASSERT_EQ(document.window()->devicePixelRatio(), 2);
  const QImage picture = exported(document);
  EXPECT_EQ(picture.size(), tabs(document)->size() * 2);
  expectSane(picture);
}

TEST_F(ChartExport, WithoutAnExaminationToShowMakesNoFile) {
  GrowthDocument& document = desk.newRecord(QStringLiteral("A1"));
  desk.field(document, "examDateField").setText(QString());
  desk.enterWeight(document, QString());
  exported(document);
  EXPECT_FALSE(QFile::exists(chart()));
}

TEST_F(ChartExport, OfAThousandExaminationsIsAPictureLikeAnother) {
  GrowthDocument& document = desk.newRecord(QStringLiteral("A1"));
  QElapsedTimer timer;
  timer.start();
  for (int i = 1; i < 1000; ++i) {
    document.doNewRecord(nullptr);
    desk.field(document, "examDateField")
        .setText(QDate(2022, 1, 2).addDays(2 * i).toString(QStringLiteral("dd/MM/yyyy")));
    desk.field(document, "weightField").setText(QString::number(3.5 + i * 0.02));
  }
  document.directUpdateDisplay(nullptr);
  ASSERT_EQ(document.lastExam(), 999u);
  expectSane(exported(document));
  document.saveDocument();
  desk.desktop.runLoop.settle();
  EXPECT_EQ(desk.opened(desk.pathOfRecord(QStringLiteral("A1"))).lastExam(), 999u);
  std::printf("a thousand examinations entered, drawn, saved and opened in %lld ms\n",
              static_cast<long long>(timer.elapsed()));
}

class ChartOfAnOddValue : public ChartExport, public testing::WithParamInterface<const char*> {};

TEST_P(ChartOfAnOddValue, IsASanePictureOrNoneAndTheValueStaysAsTyped) {
  const QString typed = QString::fromLatin1(GetParam());
  GrowthDocument& document = desk.newRecord(QStringLiteral("A1"));
  document.doNewRecord(nullptr);
  desk.field(document, "examDateField").setText(QStringLiteral("01/06/2024"));
  desk.enterWeight(document, typed);
  for (const int sex : {0, 1, 2}) {
    document.window()->findChild<QComboBox*>(QStringLiteral("sexPopUp"))->setCurrentIndex(sex);
    document.directUpdateDisplay(nullptr);
    document.window()->grab();
    exported(document);
    const growth::Measurement measured = growth::measurementFromText(typed);
    const bool drawn = measured.value && *measured.value > 0;
    EXPECT_EQ(QFile::exists(chart()), drawn);
    if (drawn) expectSane(QImage(chart()));
  }
  const growth::Measurement entered = document.record().examinations.last().of(growth::Measure::Weight);
  document.saveDocument();
  desk.desktop.runLoop.settle();
  const growth::GrowthRecord saved = recordIn(desk, desk.pathOfRecord(QStringLiteral("A1")));
  EXPECT_EQ(saved.examinations.last().of(growth::Measure::Weight), entered);
  GrowthDocument& opened = desk.opened(desk.pathOfRecord(QStringLiteral("A1")));
  EXPECT_EQ(growth::measurementFromText(desk.field(opened, "weightField").text()), entered);
}

INSTANTIATE_TEST_SUITE_P(Values, ChartOfAnOddValue,
                         testing::Values("0", "-0", "-3.5", "nan", "NaN", "inf", "-inf", "1e300", "-1e300",
                                         "1e-300", "1e309", "1.7976931348623157e308", "5e-324", "12.5 kg",
                                         "0x10", "1,5", "1,500", "99999999999999999999"));

/// Straight into the view: numbers that no field lets through.
TEST_F(ChartExport, OfNumbersThatNoFieldLetsThroughIsDrawn) {
  const double infinity = std::numeric_limits<double>::infinity();
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double most = std::numeric_limits<double>::max();
  growth::GrowthRecord record;
  record.birthDate.day = QDate(1900, 1, 1);
  record.sex = growth::Sex::Male;
  record.examinations.clear();
  int day = 0;
  for (const double value : {0.0, -1.0, nan, infinity, -infinity, 1e300, most, -most, 12.5}) {
    growth::Examination examination;
    examination.date.day = QDate(1900, 1, 1).addDays(day);
    day += 12345;
    examination.of(growth::Measure::Weight).value = value;
    record.examinations.append(examination);
  }
  OrvGraphView view;
  view.resize(640, 480);
  for (qsizetype shown = 0; shown < record.examinations.size(); ++shown) {
    growth::showChart(view, record, growth::Measure::Weight,
                      desk.references.reference(growth::Measure::Weight), shown);
    expectSane(view.grab().toImage());
    EXPECT_TRUE(std::isfinite(view.shownYRange().upper) && std::isfinite(view.shownXRange().upper));
    growth::resultText(record, record.examinations.at(shown), growth::Measure::Weight,
                       desk.references.reference(growth::Measure::Weight));
  }
}

}  // namespace
