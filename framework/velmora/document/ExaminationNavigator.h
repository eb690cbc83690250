// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>
#include <functional>

#include "velmora/document/ExaminationHooks.h"

class QObject;
class QWidget;

namespace velmora::platform {
class Alerts;
class Feedback;
}  // namespace velmora::platform

namespace velmora {

/// Steps through the examinations of a record, adds and removes them, and knows which one is shown. Fields
/// are stored before, and loaded after, every change.
class ExaminationNavigator {
 public:
  ExaminationNavigator(ExaminationHooks& record, platform::Alerts& alerts, platform::Feedback& feedback)
      : record_(record), alerts_(alerts), feedback_(feedback) {}

  /// The index of the examination shown, from 0.
  quint64 current() const noexcept { return current_; }
  /// Neither stores nor loads: for a subclass that does so itself.
  void setCurrent(quint64 index) noexcept { current_ = index; }

  void goTo(quint64 index);
  void next();
  void previous();
  void add();
  /// Asks in a sheet on `window` whether to remove the examination shown, and gives `didEnd` the answer,
  /// unless `owner` has gone. The only examination is never removed, and an agreement that comes when another
  /// one is shown counts for nothing: both beep.
  void askToRemove(QWidget* window, const QObject* owner, std::function<void(int returnCode)> didEnd);
  void removeCurrent();
  /// "2 of 3", in the user's language.
  QString position() const;

 private:
  ExaminationHooks& record_;
  platform::Alerts& alerts_;
  platform::Feedback& feedback_;
  quint64 current_ = 0;
};

}  // namespace velmora
