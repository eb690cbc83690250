// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/app/TextEditItems.h"

#include <QAbstractSpinBox>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QTextDocument>
#include <QTextEdit>

#include "base/log/Guard.h"
#include "platform/text/Localization.h"

using velmora::platform::localizedString;

namespace velmora {

namespace {

bool clipboardHoldsText() {
  const QMimeData* data = QApplication::clipboard()->mimeData();
  return data && data->hasText();
}

/// The part of `widget` in which text is edited; none where it has none.
QWidget* textFieldOf(QWidget* widget) {
  if (dynamic_cast<QLineEdit*>(widget) || dynamic_cast<QPlainTextEdit*>(widget) ||
      dynamic_cast<QTextEdit*>(widget)) {
    return widget;
  }
  // These keep the keyboard themselves and pass it on to a field inside.
  if (dynamic_cast<QAbstractSpinBox*>(widget) || dynamic_cast<QComboBox*>(widget))
    return widget->findChild<QLineEdit*>();
  return nullptr;
}

/// Calls the one of the two that fits the kind of field.
template <typename OnLine, typename OnText>
auto onField(QWidget* field, OnLine onLine, OnText onText) {
  if (auto* line = dynamic_cast<QLineEdit*>(field)) return onLine(*line);
  if (auto* plain = dynamic_cast<QPlainTextEdit*>(field)) return onText(*plain);
  return onText(dynamic_cast<QTextEdit&>(*field));
}

bool hidesItsText(const QLineEdit& line) { return line.echoMode() != QLineEdit::Normal; }

bool canUndo(QWidget* field) {
  return onField(
      field, [](QLineEdit& line) { return line.isUndoAvailable(); },
      [](auto& area) { return !area.isReadOnly() && area.document()->isUndoAvailable(); });
}

bool canRedo(QWidget* field) {
  return onField(
      field, [](QLineEdit& line) { return line.isRedoAvailable(); },
      [](auto& area) { return !area.isReadOnly() && area.document()->isRedoAvailable(); });
}

bool canDelete(QWidget* field) {
  return onField(
      field, [](QLineEdit& line) { return line.hasSelectedText() && !line.isReadOnly(); },
      [](auto& area) { return area.textCursor().hasSelection() && !area.isReadOnly(); });
}

bool canCopy(QWidget* field) {
  return onField(
      field, [](QLineEdit& line) { return line.hasSelectedText() && !hidesItsText(line); },
      [](auto& area) { return area.textCursor().hasSelection(); });
}

bool canPaste(QWidget* field) {
  return onField(
      field, [](QLineEdit& line) { return !line.isReadOnly() && clipboardHoldsText(); },
      [](auto& area) { return area.canPaste(); });
}

bool canSelect(QWidget* field) {
  return onField(
      field, [](QLineEdit& line) { return !line.text().isEmpty(); },
      [](auto& area) { return !area.document()->isEmpty(); });
}

void deleteSelection(QWidget* field) {
  onField(
      field,
      [](QLineEdit& line) {
        if (line.hasSelectedText()) line.del();
      },
      [](auto& area) { area.textCursor().removeSelectedText(); });
}

}  // namespace

TextEditItems::TextEditItems(QMenu* menu, QWidget* window) : QObject(window), window_(window) {
  const auto call = [](auto operation) {
    return [operation](QWidget* field) { onField(field, operation, operation); };
  };
  add(menu, localizedString("VelmoraAppController", "&Undo"), "doUndo", QKeySequence::Undo, canUndo,
      call([](auto& field) { field.undo(); }));
  add(menu, localizedString("VelmoraAppController", "&Redo"), "doRedo", QKeySequence::Redo, canRedo,
      call([](auto& field) { field.redo(); }));
  menu->addSeparator();
  add(
      menu, localizedString("VelmoraAppController", "Cu&t"), "doCut", QKeySequence::Cut,
      [](QWidget* field) { return canDelete(field) && canCopy(field); },
      call([](auto& field) { field.cut(); }));
  add(menu, localizedString("VelmoraAppController", "&Copy"), "doCopy", QKeySequence::Copy, canCopy,
      call([](auto& field) { field.copy(); }));
  add(menu, localizedString("VelmoraAppController", "&Paste"), "doPaste", QKeySequence::Paste, canPaste,
      call([](auto& field) { field.paste(); }));
  add(menu, localizedString("VelmoraAppController", "&Delete"), "doDelete", QKeySequence::Delete, canDelete,
      deleteSelection);
  add(menu, localizedString("VelmoraAppController", "Select &All"), "doSelectAll", QKeySequence::SelectAll,
      canSelect, call([](auto& field) { field.selectAll(); }));
  connect(qApp, &QApplication::focusChanged, this,
          [this](QWidget*, QWidget* now) { base::guarded("focus", [&] { focusMoved(now); }); });
  focusMoved(QApplication::focusWidget());
}

void TextEditItems::focusMoved(QWidget* now) {
  // The menu bar takes the keyboard while it is walked through by keys, and another program may have it.
  if (!now || dynamic_cast<QMenuBar*>(now) || dynamic_cast<QMenu*>(now)) return;
  field_ = now->window() == window_ ? textFieldOf(now) : nullptr;
}

void TextEditItems::add(QMenu* menu, const QString& title, const char* name, const QKeySequence& keys,
                        std::function<bool(QWidget*)> possible, std::function<void(QWidget*)> command) {
  QAction* action = menu->addAction(title);
  action->setObjectName(QString::fromLatin1(name));
  action->setShortcut(keys);
  connect(action, &QAction::triggered, this, [this, possible, command = std::move(command)] {
    base::guarded("menu", [&] {
      // By its keys an item is chosen without the menu having been opened, and so looked at, before.
      if (field_ && possible(field_)) command(field_);
    });
  });
  items_.append({action, std::move(possible)});
}

void TextEditItems::validate() {
  for (const Item& item : items_) item.action->setEnabled(field_ && item.possible(field_));
}

}  // namespace velmora
