// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QJsonObject>

#include "tests/integration/journey/Hands.h"

namespace journey {

/// The mouse alone: every window, menu, button, list, tab and field is clicked. The keyboard does nothing but
/// put a text into the field that was clicked; even to leave it, another place is clicked.
class MouseHands : public Hands {
 public:
  using Hands::Hands;

  void choose(const QStringList& path) override;
  void press(const QString& window, const QString& button) override;
  void push(const QString& window, const QString& widget) override;
  void fill(const QString& window, const QString& field, const QString& text) override;
  void pick(const QString& window, const QString& list, const QString& entry) override;
  void turnTo(const QString& window, const QString& tabs, const QString& label) override;
  void dismiss(const QString& window) override;
  void cancel(const QString& window) override;

 private:
  void click(const velmora::testkit::SeenWindow& window, QJsonObject target);
};

}  // namespace journey
