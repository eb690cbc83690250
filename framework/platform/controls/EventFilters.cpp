// SPDX-License-Identifier: LGPL-3.0-or-later
#include "platform/controls/EventFilters.h"

#include <QKeyEvent>
#include <QWidget>

namespace velmora::platform {

namespace {

class ArrowKeeper : public QObject {
 public:
  using QObject::QObject;

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::ShortcutOverride) {
      const int key = static_cast<QKeyEvent*>(event)->key();
      if (key == Qt::Key_Left || key == Qt::Key_Right) event->accept();
    }
    return false;
  }
};

class WheelGuard : public QObject {
 public:
  using QObject::QObject;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    const auto* widget = dynamic_cast<QWidget*>(watched);
    if (event->type() != QEvent::Wheel || !widget || widget->hasFocus()) return false;
    event->ignore();
    return true;
  }
};

}  // namespace

void keepArrowKeys(QWidget* widget) {
  if (widget) widget->installEventFilter(new ArrowKeeper(widget));
}

void ignoreWheelWithoutFocus(QWidget* widget) {
  if (widget) widget->installEventFilter(new WheelGuard(widget));
}

}  // namespace velmora::platform
