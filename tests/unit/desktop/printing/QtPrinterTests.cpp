// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/printing/QtPrinter.h"

#include <QDir>
#include <QFile>
#include <QLabel>
#include <QPageLayout>
#include <QPageSetupDialog>
#include <QPainter>
#include <QPrinter>
#include <QRadioButton>
#include <QRegularExpression>
#include <QTemporaryDir>

#include "desktop/runloop/QtRunLoop.h"
#include "platform/printing/GraphicsContext.h"
#include "testing/main/Shown.h"
#include "testing/window/WhenOpen.h"
#include "tests/unit/desktop/printing/PdfFile.h"

using namespace velmora;
using namespace velmora::testkit;

using testing_support::PdfFile;
using velmora::desktop::QtPrinter;
using velmora::platform::PrintInfo;

namespace {

/// A view that notes whether it was painted for the screen. It is one picture, which the page then holds.
class NotingView : public QWidget {
 public:
  explicit NotingView(const platform::GraphicsContext& graphics) : graphics_(graphics) {
    picture_.fill(Qt::red);
  }
  int paintedOffScreen = 0;
  int paintedForScreen = 0;

 protected:
  void paintEvent(QPaintEvent*) override {
    ++(graphics_.currentContextDrawingToScreen() ? paintedForScreen : paintedOffScreen);
    QPainter(this).drawImage(rect(), picture_);
  }

 private:
  const platform::GraphicsContext& graphics_;
  QImage picture_{8, 6, QImage::Format_RGB32};
};

class RealPrinter : public testing::Test {
 protected:
  RealPrinter() {
    view.resize(400, 300);
    view.setWindowTitle("12-345[*]");
    fit.horizontalPagination = PrintInfo::Pagination::Fit;
    fit.verticalPagination = PrintInfo::Pagination::Fit;
  }
  QString file() const { return folder.path() + "/page.pdf"; }
  bool print() { return tryToPrint().valueOr(false); }
  base::Result<bool> tryToPrint() { return printer.printView(&view, fit, {{"OutputFile", file()}}, false); }

  QTemporaryDir folder;
  desktop::QtRunLoop runLoop;
  platform::GraphicsContext graphics;
  QtPrinter printer{runLoop, graphics};
  NotingView view{graphics};
  PrintInfo fit;
};

TEST_F(RealPrinter, WritesOnePageWithTheTitleOfTheWindow) {
  const base::Result<bool> printed = tryToPrint();
  ASSERT_TRUE(printed.valueOr(false)) << qPrintable(printed.error());
  const PdfFile pdf(file());
  EXPECT_TRUE(pdf.isPdf());
  EXPECT_EQ(pdf.pageCount(), 1);
  EXPECT_EQ(pdf.text(), "12-345");
}

TEST_F(RealPrinter, TellsThePrintQueueNothingOfThePatient) {
  const QString before = QGuiApplication::applicationDisplayName();
  QGuiApplication::setApplicationDisplayName("Growth");
  const bool printed = print();
  QGuiApplication::setApplicationDisplayName(before);
  ASSERT_TRUE(printed);
  EXPECT_EQ(PdfFile(file()).title(), "Growth") << "the name of the job, which everybody can read";
  EXPECT_EQ(PdfFile(file()).text(), "12-345") << "the page itself names the patient";
}

TEST_F(RealPrinter, ShowsATitleInAnyScriptWhole) {
  view.setWindowTitle(QStringLiteral("Größe 7/3 (2. Blatt)"));
  ASSERT_TRUE(print());
  EXPECT_EQ(PdfFile(file()).text(), QStringLiteral("Größe 7/3 (2. Blatt)"));
}

TEST_F(RealPrinter, PrintsWithoutATitleWhatHasNone) {
  view.setWindowTitle("");
  ASSERT_TRUE(print());
  EXPECT_EQ(PdfFile(file()).pageCount(), 1);
  EXPECT_EQ(PdfFile(file()).text(), "");
}

TEST_F(RealPrinter, DrawsTheViewForPaperAndThenForTheScreenAgain) {
  ASSERT_TRUE(print());
  EXPECT_GT(view.paintedOffScreen, 0);
  EXPECT_EQ(view.paintedForScreen, 0);
  EXPECT_TRUE(graphics.currentContextDrawingToScreen());
}

TEST_F(RealPrinter, FitsALargeViewOnThePageBelowTheTitle) {
  view.resize(4000, 3000);
  ASSERT_TRUE(print());
  const PdfFile pdf(file());
  const QRectF picture = pdf.pictureOnPage();
  const QRectF page(QPointF(0, 0), pdf.pageSize());
  EXPECT_TRUE(page.contains(picture)) << picture.width() << " x " << picture.height();
  EXPECT_GT(picture.width(), 0.8 * page.width()) << "as large as the page allows";
  EXPECT_NEAR(picture.width() / picture.height(), 4.0 / 3.0, 0.01) << "and in its own shape";
  constexpr double TitlePoints = 14;
  EXPECT_GT(page.height() - picture.bottom(), TitlePoints) << "the title stands above it";
}

TEST_F(RealPrinter, LeavesASmallViewItsSize) {
  view.resize(100, 50);
  ASSERT_TRUE(print());
  const QRectF picture = PdfFile(file()).pictureOnPage();
  EXPECT_NEAR(picture.width(), 100 * 72.0 / view.logicalDpiX(), 0.5);
  EXPECT_NEAR(picture.height(), 50 * 72.0 / view.logicalDpiY(), 0.5);
}

TEST_F(RealPrinter, CutsOffWhatIsNotToBeFitted) {
  view.resize(4000, 3000);
  fit.horizontalPagination = PrintInfo::Pagination::Clip;
  fit.verticalPagination = PrintInfo::Pagination::Clip;
  ASSERT_TRUE(print());
  const PdfFile pdf(file());
  EXPECT_EQ(pdf.pageCount(), 1);
  const QRectF page(QPointF(0, 0), pdf.pageSize());
  const QRectF seen = pdf.pictureOnPage().intersected(page);
  EXPECT_GT(seen.width(), 0.9 * page.width()) << "it goes on beyond the right edge";
  EXPECT_GT(seen.height(), 0.85 * page.height()) << "and beyond the lower one";
}

TEST_F(RealPrinter, TurnsThePageAsTheLayoutSays) {
  ASSERT_TRUE(print());
  const QSizeF portrait = PdfFile(file()).pageSize();
  EXPECT_LT(portrait.width(), portrait.height());
  fit.orientation = PrintInfo::Orientation::Landscape;
  ASSERT_TRUE(print());
  const QSizeF landscape = PdfFile(file()).pageSize();
  EXPECT_GT(landscape.width(), landscape.height());
}

TEST_F(RealPrinter, SaysWhyItCouldNotPrint) {
  EXPECT_EQ(printer.printView(nullptr, fit, {{"OutputFile", file()}}, false).error(),
            "There is nothing to print.");
  view.resize(0, 0);
  EXPECT_EQ(tryToPrint().error(), "There is nothing to print.");
  view.resize(10, 10);
  EXPECT_EQ(
      printer.printView(&view, fit, {{"OutputFile", folder.path() + "/absent/page.pdf"}}, false).error(),
      "The printer could not be started.");
  EXPECT_FALSE(QFile::exists(file()));
}

// Page set-up.

/// The choice of orientation in the dialog.
QRadioButton* orientationButton(const QPageSetupDialog& dialog, const char* name) {
  return dialog.findChild<QRadioButton*>(name);
}

TEST_F(RealPrinter, TakesPaperAndOrientationFromThePageSetup) {
  PrintInfo info = fit;
  whenOpen<QPageSetupDialog>([this](QPageSetupDialog& dialog) {
    EXPECT_TRUE(runLoop.inModalSession());
    orientationButton(dialog, "landscape")->click();
    dialog.printer()->setPageMargins(QMarginsF(30, 30, 30, 30), QPageLayout::Millimeter);
    dialog.accept();
  });
  ASSERT_TRUE(printer.runPageSetup(info, nullptr));
  EXPECT_EQ(info.orientation, PrintInfo::Orientation::Landscape);
  EXPECT_TRUE(info.pageLayout.isValid());
  EXPECT_EQ(info.horizontalPagination, PrintInfo::Pagination::Fit) << "what is not in the dialog stays";
  EXPECT_FALSE(runLoop.inModalSession());
}

TEST_F(RealPrinter, BeginsThePageSetupWithWhatWasChosenBefore) {
  PrintInfo info;
  info.orientation = PrintInfo::Orientation::Landscape;
  whenOpen<QPageSetupDialog>([](QPageSetupDialog& dialog) {
    EXPECT_TRUE(orientationButton(dialog, "landscape")->isChecked());
    dialog.accept();
  });
  EXPECT_TRUE(printer.runPageSetup(info, nullptr));
  EXPECT_EQ(info.orientation, PrintInfo::Orientation::Landscape);
}

TEST_F(RealPrinter, ForgetsACancelledPageSetup) {
  PrintInfo info;
  whenOpen<QPageSetupDialog>([](QPageSetupDialog& dialog) {
    orientationButton(dialog, "landscape")->click();
    dialog.reject();
  });
  EXPECT_FALSE(printer.runPageSetup(info, nullptr));
  EXPECT_EQ(info.orientation, PrintInfo::Orientation::Portrait);
  EXPECT_FALSE(info.pageLayout.isValid());
}

TEST_F(RealPrinter, PrintsOnThePaperOfThePageSetup) {
  fit.pageLayout = QPageLayout(QPageSize(QPageSize::A5), QPageLayout::Portrait, QMarginsF(20, 20, 20, 20));
  ASSERT_TRUE(print());
  const QSizeF a5 = QPageSize::size(QPageSize::A5, QPageSize::Point);
  EXPECT_NEAR(PdfFile(file()).pageSize().width(), a5.width(), 1);
  fit.orientation = PrintInfo::Orientation::Landscape;
  ASSERT_TRUE(print());
  EXPECT_NEAR(PdfFile(file()).pageSize().width(), a5.height(), 1)
      << "the orientation is the print info's own";
}

TEST_F(RealPrinter, CountsWhatWasPrinted) {
  EXPECT_EQ(printer.printedViews(), 0);
  ASSERT_TRUE(print());
  EXPECT_EQ(printer.printedViews(), 1);
  EXPECT_FALSE(printer.printView(nullptr, fit, {}, false).ok());
  EXPECT_EQ(printer.printedViews(), 1);
}

}  // namespace
