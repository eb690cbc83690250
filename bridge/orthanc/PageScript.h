// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QStringList>

namespace bridge {

struct PageScript {
  QByteArray javaScript;
  QStringList
      complaints;  ///< what is wrong in the configuration, one line each; what is right is used all the same
};

/// The script for Orthanc Explorer, with the applications that Orthanc's configuration names before it:
///
///     "Velmora": { "Applications": [ { "Name": "Growth", "BundleIdentifier": "org.velmora.growth" } ] }
///
/// Nothing else of the configuration goes into the script, since every user of the page can read it.
PageScript pageScript(const QByteArray& orthancConfiguration);

}  // namespace bridge
