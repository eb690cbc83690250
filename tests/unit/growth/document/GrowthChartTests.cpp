// SPDX-License-Identifier: LGPL-3.0-or-later
#include "apps/growth/document/GrowthCharts.h"

#include <gtest/gtest.h>

#include <QTabWidget>
#include <QTest>

#include "apps/growth/record/Age.h"
#include "apps/growth/testing/GrowthApplication.h"
#include "testing/files/Files.h"
#include "testing/window/Highlight.h"
#include "velmora/document/VelmoraGraphView.h"

using namespace velmora;
using namespace velmora::testkit;

using growth::GrowthApplication;
using growth::Measure;
using user::textOf;

namespace {

/// A boy with three examinations: weights at all, a height at the first, a head circumference at the second.
class GrowthChart : public testing::Test {
 protected:
  GrowthChart() {
    document = &application.typeBoy("1/7/2022", "8");
    user::enter(user::field(*document, "heightField"), "67");
    application.addExamination(*document, "1/1/2023", "10");
    user::enter(user::field(*document, "headField"), "46");
    application.addExamination(*document, "1/7/2023", "11.5");
    tabView = dynamic_cast<QTabWidget*>(user::widget(*document, "tabView"));
  }
  VelmoraGraphView& chart(const char* name) {
    return dynamic_cast<VelmoraGraphView&>(*user::widget(*document, name));
  }
  /// A click where the chart has that age and value, so many pixels beside it.
  void clickAt(VelmoraGraphView& view, const QDate& day, double value, QPoint beside = {}) {
    const double age = growth::ageInMonths(QDate(2022, 1, 1), day).value_or(0);
    QTest::mouseClick(&view, Qt::LeftButton, {}, view.pointForCoordinate({age, value}).toPoint() + beside);
  }
  GrowthApplication application;
  GrowthDocument* document;
  QTabWidget* tabView;
};

}  // namespace

TEST_F(GrowthChart, SelectsTheExaminationWhosePointIsClicked) {
  ASSERT_EQ(document->currentExam(), 2U);
  clickAt(chart("weightGraphView"), QDate(2022, 7, 1), 8);
  EXPECT_EQ(document->currentExam(), 0U);
  EXPECT_EQ(textOf(*document, "weightField"), "8");
  EXPECT_EQ(textOf(*document, "examNumberField"), "1 of 3");
  clickAt(chart("weightGraphView"), QDate(2023, 1, 1), 10, {4, 3});
  EXPECT_EQ(document->currentExam(), 1U) << "near is enough";
}

TEST_F(GrowthChart, StaysWhereItIsAtAClickBesideThePoints) {
  clickAt(chart("weightGraphView"), QDate(2022, 7, 1), 8, {0, 40});
  EXPECT_EQ(document->currentExam(), 2U);
}

TEST_F(GrowthChart, SelectsAmongThePointsOfItsOwnMeasure) {
  tabView->setCurrentIndex(2);
  clickAt(chart("headGraphView"), QDate(2023, 1, 1), 46);
  EXPECT_EQ(document->currentExam(), 1U) << "the only point of this chart is the second examination's";
}

TEST_F(GrowthChart, StoresWhatWasTypedBeforeTheSelectionMoves) {
  user::type(user::field(*document, "heightField"), "81");
  clickAt(chart("weightGraphView"), QDate(2022, 7, 1), 8);
  EXPECT_EQ(document->currentExam(), 0U);
  EXPECT_EQ(document->record().examinations.last().of(Measure::Height).value, 81.0);
}

TEST_F(GrowthChart, IsNotMarkedChangedByAClick) {
  GrowthDocument& reopened = application.saveAndReopen();
  document = &reopened;
  clickAt(chart("weightGraphView"), QDate(2022, 7, 1), 8);
  EXPECT_EQ(reopened.currentExam(), 0U);
  EXPECT_FALSE(reopened.isDocumentEdited());
}

TEST_F(GrowthChart, ShowsTheHighlightOnTheScreenOnly) {
  ASSERT_GT(orangePixels(tabView->grab().toImage()), 20);
  const QByteArray jpeg = document->getJPEGData();
  ASSERT_FALSE(jpeg.isEmpty());
  EXPECT_EQ(orangePixels(QImage::fromData(jpeg, "JPEG")), 0);
  EXPECT_GT(orangePixels(tabView->grab().toImage()), 20) << "and again afterwards";
  const platform::GraphicsContext::OffScreen offScreen(application.desktop.graphics);
  EXPECT_EQ(orangePixels(tabView->grab().toImage()), 0);
}

TEST_F(GrowthChart, IsTheSamePictureWhicheverExaminationIsShown) {
  // Only the highlight tells them apart, and it is not in the picture.
  const QByteArray last = document->getJPEGData();
  user::click(user::button(*document, "previousStudyButton"));
  ASSERT_EQ(document->currentExam(), 1U);
  EXPECT_EQ(document->getJPEGData(), last);
}

TEST_F(GrowthChart, IsExportedOnlyWithAPointOfTheExaminationShown) {
  EXPECT_FALSE(document->getJPEGData().isEmpty());
  tabView->setCurrentIndex(1);
  EXPECT_TRUE(document->getJPEGData().isEmpty()) << "no height on this day";
  document->doPreviousRecord(nullptr);
  document->doPreviousRecord(nullptr);
  EXPECT_FALSE(document->getJPEGData().isEmpty()) << "the first examination has a height";
  tabView->setCurrentIndex(2);
  EXPECT_TRUE(document->getJPEGData().isEmpty());
  user::enter(user::field(*document, "headField"), "44");
  EXPECT_FALSE(document->getJPEGData().isEmpty());
  user::enter(user::field(*document, "headField"), "");
  EXPECT_TRUE(document->getJPEGData().isEmpty());
}

TEST_F(GrowthChart, IsNamedAfterPatientAndTab) {
  document->doExport(true);
  tabView->setCurrentIndex(1);
  document->doPreviousRecord(nullptr);
  document->doPreviousRecord(nullptr);
  document->doExport(true);
  EXPECT_EQ(fileNames(application.home.path("Charts")), (QStringList{"BOY1 Height.jpg", "BOY1 Weight.jpg"}));
}

TEST(GrowthChartPoints, AreThoseWithADateAndAMeasurementAboveZero) {
  growth::GrowthRecord record;
  record.birthDate.day = QDate(2022, 1, 1);
  record.examinations.clear();
  const auto add = [&record](const QDate& day, std::optional<double> weight) {
    growth::Examination examination;
    examination.date.day = day;
    examination.of(Measure::Weight).value = weight;
    record.examinations.append(examination);
  };
  add(QDate(2022, 7, 1), 8);
  add(QDate(), 9);
  add(QDate(2022, 8, 1), std::nullopt);
  add(QDate(2022, 9, 1), 0);
  add(QDate(2022, 9, 2), -1);
  add(QDate(2021, 9, 1), 5);
  add(QDate(2023, 1, 1), 10);
  const growth::ChartPoints points = growth::chartPoints(record, Measure::Weight);
  EXPECT_EQ(points.examinations, (QList<qsizetype>{0, 6}));
  ASSERT_EQ(points.points.size(), 2);
  EXPECT_NEAR(points.points.first().x(), 181 / 30.4375, 1e-12);
  EXPECT_EQ(points.points.first().y(), 8);
  EXPECT_EQ(points.pointOf(6), std::optional<qsizetype>(1));
  EXPECT_EQ(points.pointOf(3), std::nullopt);
  EXPECT_TRUE(growth::chartPoints(record, Measure::Head).points.isEmpty());
}
