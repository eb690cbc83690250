// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace velmora::platform {
class Alerts;
class Workspace;
}  // namespace velmora::platform

namespace velmora::desktop {

/// The first page of the help in `folder`, which has a folder "<language>/index.html" for each language, in
/// the first of `languages` ("de-AT", "de", ...) that it has; English where it has none of them.
/// Nothing when there is no help at all.
std::optional<QString> helpPage(const QString& folder, const QStringList& languages);

/// Opens the help in `folder` in the user's language with the user's program for it, or says that there is
/// none.
void showHelp(const QString& folder, platform::Workspace& workspace, platform::Alerts& alerts);

}  // namespace velmora::desktop
