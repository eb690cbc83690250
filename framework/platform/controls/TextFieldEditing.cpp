// SPDX-License-Identifier: LGPL-3.0-or-later
#include "platform/controls/TextFieldEditing.h"

#include <QFocusEvent>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QPointer>
#include <utility>

#include "base/log/Guard.h"

namespace velmora::platform {

namespace {

TextFieldEditing* editingOf(const QLineEdit* field) {
  for (QObject* child : field->children()) {
    if (auto* editing = dynamic_cast<TextFieldEditing*>(child)) return editing;
  }
  return nullptr;
}

/// A window that comes to the front, or a context menu that closes, gives the field the keyboard back:
/// nothing new was asked of the field.
bool onlyMovesWithTheWindow(Qt::FocusReason reason) {
  return reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason ||
         reason == Qt::MenuBarFocusReason;
}

/// A user who steps through the fields with the keyboard passes more of them than are to be edited.
bool walksThrough(Qt::FocusReason reason) {
  return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
         reason == Qt::ShortcutFocusReason;
}

}  // namespace

TextFieldEditing::TextFieldEditing(QLineEdit* field, TextFieldDelegate* delegate)
    : QObject(field), field_(field), delegate_(delegate) {
  textBefore_ = field->text();
  field->installEventFilter(this);
  connect(field, &QLineEdit::textEdited, this, [this] { textWasEdited(); });
  connect(field, &QLineEdit::textChanged, this, [this] { textChanged(); });
}

void TextFieldEditing::textWasEdited() {
  if (editing_ || !delegate_) return;
  // Changed without an edit: a paste, a drop, an undo after Return. The question comes late, but it comes.
  const QString before = textBefore_;
  const QPointer<TextFieldEditing> self(this);
  const bool began = begin();
  if (!self) return;
  if (!began) {
    field_->setText(before);
  } else if (!field_->hasFocus()) {
    field_->setFocus(Qt::OtherFocusReason);  // an edit ends by leaving the field, so the user must be in it
  }
}

void TextFieldEditing::textChanged() {
  textBefore_ = field_->text();
  if (!editing_) markIfInvalid();
}

std::optional<QString> TextFieldEditing::properForm(const QString& text) const {
  if (text.trimmed().isEmpty()) return QStringLiteral("");
  std::optional<QString> proper;
  base::guarded("text field", [&] { proper = formatter_(text); });
  // A null string is no form, either: what was typed is never lost to it.
  return proper && proper->isNull() ? std::nullopt : proper;
}

void TextFieldEditing::markIfInvalid() {
  if (!formatter_) return;
  const bool invalid = !properForm(field_->text());
  field_->setToolTip(invalid ? complaint_ : QString());
  // A colour says nothing to users who do not see it.
  field_->setAccessibleDescription(invalid ? complaint_ : QString());
  const bool onDark = field_->palette().color(QPalette::Base).lightnessF() < 0.5F;
  const QString red = onDark ? QStringLiteral("color: #ff9a9a") : QStringLiteral("color: #b00020");
  field_->setStyleSheet(invalid ? red : QString());
}

void TextFieldEditing::setFormatter(Formatter formatter, const QString& complaint) {
  formatter_ = std::move(formatter);
  complaint_ = complaint;
}

void TextFieldEditing::endEditing(QWidget* window) {
  if (!window) return;
  for (const QLineEdit* field : window->findChildren<QLineEdit*>()) {
    TextFieldEditing* editing = editingOf(field);
    if (editing && editing->editing_) editing->end();
  }
}

void TextFieldEditing::abandonEditing(QWidget* window) {
  if (!window) return;
  for (const QLineEdit* field : window->findChildren<QLineEdit*>()) {
    TextFieldEditing* editing = editingOf(field);
    if (editing && editing->editing_) editing->abandon();
  }
}

void TextFieldEditing::detach(QWidget* window) {
  if (!window) return;
  for (const QLineEdit* field : window->findChildren<QLineEdit*>()) {
    if (TextFieldEditing* editing = editingOf(field)) editing->delegate_ = nullptr;
  }
}

void TextFieldEditing::selectText(QLineEdit* field) {
  if (!field) return;
  field->setFocus(Qt::OtherFocusReason);
  // In a window that does not have the keyboard just now no focus event comes.
  TextFieldEditing* editing = editingOf(field);
  if (editing && !editing->editing_ && !editing->begin()) return;
  field->selectAll();
}

bool TextFieldEditing::begin() {
  if (editing_) return true;
  if (asking_ || !delegate_ || field_->isReadOnly()) return false;
  const QPointer<TextFieldEditing> self(this);
  asking_ = true;
  bool allowed = false;
  base::guarded("text field", [&] { allowed = delegate_->controlTextShouldBeginEditing(field_); });
  if (!self) return false;
  asking_ = false;
  if (!allowed) {
    field_->deselect();
    field_->window()->setFocus(Qt::OtherFocusReason);
    return false;
  }
  editing_ = true;
  if (delegate_) base::guarded("text field", [&] { delegate_->controlTextDidBeginEditing(field_); });
  return self != nullptr;
}

void TextFieldEditing::end() {
  if (!editing_) return;
  editing_ = false;
  if (formatter_) {
    const std::optional<QString> proper = properForm(field_->text());
    if (proper && *proper != field_->text()) field_->setText(*proper);
    markIfInvalid();
  }
  if (delegate_) base::guarded("text field", [&] { delegate_->controlTextDidEndEditing(field_); });
}

void TextFieldEditing::abandon() {
  // Leaving the field may end the edit, and brings what an input method still holds: neither is to be heard.
  TextFieldDelegate* const delegate = std::exchange(delegate_, nullptr);
  QWidget* const window = field_->window();
  if (window->focusWidget() == field_) window->setFocus(Qt::OtherFocusReason);
  end();
  field_->deselect();
  delegate_ = delegate;
}

bool TextFieldEditing::wouldEdit(QEvent* event) const {
  if (event->type() == QEvent::InputMethod) {
    // Input methods also send empty events, on focus and on clicks.
    const auto* input = static_cast<QInputMethodEvent*>(event);
    return !input->commitString().isEmpty() || !input->preeditString().isEmpty() ||
           input->replacementLength() > 0;
  }
  if (event->type() != QEvent::KeyPress) return false;
  const auto* key = static_cast<QKeyEvent*>(event);
  switch (key->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
    case Qt::Key_Escape:
      return false;
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
      return true;
    default:
      break;
  }
  if (key->matches(QKeySequence::Paste) || key->matches(QKeySequence::Cut) ||
      key->matches(QKeySequence::Undo) || key->matches(QKeySequence::Redo)) {
    return true;
  }
  return !key->text().isEmpty() && key->text().at(0).isPrint() &&
         !(key->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
}

bool TextFieldEditing::eventFilter(QObject* watched, QEvent* event) {
  if (watched != field_) return false;
  switch (event->type()) {
    case QEvent::FocusIn: {
      const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
      if (onlyMovesWithTheWindow(reason) || walksThrough(reason)) return false;
      const QPointer<TextFieldEditing> self(this);
      begin();
      return !self;
    }
    case QEvent::FocusOut:
      if (!onlyMovesWithTheWindow(static_cast<QFocusEvent*>(event)->reason())) end();
      return false;
    case QEvent::ShortcutOverride: {
      // In a field the arrows move the cursor, whatever button has them as its key.
      const int key = static_cast<QKeyEvent*>(event)->key();
      if (key == Qt::Key_Left || key == Qt::Key_Right) event->accept();
      return false;
    }
    case QEvent::KeyPress:
    case QEvent::InputMethod: {
      if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
          end();
          return false;
        }
      }
      if (editing_ || field_->isReadOnly() || !wouldEdit(event)) return false;
      const QPointer<TextFieldEditing> self(this);
      const bool began = begin();
      return !self || !began;
    }
    default:
      return false;
  }
}

}  // namespace velmora::platform
