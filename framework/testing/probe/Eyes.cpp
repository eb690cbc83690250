// SPDX-License-Identifier: LGPL-3.0-or-later
#include "testing/probe/Eyes.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QScreen>
#include <QTabBar>
#include <QTabWidget>
#include <QWindow>

namespace velmora::testkit::probe {

namespace {

QJsonArray rectangle(const QRect& r) { return {r.x(), r.y(), r.width(), r.height()}; }

QString className(const QWidget* widget) { return widget->metaObject()->className(); }

bool isPanel(const QWidget* window) { return qobject_cast<const QFileDialog*>(window) != nullptr; }

// Qt's own parts have names too, all of the same beginning.
bool isNamed(const QWidget* widget) {
  return !widget->objectName().isEmpty() && !widget->objectName().startsWith("qt_");
}

QString nameOf(const QWidget* window) {
  if (isNamed(window)) return window->objectName();
  const auto children = window->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
  for (const QWidget* child : children)
    if (isNamed(child) && !child->isWindow()) return child->objectName();
  return {};
}

// A window that has been told to show itself is not seen before the window system has put it there.
bool isOnScreen(const QWidget* window) {
  return window->isVisible() && window->windowType() != Qt::ToolTip && window->windowHandle() &&
         window->windowHandle()->isExposed();
}

// Its own, or that of the menu it opens.
QString nameOf(const QAction* action) {
  const QMenu* opens = action->menu<QMenu*>();
  return opens ? opens->objectName() : action->objectName();
}

// As it is shown: Qt's mark for unsaved changes is a place holder.
QString titleOf(const QWidget* window) {
  return window->windowTitle().replace("[*]", window->isWindowModified() ? "*" : "");
}

// The underlined letter, which the keyboard goes by.
QString mnemonicOf(const QString& text) {
  for (qsizetype i = 0; i + 1 < text.size(); ++i) {
    if (text[i] != u'&') continue;
    if (text[++i] != u'&') return text.mid(i, 1).toLower();
  }
  return {};
}

QJsonArray entries(const QWidget* menu) {
  QJsonArray result;
  const auto* popup = qobject_cast<const QMenu*>(menu);
  const QList<QAction*> actions = menu->actions();
  for (const QAction* action : actions) {
    if (action->isSeparator() || !action->isVisible()) continue;
    QJsonObject entry{{"text", withoutMnemonic(action->text())},
                      {"name", nameOf(action)},
                      {"mnemonic", mnemonicOf(action->text())},
                      {"enabled", action->isEnabled()}};
    if (popup && popup->activeAction() == action) entry["current"] = true;
    if (action->isCheckable()) entry["checked"] = action->isChecked();
    result.append(entry);
  }
  return result;
}

void describeContent(const QWidget* widget, QJsonObject& to) {
  if (const auto* label = qobject_cast<const QLabel*>(widget)) {
    to["text"] = label->text();
    if (label->buddy()) {
      to["buddy"] = label->buddy()->objectName();
      to["mnemonic"] = mnemonicOf(label->text());
    }
  }
  if (const auto* edit = qobject_cast<const QLineEdit*>(widget)) {
    to["text"] = edit->text();
    to["readOnly"] = edit->isReadOnly();
  }
  if (const auto* edit = qobject_cast<const QPlainTextEdit*>(widget)) to["text"] = edit->toPlainText();
  if (const auto* button = qobject_cast<const QAbstractButton*>(widget)) {
    to["text"] = withoutMnemonic(button->text());
    if (button->isCheckable()) to["checked"] = button->isChecked();
  }
  if (const auto* combo = qobject_cast<const QComboBox*>(widget)) {
    QJsonArray items;
    for (int i = 0; i < combo->count(); ++i) items.append(combo->itemText(i));
    to["items"] = items;
    to["text"] = combo->currentText();
  }
  if (const auto* tabs = qobject_cast<const QTabWidget*>(widget)) {
    QJsonArray labels;
    for (int i = 0; i < tabs->count(); ++i) labels.append(withoutMnemonic(tabs->tabText(i)));
    to["tabs"] = labels;
    to["current"] = withoutMnemonic(tabs->tabText(tabs->currentIndex()));
  }
}

QJsonArray widgetsOf(const QWidget* window) {
  QJsonArray result;
  const auto children = window->findChildren<QWidget*>();
  for (const QWidget* widget : children) {
    if (widget->window() != window || !widget->isVisible()) continue;
    const bool isButton = qobject_cast<const QAbstractButton*>(widget) != nullptr;
    // Whoever has passed the keyboard on has the focus in Qt's eyes, too.
    const bool hasFocus = widget->hasFocus() && !widget->focusProxy();
    if (!isNamed(widget) && !isButton && !hasFocus) continue;
    QJsonObject entry{{"name", widget->objectName()},
                      {"class", className(widget)},
                      {"enabled", widget->isEnabled()},
                      {"focus", hasFocus},
                      {"geometry", rectangle(QRect(widget->mapTo(window, QPoint()), widget->size()))}};
    describeContent(widget, entry);
    result.append(entry);
  }
  return result;
}

// By its text or, for whoever cannot read the language, by its own name or that of the menu it opens.
bool isCalled(const QAction* action, const QString& name) {
  const QMenu* opens = action->menu<QMenu*>();
  return withoutMnemonic(action->text()) == name || action->objectName() == name ||
         (opens && opens->objectName() == name);
}

QAction* visibleAction(const QWidget* of, const QString& name) {
  const QList<QAction*> actions = of->actions();
  for (QAction* action : actions)
    if (action->isVisible() && isCalled(action, name)) return action;
  return nullptr;
}

Target middleOf(QWidget* widget) { return {widget, widget->rect().center(), {}}; }

Target failure(const QString& error) { return {{}, {}, error}; }

template <typename Bar>
Target actionIn(Bar* bar, const QString& text) {
  QAction* action = bar ? visibleAction(bar, text) : nullptr;
  if (!action) return failure("no menu entry \"" + text + "\"");
  if (!action->isEnabled()) return failure("the menu entry \"" + text + "\" is disabled");
  return {bar, bar->actionGeometry(action).center(), {}};
}

Target buttonIn(const QWidget* window, const QString& text) {
  const auto buttons = window->findChildren<QAbstractButton*>();
  for (QAbstractButton* button : buttons)
    if (button->window() == window && button->isVisible() && withoutMnemonic(button->text()) == text)
      return middleOf(button);
  return failure("no button \"" + text + "\"");
}

// A popped-up list is told by its view, the pop-up list that it belongs to is not in it.
Target rowIn(const QWidget* window, const QString& text) {
  auto* view = window->findChild<QAbstractItemView*>();
  for (int row = 0; view && row < view->model()->rowCount(); ++row) {
    const QModelIndex index = view->model()->index(row, 0);
    if (index.data().toString() == text) return {view->viewport(), view->visualRect(index).center(), {}};
  }
  return failure("no row \"" + text + "\"");
}

Target tabIn(QWidget* widget, const QString& label) {
  const auto* tabs = qobject_cast<QTabWidget*>(widget);
  for (int i = 0; tabs && i < tabs->count(); ++i)
    if (withoutMnemonic(tabs->tabText(i)) == label)
      return {tabs->tabBar(), tabs->tabBar()->tabRect(i).center(), {}};
  return failure("no tab \"" + label + "\"");
}

}  // namespace

QString withoutMnemonic(const QString& text) {
  QString result;
  for (qsizetype i = 0; i < text.size(); ++i) {
    if (text[i] == u'&' && i + 1 < text.size()) ++i;
    result += text[i];
  }
  return result.section(u'\t', 0, 0);
}

int Eyes::idOf(QWidget* window) {
  const auto known = ids_.constFind(window);
  if (known != ids_.cend()) return *known;
  // An address is used again for another window; an id never.
  QObject::connect(window, &QObject::destroyed, &lifetime_, [this, window] { ids_.remove(window); });
  return ids_[window] = ++lastId_;
}

QJsonObject Eyes::identity(QWidget* window) {
  QJsonObject result{{"id", idOf(window)},
                     {"name", nameOf(window)},
                     {"class", className(window)},
                     {"title", titleOf(window)}};
  if (isPanel(window)) result["panel"] = true;
  return result;
}

QJsonArray Eyes::windows() {
  QJsonArray result;
  const QWidgetList all = QApplication::topLevelWidgets();
  for (QWidget* window : all) {
    if (!isOnScreen(window)) continue;
    QJsonObject entry = identity(window);
    entry["active"] = window->isActiveWindow();
    entry["modal"] = window->isModal();
    entry["popup"] = window->windowType() == Qt::Popup;
    entry["geometry"] = rectangle(window->geometry());
    entry["pixelRatio"] = window->devicePixelRatio();
    entry["edited"] = window->isWindowModified();
    if (const auto* box = qobject_cast<const QMessageBox*>(window))
      entry["alert"] = QJsonObject{{"text", box->text()}, {"information", box->informativeText()}};
    entry["widgets"] = widgetsOf(window);
    if (const auto* bar = window->findChild<QMenuBar*>()) entry["menus"] = entries(bar);
    if (qobject_cast<const QMenu*>(window)) entry["items"] = entries(window);
    result.append(entry);
  }
  return result;
}

Target Eyes::find(const QJsonObject& request) {
  QWidget* window = ids_.key(request["window"].toInt(), nullptr);
  if (!window || !window->isVisible()) return failure("no such window");
  if (request.contains("menu")) return actionIn(window->findChild<QMenuBar*>(), request["menu"].toString());
  if (request.contains("item")) return actionIn(qobject_cast<QMenu*>(window), request["item"].toString());
  if (request.contains("row")) return rowIn(window, request["row"].toString());
  if (request.contains("button")) return buttonIn(window, request["button"].toString());

  if (!request.contains("widget")) return middleOf(window);
  const QString name = request["widget"].toString();
  QWidget* widget = window->objectName() == name ? window : window->findChild<QWidget*>(name);
  if (!widget) return failure("no widget \"" + name + "\"");
  if (request.contains("tab")) return tabIn(widget, request["tab"].toString());
  Target target = middleOf(widget);
  if (const QJsonArray at = request["at"].toArray(); at.size() == 2)
    target.point = {at[0].toInt(), at[1].toInt()};
  return target;
}

QJsonObject Eyes::takePictures(const QString& folder, const QString& prefix) {
  QJsonArray files;
  const QWidgetList all = QApplication::topLevelWidgets();
  for (QWidget* window : all) {
    if (!isOnScreen(window)) continue;
    QString name = nameOf(window);
    if (name.isEmpty()) name = className(window);
    QString file = prefix + name + ".png";
    for (int n = 2; files.contains(file); ++n) file = prefix + name + QString::number(n) + ".png";
    if (!window->grab().save(folder + '/' + file)) return {{"error", "cannot write " + folder + '/' + file}};
    files.append(file);
  }
  return {{"files", files}};
}

QJsonObject Eyes::takeScreen(const QString& file) {
  if (!QGuiApplication::primaryScreen()->grabWindow(0).save(file)) return {{"error", "cannot write " + file}};
  return {};
}

QJsonObject Eyes::takePicture(const QJsonObject& request, const QString& file) {
  const Target target = find(request);
  if (!target.widget) return {{"error", target.error}};
  if (!target.widget->grab().save(file)) return {{"error", "cannot write " + file}};
  return {};
}

}  // namespace velmora::testkit::probe
