// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>
#include <functional>

#include "base/Export.h"

class QWidget;

namespace velmora::platform {

/// A question or a notice. A button with an empty title is not shown. Escape presses the button titled as the
/// platform's "Cancel" where there is one.
struct Alert {
  QString messageText;
  QString defaultButton;
  QString alternateButton;
  QString otherButton;
  QString informativeText;

  bool operator==(const Alert&) const = default;
};

/// Which button answered. An alert that ends without an answer, because the program ends, is stopped: that
/// agrees to nothing and refuses nothing, so nothing is stored, dropped or overwritten on it.
enum AlertReturn : int {
  AlertDefaultReturn = 1,
  AlertAlternateReturn = 0,
  AlertOtherReturn = -1,
  AlertStopped = -1000
};

/// Shows alerts.
class VELMORA_EXPORT Alerts {
 public:
  using DidEnd = std::function<void(int returnCode)>;

  virtual ~Alerts() = default;

  /// Shows the alert application-modally and returns the answer (AlertReturn).
  virtual int runModal(const Alert& alert) = 0;
  /// Shows the alert as a sheet on `window` and returns at once; `didEnd` gets the answer, unless `owner` has
  /// gone.
  virtual void beginSheetModalForWindow(const Alert& alert, QWidget* window, const QObject* owner,
                                        DidEnd didEnd) = 0;
};

}  // namespace velmora::platform
