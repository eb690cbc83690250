// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/alerts/UnattendedAlerts.h"

#include <QCoreApplication>
#include <cstdio>

#include "base/log/Guard.h"

namespace velmora::desktop {

void tellOnStandardError(const QString& line) {
  QString flat = line;
  for (QChar& character : flat) {
    if (character.category() == QChar::Other_Control) character = u' ';
  }
  const QString text = QCoreApplication::applicationName() + QStringLiteral(": ") + flat + QLatin1Char('\n');
  std::fputs(text.toLocal8Bit().constData(), stderr);
}

int UnattendedAlerts::runModal(const platform::Alert& alert) {
  if (!unattended_) return alerts_.runModal(alert);
  tellOnStandardError((alert.messageText + QLatin1Char(' ') + alert.informativeText).trimmed());
  if (!alert.otherButton.isEmpty()) return platform::AlertOtherReturn;
  return alert.alternateButton.isEmpty() ? platform::AlertDefaultReturn : platform::AlertAlternateReturn;
}

void UnattendedAlerts::beginSheetModalForWindow(const platform::Alert& alert, QWidget* window,
                                                const QObject* owner, DidEnd didEnd) {
  if (!unattended_) return alerts_.beginSheetModalForWindow(alert, window, owner, std::move(didEnd));
  const int answer = runModal(alert);
  base::guarded("sheet", [&] { didEnd(answer); });
}

}  // namespace velmora::desktop
