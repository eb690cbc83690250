// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QList>
#include <QObject>
#include <QStringList>
#include <QUrl>
#include <functional>
#include <memory>
#include <vector>

#include "base/Export.h"
#include "platform/documents/Document.h"

namespace velmora::platform {

struct OpenPanel;

/// Makes, opens, orders and closes the documents of the application, and is the application's delegate: what
/// happens at start and end is overridden in a subclass.
class VELMORA_EXPORT DocumentController : public QObject {
 public:
  using DocumentFactory = std::function<std::unique_ptr<Document>()>;
  using DidCloseAll = std::function<void(bool didCloseAll)>;

  explicit DocumentController(Services& services);
  ~DocumentController() override;

  /// How a document of the application is made. Must be set before the first one is needed.
  void setDocumentFactory(DocumentFactory factory) { factory_ = std::move(factory); }

  // The open documents.

  QList<Document*> documents() const;
  /// Front to back.
  const QList<Document*>& orderedDocuments() const { return ordered_; }
  /// The front document, or none.
  Document* currentDocument() const { return ordered_.isEmpty() ? nullptr : ordered_.first(); }
  /// The open document of that file, or none. Two paths to one file are the same file.
  Document* documentForURL(const QUrl& url) const;
  /// Every open document of that file: more than one only in the middle of a save.
  QList<Document*> documentsForURL(const QUrl& url) const;

  // Making and opening.

  void newDocument();
  /// Asks which files to open, and opens them.
  void openDocument();
  /// Opens what the user has asked for, and tells the user what cannot be opened. An untouched blank document
  /// makes room for the first one that opens. Returns false when none opens.
  bool openDocuments(const QList<QUrl>& urls);
  Document* openUntitledDocument(bool display);
  /// Opens a file, or returns the document of one that is open already, which comes to the front if
  /// displayed. Failures are not shown: the caller decides who should know.
  base::Result<Document*> openDocumentWithContentsOfURL(const QUrl& url, bool display);
  /// Runs the open panel; an override may set it up first.
  virtual int runModalOpenPanel(OpenPanel& panel, const QStringList& fileTypes);
  /// The extensions offered in the open panel.
  virtual QStringList openableFileTypes() const { return {}; }
  /// Called for every file that the user opens, or saves under its name. The base does nothing.
  virtual void noteNewRecentDocumentURL(const QUrl&) {}
  /// Tells the user that a file could not be opened.
  void presentOpenError(const QUrl& url, const QString& reason);

  // Closing and quitting.

  /// Ends what is being edited; then, after what that sets going, closes the documents, front to back, each
  /// asking its question. Stops at the first that stays.
  void closeAllDocuments(DidCloseAll didCloseAll);
  /// Stops a script that runs, ends what is being edited, asks about unsaved changes, and quits unless the
  /// user keeps a document open.
  void terminate();
  /// Called when the session ends. Returns true when the application may end with it: nothing is unsaved, or
  /// nobody can be asked and the changes have been kept. Otherwise the questions of terminate() follow.
  bool sessionMayEnd(bool userCanBeAsked);
  bool isTerminating() const { return terminating_; }
  /// With this set, the application always has a document for the next patient: when the user has closed the
  /// last one a new blank one appears, and closing an untouched blank one as the last quits.
  void setKeepsBlankDocument(bool keeps) { keepsBlankDocument_ = keeps; }

  // What the application does at start and end. The base does nothing.

  virtual void awakeFromNib() {}
  virtual void applicationDidFinishLaunching() {}
  virtual void applicationWillTerminate() {}
  /// Called when the desktop asks to print a file. Returns whether that has been dealt with.
  virtual bool applicationPrintFile(const QString& /*path*/) { return false; }
  /// Called when the desktop asks for one of the application's actions, by its name in the desktop entry.
  /// Returns false when there is no such action. The base knows "new": a new document.
  virtual bool applicationPerformAction(const QString& name);
  /// Called when a document's window has been loaded: the place to give it its menu bar.
  virtual void documentWindowDidLoad(WindowController&) {}
  /// Whether the document is untouched since it was made.
  virtual bool isUntouched(const Document& document) const;

  // Called by documents and their windows.

  void noteDocumentIsFront(Document* document);
  void removeDocument(Document* document);

 protected:
  Services& services() const { return services_; }

 private:
  int firstFreeUntitledNumber() const;
  Document* adopt(std::unique_ptr<Document> document, bool display);
  void endEditingEverywhere();
  void destroyClosedDocuments();
  void closeAllNow(DidCloseAll didCloseAll);
  void closeNextOf(QList<QPointer<Document>> remaining, DidCloseAll didCloseAll);
  void reviewUnsavedDocuments(DidCloseAll didReview);
  void lastDocumentClosed(bool userLeaves);

  Services& services_;
  DocumentFactory factory_;
  std::vector<std::unique_ptr<Document>> documents_;
  std::vector<std::unique_ptr<Document>> closed_;  // until the current event is over
  QList<Document*> ordered_;
  bool terminating_ = false;
  bool keepsBlankDocument_ = false;
};

}  // namespace velmora::platform
