// SPDX-License-Identifier: LGPL-3.0-or-later
#include "platform/documents/DocumentController.h"

#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <algorithm>

#include "base/log/AssertionFailure.h"
#include "base/log/Guard.h"
#include "base/log/Log.h"
#include "platform/Services.h"
#include "platform/controls/Alert.h"
#include "platform/controls/Panels.h"
#include "platform/controls/TextFieldEditing.h"
#include "platform/documents/Application.h"
#include "platform/runloop/RunLoop.h"
#include "platform/scripts/Script.h"
#include "platform/text/Localization.h"

namespace velmora::platform {

namespace {

QString canonicalPath(const QUrl& url) {
  const QFileInfo file(url.toLocalFile());
  const QString canonical = file.canonicalFilePath();
  return canonical.isEmpty() ? QDir::cleanPath(file.absoluteFilePath()) : canonical;
}

/// Two paths to one file: the same once links are followed or, on a folder that ignores case, the same but
/// for case and leading to one file. (Of two hard links each has a file of its own as soon as it is saved.)
bool isSameFile(const QString& first, const QString& second) {
  if (first == second) return true;
  const auto folded = [](const QString& path) {
    return path.normalized(QString::NormalizationForm_C).toCaseFolded();
  };
  if (folded(first) != folded(second)) return false;
  struct stat one {};
  struct stat other {};
  return ::stat(QFile::encodeName(first).constData(), &one) == 0 &&
         ::stat(QFile::encodeName(second).constData(), &other) == 0 && one.st_dev == other.st_dev &&
         one.st_ino == other.st_ino;
}

}  // namespace

DocumentController::DocumentController(Services& services) : services_(services) {
  services_.documentController = this;
}

DocumentController::~DocumentController() {
  // Documents may still ask for their controller while they go.
  ordered_.clear();
  for (auto& document : documents_) closed_.push_back(std::move(document));
  documents_.clear();
  destroyClosedDocuments();
  services_.documentController = nullptr;
}

void DocumentController::destroyClosedDocuments() {
  for (const auto& document : closed_) document->releaseWindows();
  closed_.clear();
}

QList<Document*> DocumentController::documents() const {
  QList<Document*> all;
  for (const auto& document : documents_) all.append(document.get());
  return all;
}

Document* DocumentController::documentForURL(const QUrl& url) const { return documentsForURL(url).value(0); }

QList<Document*> DocumentController::documentsForURL(const QUrl& url) const {
  QList<Document*> found;
  if (url.isEmpty()) return found;
  const QString path = canonicalPath(url);
  for (const auto& document : documents_) {
    if (!document->fileURL().isEmpty() && isSameFile(canonicalPath(document->fileURL()), path))
      found.append(document.get());
  }
  return found;
}

Document* DocumentController::adopt(std::unique_ptr<Document> document, bool display) {
  Document* adopted = document.get();
  documents_.push_back(std::move(document));
  ordered_.append(adopted);
  adopted->makeWindowControllers();
  if (display) adopted->showWindows();
  return adopted;
}

void DocumentController::newDocument() { openUntitledDocument(true); }

Document* DocumentController::openUntitledDocument(bool display) {
  base::requireValue(static_cast<bool>(factory_), "DocumentController");
  auto document = factory_();
  document->setUntitledNumber(firstFreeUntitledNumber());
  return adopt(std::move(document), display);
}

void DocumentController::openDocument() {
  OpenPanel panel;
  panel.allowsMultipleSelection = true;
  if (runModalOpenPanel(panel, openableFileTypes()) != PanelOKButton) return;
  openDocuments(panel.urls);
}

bool DocumentController::openDocuments(const QList<QUrl>& urls) {
  QList<QPointer<Document>> before;
  for (Document* document : documents()) before.append(document);
  bool openedOne = false;
  for (const QUrl& url : urls) {
    base::guarded("open", [&] {
      const base::Result<Document*> opened = openDocumentWithContentsOfURL(url, true);
      if (!opened.ok()) return presentOpenError(url, opened.error());
      openedOne = true;
      noteNewRecentDocumentURL(url);
    });
  }
  // An untouched blank window has served its purpose once a record is open.
  for (const QPointer<Document>& document : before) {
    if (openedOne && document && !document->isClosed() && isUntouched(*document)) document->close();
  }
  return openedOne;
}

bool DocumentController::applicationPerformAction(const QString& name) {
  if (name != QLatin1String("new")) return false;
  newDocument();
  return true;
}

int DocumentController::firstFreeUntitledNumber() const {
  for (int number = 1;; ++number) {
    const bool taken = std::any_of(documents_.begin(), documents_.end(), [number](const auto& document) {
      return document->fileURL().isEmpty() && document->untitledNumber() == number;
    });
    if (!taken) return number;
  }
}

base::Result<Document*> DocumentController::openDocumentWithContentsOfURL(const QUrl& url, bool display) {
  if (Document* open = documentForURL(url)) {
    if (display) open->showWindows();
    return open;
  }
  base::requireValue(static_cast<bool>(factory_), "DocumentController");
  auto document = factory_();
  const base::Result<> read = document->readFromURL(url);
  if (!read.ok()) return read.failure();
  return adopt(std::move(document), display);
}

int DocumentController::runModalOpenPanel(OpenPanel& panel, const QStringList& fileTypes) {
  panel.allowedFileTypes = fileTypes;
  return services_.panels.runModal(panel);
}

void DocumentController::presentOpenError(const QUrl& url, const QString& reason) {
  services_.alerts.runModal({formatted(localizedString("Document", "The file '%@' could not be opened."),
                                       {QFileInfo(url.toLocalFile()).fileName()}),
                             localizedString("OrvVersion", "OK"), QString(), QString(), reason});
}

void DocumentController::endEditingEverywhere() {
  for (const Document* document : documents()) TextFieldEditing::endEditing(document->windowForSheet());
}

void DocumentController::closeAllDocuments(DidCloseAll didCloseAll) {
  endEditingEverywhere();
  services_.runLoop.performAfterDelay(
      this, 0, [this, didCloseAll = std::move(didCloseAll)] { closeAllNow(didCloseAll); });
}

void DocumentController::closeAllNow(DidCloseAll didCloseAll) {
  QList<QPointer<Document>> remaining;
  for (Document* document : ordered_) remaining.append(document);
  closeNextOf(std::move(remaining), [didCloseAll](bool all) {
    if (didCloseAll) didCloseAll(all);
  });
}

void DocumentController::closeNextOf(QList<QPointer<Document>> remaining, DidCloseAll didCloseAll) {
  while (!remaining.isEmpty() && (!remaining.first() || remaining.first()->isClosed()))
    remaining.removeFirst();
  if (remaining.isEmpty()) {
    didCloseAll(true);
    return;
  }
  const QPointer<Document> next = remaining.takeFirst();
  if (next->isDocumentEdited()) next->showWindows();  // the question should stand before what it is about
  next->canCloseDocument([this, remaining, didCloseAll](Document* document, bool shouldClose) {
    if (!shouldClose) {
      didCloseAll(false);
      return;
    }
    document->close();
    closeNextOf(remaining, didCloseAll);
  });
}

void DocumentController::reviewUnsavedDocuments(DidCloseAll didReview) {
  const auto unsaved = std::count_if(documents_.begin(), documents_.end(),
                                     [](const auto& document) { return document->isDocumentEdited(); });
  if (unsaved > 1) {
    const int answer = services_.alerts.runModal(
        {formatted(localizedString("Document",
                                   "You have %ld documents with unsaved changes. Do you want to review "
                                   "these changes before quitting?"),
                   {QString::number(unsaved)}),
         localizedString("Document", "Review Changes..."), localizedString("Document", "Discard Changes"),
         localizedString("OrvVersion", "Cancel"),
         localizedString("Document", "If you don't review your documents, all your changes will be lost.")});
    if (answer == AlertAlternateReturn) {
      for (Document* document : documents()) document->close();
      return didReview(true);
    }
    if (answer != AlertDefaultReturn) return didReview(false);
  }
  closeAllNow(std::move(didReview));
}

void DocumentController::terminate() {
  services_.scripts.stopRunning();  // while one runs, the call below waits, and so does the whole session
  if (terminating_) return;
  terminating_ = true;
  endEditingEverywhere();
  services_.runLoop.performAfterDelay(this, 0, [this] {
    try {
      reviewUnsavedDocuments([this](bool mayQuit) {
        if (!mayQuit) {
          terminating_ = false;
          return;
        }
        base::guarded("end", [this] { applicationWillTerminate(); });
        services_.application.stop();
      });
    } catch (...) {
      terminating_ = false;  // who could not be asked now can be asked again
      throw;
    }
  });
}

bool DocumentController::sessionMayEnd(bool userCanBeAsked) {
  if (!userCanBeAsked) {
    // To end an edit may set a question going, before which everything would wait until the session is gone.
    // What stands in the fields is kept without that. And one document that fails must not take the others
    // with it.
    for (Document* document : documents()) {
      base::guarded("session end", [document] { document->keepUnsavedChanges(); });
    }
    return true;
  }
  endEditingEverywhere();
  const auto unsaved = [](const auto& document) { return document->isDocumentEdited(); };
  if (std::none_of(documents_.begin(), documents_.end(), unsaved)) return true;
  terminate();
  return false;
}

bool DocumentController::isUntouched(const Document& document) const {
  return document.fileURL().isEmpty() && !document.isDocumentEdited();
}

void DocumentController::noteDocumentIsFront(Document* document) {
  const qsizetype index = ordered_.indexOf(document);
  if (index > 0) ordered_.move(index, 0);
}

void DocumentController::removeDocument(Document* document) {
  ordered_.removeAll(document);
  const auto found = std::find_if(documents_.begin(), documents_.end(),
                                  [document](const auto& owned) { return owned.get() == document; });
  if (found == documents_.end()) return;
  const bool leaving = document->wasClosedByUser() && isUntouched(*document);
  closed_.push_back(std::move(*found));
  documents_.erase(found);
  // Its own code may be running right now: it goes when the current event is over.
  services_.runLoop.performAfterDelay(this, 0, [this, leaving] {
    destroyClosedDocuments();
    lastDocumentClosed(leaving);
  });
}

void DocumentController::lastDocumentClosed(bool userLeaves) {
  if (!keepsBlankDocument_ || terminating_ || !documents_.empty()) return;
  if (userLeaves) {
    terminate();
  } else {
    openUntitledDocument(true);
  }
}

}  // namespace velmora::platform
