// SPDX-License-Identifier: LGPL-3.0-or-later
#include "testing/window/UserActions.h"

#include <QApplication>
#include <QLabel>
#include <QTest>
#include <stdexcept>

#include "platform/documents/Document.h"
#include "testing/standins/Scripted.h"

namespace velmora::testkit::user {

void bringToFront(platform::Document& document) {
  document.showWindows();
  if (!QTest::qWaitForWindowActive(document.window()))
    reportFailure(QStringLiteral("The window does not come to the front"));
}

QWidget* widget(platform::Document& document, const char* name) {
  auto* found = document.window()->findChild<QWidget*>(QString::fromLatin1(name));
  if (!found) throw std::runtime_error(std::string("the window has no ") + name);
  return found;
}

QLineEdit* field(platform::Document& document, const char* name) {
  return dynamic_cast<QLineEdit*>(widget(document, name));
}

QPushButton* button(platform::Document& document, const char* name) {
  return dynamic_cast<QPushButton*>(widget(document, name));
}

QString textOf(platform::Document& document, const char* name) {
  QWidget* shown = widget(document, name);
  if (const auto* label = dynamic_cast<QLabel*>(shown)) return label->text();
  if (const auto* line = dynamic_cast<QLineEdit*>(shown)) return line->text();
  return {};
}

void click(QWidget* widget) { QTest::mouseClick(widget, Qt::LeftButton); }

void type(QLineEdit* field, const QString& text) {
  click(field);
  QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
  if (text.isEmpty()) QTest::keyClick(field, Qt::Key_Delete);
  QTest::keyClicks(field, text);
}

void pressReturn(QLineEdit* field) { QTest::keyClick(field, Qt::Key_Return); }

void enter(QLineEdit* field, const QString& text) {
  type(field, text);
  pressReturn(field);
}

void pressKey(platform::Document& document, Qt::Key key) {
  QWidget* focused = QApplication::focusWidget();
  QTest::keyClick(focused ? focused : document.window(), key);
}

}  // namespace velmora::testkit::user
