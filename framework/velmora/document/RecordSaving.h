// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>

#include "platform/documents/Document.h"

namespace velmora::platform {
class Alerts;
}

namespace velmora {

/// Decides which file a record is saved to, what closing it asks, and when it may close. Remembers what was
/// agreed, and what the record holds that is not saved.
class RecordSaving {
 public:
  explicit RecordSaving(platform::Alerts& alerts) : alerts_(alerts) {}

  // What the record holds.

  /// The record in the document's file has this name.
  void setSavedName(const QString& name) { savedName_ = name; }
  /// The record has been saved under this name.
  void noteSaved(const QString& name);
  /// More than an identifier was entered.
  void noteEntry() noexcept { holdsMoreThanIdentifier_ = true; }
  /// Whether more than an identifier was entered since the record was read or last saved.
  bool holdsMoreThanIdentifier() const noexcept { return holdsMoreThanIdentifier_; }

  // Saving.

  enum class Target { SameFile, NewFile, None };
  /// Which file a record that has one and is now called `name` goes to. Asks when it was saved under another
  /// name, so that no patient's file turns into another's unseen.
  Target askForTarget(const QString& name);
  /// Has every further save close the document.
  void closeAfterSaving() noexcept { closeAfterSave_ = true; }
  /// Whether a save that ended so closes the document.
  bool closesAfter(platform::SaveOutcome outcome) const { return closeAfterSave_ && mayCloseAfter(outcome); }
  /// Whether the closing of the window would then lose nothing that the user wants.
  bool mayCloseAfter(platform::SaveOutcome outcome) const;

  // Closing.

  enum class CloseAnswer { Close, SaveFirst, Stay };
  /// Asks what becomes of unsaved changes. `automatic`: they can be saved without a panel.
  CloseAnswer askBeforeClosing(bool automatic);
  /// Whether the user has agreed to close: then a saved record is not opened again, and one whose saving was
  /// given up may go.
  bool closeRequested() const noexcept { return closeRequested_; }
  void setCloseRequested(bool requested) noexcept { closeRequested_ = requested; }

 private:
  platform::Alerts& alerts_;
  QString savedName_;
  bool holdsMoreThanIdentifier_ = false;
  bool closeRequested_ = false;
  bool closeAfterSave_ = false;
};

}  // namespace velmora
