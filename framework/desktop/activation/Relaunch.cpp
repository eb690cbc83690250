// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/activation/Relaunch.h"

#include <QCoreApplication>
#include <QProcess>
#include <algorithm>

#include "base/log/Log.h"

namespace velmora::desktop {

using Kind = ActivationRequest::Kind;

QStringList argumentsFor(const ActivationRequest& request) {
  switch (request.kind) {
    case Kind::Open:
      return QStringList{QStringLiteral("--")} + request.files;
    case Kind::Print:
      return QStringList{QStringLiteral("--print"), QStringLiteral("--")} + request.files;
    case Kind::Action:
      return {QStringLiteral("--action=") + request.action};
    case Kind::Activate:
      break;
  }
  return {};
}

QList<ActivationRequest> startsFor(const QList<ActivationRequest>& left) {
  // Printing alone shows no window.
  bool windowComes = std::any_of(left.begin(), left.end(), [](const ActivationRequest& request) {
    return request.kind == Kind::Open || request.kind == Kind::Action;
  });
  QList<ActivationRequest> starts;
  for (const ActivationRequest& request : left) {
    if (request.kind == Kind::Activate && windowComes) continue;
    if (request.kind == Kind::Activate) windowComes = true;
    starts.append(request);
  }
  return starts;
}

void leaveToAnother(const QList<ActivationRequest>& left) {
  for (const ActivationRequest& request : startsFor(left)) {
    if (!QProcess::startDetached(QCoreApplication::applicationFilePath(), argumentsFor(request)))
      base::logLine(QStringLiteral("What the desktop asked for last could not be done: ") +
                    summaryForLog(request));
  }
}

}  // namespace velmora::desktop
