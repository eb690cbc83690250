// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include <QTest>

#include "testing/application/RecordApplication.h"
#include "velmora/document/VelmoraGraphView.h"

using namespace velmora;
using namespace velmora::testkit;

namespace {

VelmoraGraphView& chartOf(RecordingDocument& document) {
  return dynamic_cast<VelmoraGraphView&>(*user::widget(document, "graphView"));
}

}  // namespace

TEST(ChartClick, IsHandedToTheDocumentInChartCoordinates) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  VelmoraGraphView& chart = chartOf(document);
  chart.setAxes("x", "y", {0, 12}, {0, 20});
  for (const QPointF& place : {QPointF(3, 5), QPointF(9, 15)}) {
    const QPoint pixel = chart.pointForCoordinate(place).toPoint();
    QTest::mouseClick(&chart, Qt::LeftButton, {}, pixel);
    ASSERT_FALSE(document.clicks.isEmpty());
    const QPointF expected = chart.coordinateForPoint(pixel);
    EXPECT_NEAR(document.clicks.last().x(), expected.x(), 1e-9);
    EXPECT_NEAR(document.clicks.last().y(), expected.y(), 1e-9);
    EXPECT_NEAR(document.clicks.last().x(), place.x(), 0.1) << "within a pixel";
  }
  EXPECT_EQ(document.clicks.size(), 2);
}

TEST(ChartClick, IsForwardedWhereverItFalls) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  VelmoraGraphView& chart = chartOf(document);
  for (const QPoint& pixel :
       {QPoint(0, 0), QPoint(chart.width() - 1, chart.height() - 1), chart.rect().center()}) {
    QTest::mouseClick(&chart, Qt::LeftButton, {}, pixel);
  }
  EXPECT_EQ(document.clicks.size(), 3);
}

TEST(ChartClick, GoesToTheFirstExaminationUnlessTheApplicationSaysOtherwise) {
  RecordApplication application;
  application.writeRecord("AB1", {"01/01/2021", "01/01/2022"});
  RecordingDocument& document = application.openRecord("AB1");
  document.doNextRecord(nullptr);
  document.forgetCalls();
  user::click(&chartOf(document));
  EXPECT_EQ(document.currentExam(), 0U);
  EXPECT_EQ(document.calls,
            (QStringList{"setCurrentRecordFromClick 1", "synchronizeToData 1", "synchronizeFromData 0"}));
  EXPECT_FALSE(document.isDocumentEdited());
}

TEST(ChartClick, EndsTheEditOfAFieldFirst) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  user::type(user::field(document, "examDateField"), "3/4/2020");
  document.forgetCalls();
  user::click(&chartOf(document));
  ASSERT_FALSE(document.calls.isEmpty());
  EXPECT_EQ(document.calls.first(), "updateArrayOrder 0");
  EXPECT_EQ(document.exams, QStringList{"03/04/2020"}) << "typed for the examination that was shown";
}

TEST(ChartClick, IsNoneOfTheOtherButtons) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  QTest::mouseClick(&chartOf(document), Qt::RightButton);
  EXPECT_TRUE(document.clicks.isEmpty());
}

TEST(ChartHighlight, IsForTheScreenOnly) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  EXPECT_TRUE(document.shouldShowGraphHilite());
  {
    const platform::GraphicsContext::OffScreen offScreen(application.desktop.graphics);
    EXPECT_FALSE(document.shouldShowGraphHilite());
  }
  EXPECT_TRUE(document.shouldShowGraphHilite());
}
