// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QPoint>
#include <QPointer>
#include <QString>
#include <functional>

#include "base/Export.h"

class QAbstractButton;
class QLabel;
class QLineEdit;
class QObject;
class QTabWidget;
class QWidget;

namespace velmora::platform {
class Alerts;
class TextFieldDelegate;
}  // namespace velmora::platform

namespace velmora {

class ShortDates;

/// The fields and buttons that every record's window has, found by their object names and tied to the record.
/// Any of them may be missing. A base class, as the classes that Qt Designer's files give are, so that an
/// application's document has them at hand.
class VELMORA_EXPORT RecordFields {
 protected:
  ~RecordFields() = default;

  /// What the buttons do; each is given the button.
  using Command = std::function<void(const QObject* sender)>;
  struct Commands {
    Command previous;
    Command next;
    Command add;
    Command remove;
  };

  /// Finds the fields and buttons, and connects the buttons as long as `record` lives.
  void connectWindow(QWidget& window, const QObject* record, const Commands& commands);
  /// Makes `delegate` the delegate of every text field that the user can edit, except those with the property
  /// "ownDelegate". The dates are brought into their form.
  void watchTextFields(QWidget& window, platform::TextFieldDelegate* delegate, const ShortDates& dates) const;
  /// Has the window tell `record` nothing any more.
  static void letGo(QWidget& window, const QObject* record);

  void setIdentifier(const QString& identifier);
  /// A null string when the window does not show it.
  QString identifier() const;
  /// Shows the calendar day of a point in time in the short date style; an invalid date empties the field.
  void setBirthDate(const QDateTime& date);
  void setExamDate(const QDateTime& date);

  /// Asks before the user edits a field that says already who the patient is.
  bool mayEdit(const QLineEdit* field, platform::Alerts& alerts) const;
  /// Where the examinations are counted, on the screen; the corner of the window when they are not.
  QPoint placeOfExamNumber(const QWidget* window) const;

  QPointer<QLineEdit> referenceIDField_;
  QPointer<QLineEdit> birthDateField_;
  QPointer<QLineEdit> examDateField_;
  /// Never read or written by the framework: what an age is, is the application's business.
  QPointer<QLineEdit> ageField_;
  QPointer<QLabel> examNumberField_;
  QPointer<QTabWidget> tabView_;
  QPointer<QAbstractButton> previousStudyButton_;
  QPointer<QAbstractButton> nextStudyButton_;
};

}  // namespace velmora
