// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/alerts/QtFeedback.h"

#include <QApplication>
#include <QPaintEvent>
#include <QPainter>
#include <QVariantAnimation>
#include <QWidget>

namespace velmora::desktop {

namespace {

constexpr int PoofSize = 48;  // pixels
constexpr int PoofMilliseconds = 350;

class PoofWindow : public QWidget {
 public:
  PoofWindow() : QWidget(nullptr, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowTransparentForInput) {
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setFocusPolicy(Qt::NoFocus);
    setObjectName(QStringLiteral("Poof"));
    resize(PoofSize, PoofSize);
    animation_.setDuration(PoofMilliseconds);
    animation_.setStartValue(0.0);
    animation_.setEndValue(1.0);
    connect(&animation_, &QVariantAnimation::valueChanged, this, [this] { update(); });
    connect(&animation_, &QVariantAnimation::finished, this, &QWidget::close);
  }
  void start() {
    show();
    animation_.start();
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const double age = animation_.currentValue().toDouble();
    painter.setBrush(QColor(120, 120, 120, static_cast<int>(200 * (1 - age))));
    constexpr int Puffs = 6;
    const double distance = 4 + 14 * age;
    const double radius = 9 - 4 * age;
    painter.translate(width() / 2.0, height() / 2.0);
    for (int puff = 0; puff < Puffs; ++puff) {
      painter.drawEllipse(QPointF(0, -distance), radius, radius);
      painter.rotate(360.0 / Puffs);
    }
  }

 private:
  QVariantAnimation animation_;
};

}  // namespace

void QtFeedback::beep() { QApplication::beep(); }

void QtFeedback::showPoof(const QPoint& screenPoint) {
  auto* poof = new PoofWindow;
  poof->move(screenPoint - QPoint(PoofSize / 2, PoofSize / 2));
  poof->start();
}

}  // namespace velmora::desktop
