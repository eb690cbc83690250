// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QProcess>
#include <QString>
#include <stdexcept>

#include "base/Export.h"

namespace velmora::testkit {

/// A screen without glass, for programs that must run on a real window system: up when the constructor
/// returns.
class VELMORA_EXPORT VirtualScreen {
 public:
  VirtualScreen() {
    server_.setStandardErrorFile(QProcess::nullDevice());
    server_.start(
        QStringLiteral("Xvfb"),
        {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"), QStringLiteral("0"),
         QStringLiteral("1280x1024x24"), QStringLiteral("-nolisten"), QStringLiteral("tcp")});
    while (!server_.canReadLine()) {
      if (!server_.waitForReadyRead(30000)) throw std::runtime_error("Xvfb does not start");
    }
    display_ = QStringLiteral(":") + QString::fromLatin1(server_.readLine()).trimmed();
  }
  ~VirtualScreen() {
    server_.terminate();
    if (!server_.waitForFinished(30000)) server_.kill();
  }
  VirtualScreen(const VirtualScreen&) = delete;
  VirtualScreen& operator=(const VirtualScreen&) = delete;

  /// What DISPLAY holds for those who are to use this screen.
  const QString& display() const { return display_; }

 private:
  QProcess server_;
  QString display_;
};

}  // namespace velmora::testkit
