// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/osirix/BatchOpenQueue.h"

#include <QPointer>
#include <QScopeGuard>
#include <QUrl>

#include "platform/DocumentController.h"
#include "platform/RunLoop.h"
#include "platform/Services.h"
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
    services_.runLoop.performAfterDelay(this, 0, [this] { delayBatchOpen(); });
  });
  // Exporting may ask a question, and what is asked may close the document.
  const QPointer<platform::Document> document = controller_.openDocumentWithContentsOfURL(url, true);
  auto* record = dynamic_cast<VelmoraDocument*>(document.data());
  if (!record) return;
  const auto close = qScopeGuard([this, document, record] {
    if (!document) return;
    services_.runLoop.performAfterDelay(record, CloseDelay, [record] { record->closeKeepingACopy(); });
  });
  record->autoExport();
}

}  // namespace velmora
