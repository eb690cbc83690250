// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <functional>

class QAction;
class QMenu;
class QWidget;

namespace velmora {

/// The items of the Edit menu that work on the text field with the keyboard: a QLineEdit (that of a number or
/// a menu included), a QPlainTextEdit or a QTextEdit. Their keys are shown, but the field itself handles them
/// first.
class TextEditItems : public QObject {
 public:
  /// Adds the items to `menu`, in the window to which it belongs. Lives as long as that window.
  TextEditItems(QMenu* menu, QWidget* window);

  /// Enables each item by what the field can do now.
  void validate();

 private:
  struct Item {
    QAction* action;
    std::function<bool(QWidget*)> possible;
  };
  void add(QMenu* menu, const QString& title, const char* name, const QKeySequence& keys,
           std::function<bool(QWidget*)> possible, std::function<void(QWidget*)> command);
  void focusMoved(QWidget* now);

  QWidget* window_;
  QList<Item> items_;
  /// The field with the keyboard, or that had it when the user went to the menu bar.
  QPointer<QWidget> field_;
};

}  // namespace velmora
