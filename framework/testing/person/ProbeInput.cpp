// SPDX-License-Identifier: LGPL-3.0-or-later
#include "testing/person/ProbeInput.h"

#include <QJsonDocument>

namespace velmora::testkit {

void ProbeInput::click(const SeenWindow& window, QJsonObject target) {
  const QString what = QString::fromUtf8(QJsonDocument(target).toJson(QJsonDocument::Compact));
  target["do"] = "click";
  target["window"] = window.id();
  probe_.must("to click " + what, target);
}

}  // namespace velmora::testkit
