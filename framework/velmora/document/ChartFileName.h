// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

class QTabWidget;

namespace velmora {

/// The labels of the tabs as they are read, without keyboard marks.
QStringList tabLabels(const QTabWidget* tabView);

/// The file name of an exported chart: the name in upper case; where there are two or more tabs, a space and
/// the label of the selected one; and ".jpg". A "/" in a label becomes "-", as it does in the name.
QString chartFileName(const QString& preferredName, const QStringList& tabs, qsizetype selected);

}  // namespace velmora
