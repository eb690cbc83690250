// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QLineEdit>
#include <QObject>
#include <functional>
#include <optional>

#include "base/Export.h"

namespace velmora::platform {

/// Is told when the user begins and ends editing a text field.
class VELMORA_EXPORT TextFieldDelegate {
 public:
  virtual ~TextFieldDelegate() = default;
  /// Asked when the user enters the field; false keeps it as it is and gives the keyboard back to the window.
  virtual bool controlTextShouldBeginEditing(QLineEdit*) { return true; }
  virtual void controlTextDidBeginEditing(QLineEdit*) {}
  virtual void controlTextDidEndEditing(QLineEdit*) {}
};

/// Watches one text field for its delegate.
///
/// Editing begins when the user clicks into the field, or first changes it after coming by the keyboard: so
/// Tab passes through a filled field without a question. It ends when the keyboard goes elsewhere or Return
/// is pressed; a change after Return begins anew, whatever makes it (keys, paste, a drop, undo), and is taken
/// back when it is refused. A window that merely loses or regains the keyboard, or a menu that opens, neither
/// begins nor ends an edit.
class VELMORA_EXPORT TextFieldEditing : public QObject {
 public:
  /// Gives the proper form of what was typed, which takes its place at the end of an edit. Text that has none
  /// stays, and is marked, with `complaint` as the tool tip, for as long as it stands there.
  using Formatter = std::function<std::optional<QString>(const QString& text)>;

  /// Lives as long as `field`; `delegate` must outlive the field or be let go of by detach().
  TextFieldEditing(QLineEdit* field, TextFieldDelegate* delegate);

  void setFormatter(Formatter formatter, const QString& complaint);
  bool isEditing() const { return editing_; }

  /// Ends the edit in progress in that window, if there is one, as if the user had left the field.
  static void endEditing(QWidget* window);
  /// Ends the edits in progress in that window without telling the delegates, because the fields are about to
  /// get other texts: whoever types on must begin anew, and is asked again. The keyboard goes to the window.
  static void abandonEditing(QWidget* window);
  /// Lets go of the delegates of all fields in that window: what happens to them no longer matters to anyone.
  static void detach(QWidget* window);
  /// Starts editing in `field` with all its text selected.
  static void selectText(QLineEdit* field);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool begin();
  void end();
  void abandon();
  bool wouldEdit(QEvent* event) const;
  void textWasEdited();
  void textChanged();
  std::optional<QString> properForm(const QString& text) const;
  void markIfInvalid();

  QLineEdit* field_;
  TextFieldDelegate* delegate_;
  Formatter formatter_;
  QString complaint_;
  QString textBefore_;  // before the change that is being reported
  bool editing_ = false;
  bool asking_ = false;
};

}  // namespace velmora::platform
