// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/document/ChartFileName.h"

#include <QRegularExpression>
#include <QTabWidget>

namespace velmora {

QStringList tabLabels(const QTabWidget* tabView) {
  QStringList labels;
  // "&Weight" is read Weight; "&&" is a real one.
  static const QRegularExpression mark(QStringLiteral("&(.)"));
  for (int i = 0; tabView && i < tabView->count(); ++i) {
    labels.append(tabView->tabText(i).replace(mark, QStringLiteral("\\1")));
  }
  return labels;
}

QString chartFileName(const QString& preferredName, const QStringList& tabs, qsizetype selected) {
  QString name = preferredName.toUpper();
  if (tabs.size() >= 2 && selected >= 0 && selected < tabs.size()) {
    QString label = tabs.at(selected);
    name += QLatin1Char(' ') + label.replace(QLatin1Char('/'), QLatin1Char('-'));
  }
  return name + QStringLiteral(".jpg");
}

}  // namespace velmora
