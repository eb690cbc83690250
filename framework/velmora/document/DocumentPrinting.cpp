// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Printing, and the notice before a second copy.
#include <QWidget>

#include "platform/controls/Alert.h"
#include "base/log/AssertionFailure.h"
#include "platform/text/Localization.h"
#include "platform/runloop/RunLoop.h"
#include "platform/Services.h"
#include "velmora/document/VelmoraDocument.h"

using namespace velmora;

using velmora::platform::localizedString;

namespace {
constexpr qint64 RecentMilliseconds = 30000;
}

void VelmoraDocument::printDocument(const QVariantMap& settings, bool showPrintPanel, DidPrint didPrint) {
  const QDateTime now = services().runLoop.now();
  if (lastPrintedDate_.msecsTo(now) < RecentMilliseconds) {
    services().alerts.runModal(
        {localizedString("VelmoraDocument", "Recently Printed"), localizedString("OrvVersion", "OK"),
         QString(), QString(),
         localizedString("VelmoraDocument", "This document was printed in the last 30 seconds.")});
  }
  synchronizeToData();
  currentExam_ = lastExam();
  synchronizeFromData();
  if (QWidget* view = printableView())
    view->window()->setWindowTitle(preferredFileName(false) + QStringLiteral("[*]"));
  lastPrintedDate_ = services().runLoop.now();
  base::requireValue(lastPrintedDate_.isValid(), "VelmoraDocument");
  OrvAutoNameDocument::printDocument(settings, showPrintPanel, std::move(didPrint));
  synchronizeWindowTitle();
}
