// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QString>

class QLineEdit;

namespace velmora::platform {
class RunLoop;
class TextFieldEditing;
}  // namespace velmora::platform

namespace velmora {

/// Dates as a document's window shows and reads them: the short style, without a time. What a typed year of
/// two digits means depends on the run loop's clock.
class ShortDates {
 public:
  explicit ShortDates(const platform::RunLoop& clock) : clock_(clock) {}

  /// Empty for an invalid date.
  static QString text(const QDate& day);
  static QString text(const QDateTime& date);
  /// Invalid when the text is no date.
  QDate day(const QString& text) const;
  QDateTime date(const QString& text) const;

  /// Has a field bring the dates typed into it into this form, and mark what is no date.
  void format(QLineEdit& field, platform::TextFieldEditing& editing) const;

 private:
  QDate today() const;

  const platform::RunLoop& clock_;
};

}  // namespace velmora
