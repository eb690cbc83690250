// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QApplication>
#include <QTimer>
#include <QWidget>
#include <functional>

#include "testing/standins/Scripted.h"

namespace velmora::testkit {

/// Calls `person` with the dialog that opens next, in its own event loop. A dialog opens before its loop
/// begins, so the first event of that loop finds it open.
template <typename Dialog>
void whenOpen(std::function<void(Dialog&)> person) {
  QTimer::singleShot(0, qApp, [person = std::move(person)] {
    auto* dialog = dynamic_cast<Dialog*>(QApplication::activeModalWidget());
    if (!dialog) {
      reportFailure(QStringLiteral("no such dialog is open"));
      if (QWidget* other = QApplication::activeModalWidget()) other->close();
      return;
    }
    person(*dialog);
  });
}

}  // namespace velmora::testkit
