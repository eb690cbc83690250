// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include "platform/controls/Alert.h"

namespace velmora::desktop {

/// Alerts of a program that may have nobody before it. Shows them as `alerts` does; once unattended, it
/// writes them to standard error instead and answers with what changes least: the other button, else the
/// alternate one, else the only one.
class UnattendedAlerts : public platform::Alerts {
 public:
  explicit UnattendedAlerts(platform::Alerts& alerts) : alerts_(alerts) {}

  void setUnattended(bool unattended) { unattended_ = unattended; }

  int runModal(const platform::Alert& alert) override;
  void beginSheetModalForWindow(const platform::Alert& alert, QWidget* window, const QObject* owner,
                                DidEnd didEnd) override;

 private:
  platform::Alerts& alerts_;
  bool unattended_ = false;
};

/// Writes one line to standard error, beginning with the program's name.
void tellOnStandardError(const QString& line);

}  // namespace velmora::desktop
