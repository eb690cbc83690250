// SPDX-License-Identifier: LGPL-3.0-or-later
#include "testing/probe/Hands.h"

#include <QtTest/qtestkeyboard.h>
#include <QtTest/qtestmouse.h>
#include <QApplication>
#include <QTimer>
#include <QWidget>
#include <QWindow>

#include "testing/waiting/SteadyClock.h"

namespace velmora::testkit::probe {

namespace {

constexpr int PatienceMilliseconds = 3000;

void mouse(QEvent::Type type, const Target& target) {
  if (!target.widget) return;  // gone since the click began: a click into the void
  QWidget* top = target.widget->window();
  const QPoint local = target.widget->mapTo(top, target.point);
  const bool moving = type == QEvent::MouseMove;
  qt_handleMouseEvent(top->windowHandle(), local, top->mapToGlobal(local),
                      type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton,
                      moving ? Qt::NoButton : Qt::LeftButton, type, Qt::NoModifier,
                      static_cast<int>(steadyMilliseconds() & 0x7fffffff));
}

bool belongsTo(const QWidget* widget, const QWidget* ancestor) {
  for (const QWidget* w = widget; w; w = w->parentWidget())
    if (w == ancestor) return true;
  return false;
}

// The sheet or dialog that bars the way to a window.
const QWidget* dialogBefore(const QWidget* window) {
  const QWidget* newest = QApplication::activeModalWidget();
  if (!newest || belongsTo(window, newest)) return nullptr;
  const QWidgetList all = QApplication::topLevelWidgets();
  for (const QWidget* other : all) {
    if (other == window || !other->isVisible()) continue;
    const Qt::WindowModality modality = other->windowModality();
    if (modality == Qt::WindowModal && belongsTo(other, window)) return other;
    if (modality == Qt::ApplicationModal && !belongsTo(window, other)) return other;
  }
  return nullptr;
}

QString named(const QWidget* widget) {
  if (!widget->objectName().isEmpty()) return '"' + widget->objectName() + '"';
  return widget->metaObject()->className();
}

bool takesFocus(const QWidget* window) {
  return window->windowType() != Qt::Popup && window->windowType() != Qt::ToolTip &&
         !(window->windowFlags() & (Qt::WindowDoesNotAcceptFocus | Qt::BypassWindowManagerHint));
}

}  // namespace

QString obstacle(const Target& target) {
  const QWidget* widget = target.widget;
  if (!widget) return target.error.isEmpty() ? QString("it has gone") : target.error;
  if (!widget->isVisible()) return named(widget) + " is hidden";
  if (!widget->isEnabled()) return named(widget) + " is disabled";
  const QWidget* window = widget->window();
  if (!window->windowHandle() || !window->windowHandle()->isExposed())
    return named(window) + " is not on the screen";
  if (const QWidget* dialog = dialogBefore(window)) return "the modal " + named(dialog) + " is before it";
  const QWidget* popup = QApplication::activePopupWidget();
  if (popup && popup != window) return "a menu is open before it";
  const QPoint inWindow = widget->mapTo(window, target.point);
  if (!window->rect().contains(inWindow)) return named(widget) + " is outside its window there";
  const QWidget* hit = window->childAt(inWindow);
  if (!hit) hit = window;
  if (!belongsTo(hit, widget)) return named(widget) + " is covered by " + named(hit);
  return {};
}

QJsonObject placeOnScreen(const Target& target) {
  if (const QString error = obstacle(target); !error.isEmpty()) return {{"error", error}};
  const QWidget* window = target.widget->window();
  const QPoint at = target.widget->mapToGlobal(target.point);
  if (QGuiApplication::topLevelAt(at) != window->windowHandle())
    return {{"error", named(window) + " is covered by another window"}};
  const QPointF pixel = QPointF(at) * window->devicePixelRatio();
  return {{"at", QJsonArray{qRound(pixel.x()), qRound(pixel.y())}}};
}

void Hands::click(const QJsonObject& target, Done done) {
  Job job;
  job.done = std::move(done);
  auto at = std::make_shared<Target>(eyes_.find(target));
  job.steps.push_back({[at](QString& error) {
                         error = obstacle(*at);
                         if (!error.isEmpty()) return Outcome::Failed;
                         QWidget* window = at->widget->window();
                         if (takesFocus(window) && !window->isActiveWindow()) {
                           window->windowHandle()->raise();
                           window->windowHandle()->requestActivate();
                         }
                         return Outcome::Done;
                       },
                       {}});
  job.steps.push_back({[at](QString& error) {
                         // What the activation brought with it may have put something in the way.
                         error = obstacle(*at);
                         if (!error.isEmpty()) return Outcome::Failed;
                         const QWidget* window = at->widget->window();
                         if (!takesFocus(window) || window->isActiveWindow()) return Outcome::Done;
                         error = named(window) + " did not become the active window";
                         return Outcome::Wait;
                       },
                       {}});
  for (const auto type : {QEvent::MouseMove, QEvent::MouseButtonPress, QEvent::MouseButtonRelease})
    job.steps.push_back({{}, [at, type] { mouse(type, *at); }});
  begin(std::move(job));
}

void Hands::addKey(Job& job, int key, Qt::KeyboardModifiers modifiers, const QString& text) {
  job.steps.push_back({[](QString& error) {
                         error = "no window has the keyboard";
                         return QGuiApplication::focusWindow() ? Outcome::Done : Outcome::Wait;
                       },
                       {}});
  for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease})
    job.steps.push_back({{}, [type, key, modifiers, text] {
                           if (QWindow* window = QGuiApplication::focusWindow())
                             qt_handleKeyEvent(window, type, key, modifiers, text);
                         }});
}

void Hands::type(const QString& text, Done done) {
  Job job;
  job.done = std::move(done);
  for (const QChar c : text)
    addKey(job, c.toUpper().unicode(), c.isUpper() ? Qt::ShiftModifier : Qt::NoModifier, QString(c));
  begin(std::move(job));
}

void Hands::press(const QKeySequence& keys, Done done) {
  Job job;
  job.done = std::move(done);
  for (int i = 0; i < keys.count(); ++i)
    addKey(job, keys[static_cast<uint>(i)].key(), keys[static_cast<uint>(i)].keyboardModifiers(), {});
  begin(std::move(job));
}

void Hands::begin(Job job) {
  job.deadline = steadyMilliseconds() + PatienceMilliseconds;
  jobs_.push_back(std::move(job));
  if (jobs_.size() == 1) schedule(0);
}

void Hands::schedule(int wait) {
  QTimer::singleShot(wait, this, [this] { turn(); });
}

void Hands::finish(const QString& error) {
  const Done done = std::move(jobs_.front().done);
  jobs_.pop_front();
  if (!jobs_.empty()) schedule(0);
  done(error);
}

void Hands::turn() {
  if (jobs_.empty()) return;
  Job& job = jobs_.front();
  if (job.steps.empty()) return finish({});
  if (const auto& check = job.steps.front().check) {
    QString error;
    const Outcome outcome = check(error);
    if (outcome == Outcome::Failed || (outcome == Outcome::Wait && steadyMilliseconds() > job.deadline))
      return finish(error);
    if (outcome == Outcome::Done) job.steps.pop_front();
    return schedule(outcome == Outcome::Wait ? 10 : 0);
  }
  const auto act = std::move(job.steps.front().act);
  job.steps.pop_front();
  schedule(0);  // before the event: it may not come back for a while
  act();
}

}  // namespace velmora::testkit::probe
