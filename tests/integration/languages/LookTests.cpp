// SPDX-License-Identifier: LGPL-3.0-or-later
// The windows in light and dark colours, and their sizes.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QHash>
#include <QLabel>
#include <QLineEdit>
#include <QPalette>
#include <algorithm>
#include <cmath>

#include "tests/integration/languages/TranslationFiles.h"
#include "tests/integration/languages/WindowsInLanguage.h"

using namespace velmora::testkit;

using languages::WindowsInLanguage;

namespace {

/// The colours of a dark desktop.
QPalette dark() {
  QPalette palette(QColor(53, 53, 53));
  palette.setColor(QPalette::Window, QColor(53, 53, 53));
  palette.setColor(QPalette::WindowText, Qt::white);
  palette.setColor(QPalette::Base, QColor(35, 35, 35));
  palette.setColor(QPalette::AlternateBase, QColor(53, 53, 53));
  palette.setColor(QPalette::Text, Qt::white);
  palette.setColor(QPalette::Button, QColor(53, 53, 53));
  palette.setColor(QPalette::ButtonText, Qt::white);
  palette.setColor(QPalette::ToolTipBase, QColor(35, 35, 35));
  palette.setColor(QPalette::ToolTipText, Qt::white);
  palette.setColor(QPalette::Highlight, QColor(42, 130, 218));
  palette.setColor(QPalette::HighlightedText, Qt::black);
  for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
    palette.setColor(QPalette::Disabled, role, QColor(127, 127, 127));
  palette.setColor(QPalette::PlaceholderText, QColor(160, 160, 160));
  return palette;
}

class Colours {
 public:
  explicit Colours(const QPalette& palette) : before_(QApplication::palette()) {
    QApplication::setPalette(palette);
  }
  ~Colours() { QApplication::setPalette(before_); }

 private:
  QPalette before_;
};

/// Relative luminance and contrast as WCAG 2.1 defines them.
double luminance(QRgb colour) {
  const auto linear = [](int part) {
    const double value = part / 255.0;
    return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(qRed(colour)) + 0.7152 * linear(qGreen(colour)) + 0.0722 * linear(qBlue(colour));
}

double contrast(QRgb one, QRgb other) {
  const double first = luminance(one) + 0.05;
  const double second = luminance(other) + 0.05;
  return std::max(first, second) / std::min(first, second);
}

/// How far the strongest colour of a picture is from the most frequent one, its background.
double contrastIn(const QImage& picture) {
  QHash<QRgb, int> counts;
  for (int y = 0; y < picture.height(); ++y)
    for (int x = 0; x < picture.width(); ++x) ++counts[picture.pixel(x, y)];
  QRgb background = 0;
  int most = 0;
  for (auto each = counts.cbegin(); each != counts.cend(); ++each) {
    if (*each > most) {
      most = *each;
      background = each.key();
    }
  }
  double strongest = 1;
  for (auto each = counts.cbegin(); each != counts.cend(); ++each)
    strongest = std::max(strongest, contrast(each.key(), background));
  return strongest;
}

QString textOf(const QWidget& widget) {
  if (const auto* label = dynamic_cast<const QLabel*>(&widget)) return label->text();
  if (const auto* button = dynamic_cast<const QAbstractButton*>(&widget)) return button->text();
  if (const auto* field = dynamic_cast<const QLineEdit*>(&widget)) return field->text();
  return {};
}

void expectReadable(const QString& what, QWidget& window) {
  const QPixmap shot = window.grab();
  const QImage picture = shot.toImage().convertToFormat(QImage::Format_RGB32);
  const double scale = shot.devicePixelRatio();
  for (const QWidget* widget : window.findChildren<QWidget*>()) {
    if (!widget->isVisible() || !widget->isEnabled() || textOf(*widget).trimmed().isEmpty()) continue;
    // Frames stay out of it: what is measured is the text.
    const QRect inside = QRect(widget->mapTo(&window, QPoint()), widget->size()).adjusted(3, 3, -3, -3);
    const QRect place(inside.topLeft() * scale, inside.size() * scale);
    EXPECT_GE(contrastIn(picture.copy(place)), 4.5)
        << what.toStdString() << ": " << widget->objectName().toStdString() << " \""
        << textOf(*widget).toStdString() << '"';
  }
  // For those who want to look at the windows themselves.
  const QString folder = qEnvironmentVariable("VELMORA_PICTURES");
  static int number = 0;
  if (!folder.isEmpty() && QDir().mkpath(folder))
    shot.save(QString("%1/%2 %3.png").arg(folder).arg(++number, 3, 10, QChar('0')).arg(what));
}

struct Desktop {
  const char* name;
  QString language;
  bool isDark;
};

class Look : public testing::TestWithParam<Desktop> {};

INSTANTIATE_TEST_SUITE_P(, Look,
                         testing::Values(Desktop{"LightEnglish", "en", false},
                                         Desktop{"DarkEnglish", "en", true},
                                         Desktop{"LightGerman", "de", false},
                                         Desktop{"DarkGerman", "de", true}),
                         [](const auto& desktop) { return std::string(desktop.param.name); });

}  // namespace

TEST_P(Look, LetsEveryTextBeRead) {
  const Colours colours(GetParam().isDark ? dark() : QApplication::palette());
  WindowsInLanguage(GetParam().language).each([](const QString& what, QWidget& window) {
    expectReadable(QString(GetParam().name) + ' ' + what, window);
  });
}

TEST_P(Look, FitsASmallScreenAndKeepsItsPartsWhenResized) {
  const Colours colours(GetParam().isDark ? dark() : QApplication::palette());
  WindowsInLanguage(GetParam().language).each([](const QString& what, QWidget& window) {
    EXPECT_LE(window.width(), 1366) << what.toStdString();
    EXPECT_LE(window.height(), 768) << what.toStdString();
    if (window.inherits("QMainWindow")) {
      // As small as it goes, nothing lies over anything else, and the chart still is a chart.
      const QSize before = window.size();
      window.resize(window.minimumSizeHint());
      QWidget* chart = nullptr;
      for (const char* name : {"weightGraphView", "heightGraphView", "headGraphView"})
        if (auto* each = window.findChild<QWidget*>(name); each->isVisible()) chart = each;
      ASSERT_NE(chart, nullptr);
      EXPECT_GE(chart->width(), 320);
      EXPECT_GE(chart->height(), 240);
      // What is given to the window goes to the chart.
      const int height = chart->height();
      window.resize(before + QSize(200, 200));
      EXPECT_GE(chart->height(), height + 200);
      window.resize(before);
    }
  });
}

// The chart is paper in every palette: what is on the screen is what is printed and exported.
TEST(LookOfCharts, IsTheSameOnADarkDesktop) {
  const auto pictureOn = [](const QPalette& palette) {
    const Colours colours(palette);
    WindowsInLanguage windows("en");
    GrowthDocument& document = windows.filledRecord();
    return user::widget(document, "weightGraphView")->grab().toImage();
  };
  const QImage light = pictureOn(QApplication::palette());
  EXPECT_EQ(light, pictureOn(dark()));
  EXPECT_EQ(QColor(light.pixel(2, 2)), QColor(Qt::white));
  EXPECT_GE(contrastIn(light.convertToFormat(QImage::Format_RGB32)), 7);
}

TEST(LookCheck, MeasuresContrast) {
  EXPECT_NEAR(contrast(qRgb(0, 0, 0), qRgb(255, 255, 255)), 21, 1e-9);
  EXPECT_LT(contrast(qRgb(0xb0, 0, 0x20), qRgb(35, 35, 35)), 4.5);
  QImage grey(10, 10, QImage::Format_RGB32);
  grey.fill(qRgb(120, 120, 120));
  grey.setPixel(3, 3, qRgb(160, 160, 160));
  EXPECT_LT(contrastIn(grey), 4.5);
}

TEST(LookOfFields, MarksWhatIsNoDateReadablyInBothPalettes) {
  for (const QPalette& palette : {QApplication::palette(), dark()}) {
    const Colours colours(palette);
    WindowsInLanguage windows("en");
    GrowthDocument& document = windows.application.newRecord();
    QLineEdit* date = user::field(document, "birthDateField");
    user::enter(date, "some day");
    user::pressKey(document, Qt::Key_Tab);
    const QColor text = date->palette().color(QPalette::Text);
    EXPECT_NE(text, palette.color(QPalette::Text));
    EXPECT_GE(contrast(text.rgb(), palette.color(QPalette::Base).rgb()), 4.5);
  }
}

TEST(LookAtItsScale, IsWhatTheScreenSays) {
  const double wanted = qEnvironmentVariable("QT_SCALE_FACTOR", "1").toDouble();
  WindowsInLanguage windows("en");
  QWidget* window = windows.application.newRecord().window();
  EXPECT_EQ(window->devicePixelRatio(), wanted);
  EXPECT_EQ(window->grab().width(), qRound(window->width() * wanted));
}
