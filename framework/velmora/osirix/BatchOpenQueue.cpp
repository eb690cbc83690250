// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/osirix/BatchOpenQueue.h"

#include <QPointer>
#include <QScopeGuard>
#include <QUrl>
#include <utility>

#include "base/log/Guard.h"
#include "platform/controls/Alert.h"
#include "platform/documents/DocumentController.h"
#include "platform/runloop/RunLoop.h"
#include "platform/text/Localization.h"
#include "velmora/document/VelmoraDocument.h"

namespace velmora {

namespace {
constexpr double CloseDelay = 1.0;
}

void BatchOpenQueue::batchOpen(const platform::Notification& notification) {
  batchArray_.append(notification.object.toString());
  delayBatchOpen();
}

void BatchOpenQueue::delayBatchOpen() {
  if (batchArray_.isEmpty()) return;
  const QUrl url = QUrl::fromLocalFile(batchArray_.first());
  // Whatever becomes of this file, the next step is for the next one.
  const auto next = qScopeGuard([this] {
    if (!batchArray_.isEmpty()) batchArray_.removeFirst();
    runLoop_.performAfterDelay(this, 0, [this] { delayBatchOpen(); });
  });
  // Exporting may ask a question, and what is asked may close the document.
  const QPointer<platform::Document> document(
      controller_.openDocumentWithContentsOfURL(url, true).valueOr(nullptr));
  auto* record = dynamic_cast<VelmoraDocument*>(document.data());
  if (!record) return;
  const auto thenClose = qScopeGuard([this, document] {
    if (!document) return;
    ++closing_;
    runLoop_.performAfterDelay(this, CloseDelay, [this, document] { close(document); });
  });
  record->autoExport();
}

void BatchOpenQueue::close(const QPointer<platform::Document>& document) {
  // One notice is enough, when all of them are closed: until then it would only be in the way.
  const auto tell = qScopeGuard([this] {
    if (--closing_ > 0 || keptCopies_.isEmpty()) return;
    base::guarded("batch export", [this] { tellAboutKeptCopies(); });
  });
  // The user may have closed it meanwhile.
  auto* record = dynamic_cast<VelmoraDocument*>(document.data());
  const auto copy = record ? record->closeKeepingACopy() : std::nullopt;
  if (copy) keptCopies_.append(*copy);
}

void BatchOpenQueue::tellAboutKeptCopies() {
  const QString copies = std::exchange(keptCopies_, {}).join(QLatin1Char('\n'));
  alerts_.runModal(
      {platform::localizedString("VelmoraAppController",
                                 "The batch export has closed records with unsaved changes"),
       platform::localizedString("OrvVersion", "OK"), QString(), QString(),
       platform::formatted(
           platform::localizedString("VelmoraAppController", "Copies with the changes were kept as:\n%@"),
           {copies})});
}

}  // namespace velmora
