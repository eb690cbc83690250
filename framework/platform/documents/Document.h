// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QUrl>
#include <QVariantMap>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "base/Export.h"
#include "base/files/FileManager.h"

class QWidget;

namespace velmora::platform {

struct SavePanel;
struct Services;
class WindowController;

enum class SaveOperation { Save, SaveAs, SaveTo };
enum class ChangeType { Done, Undone, Cleared };
/// What became of content that was to be saved.
enum class SaveOutcome {
  Kept,     ///< it is in a file: the document's own, a copy, or one that the user has named
  GivenUp,  ///< it is in no file, and the user does not want it
  Unsaved   ///< it is in no file: the document must not close over it
};

/// One document: a file (or none yet), its content in memory, its windows, and whether it has unsaved
/// changes.
///
/// The document controller owns it. close() detaches it at once and destroys it after the current event,
/// because documents close themselves in the middle of their own operations: nobody keeps a plain pointer to
/// one across an alert or a delay.
class VELMORA_EXPORT Document : public QObject {
 public:
  using DidSave = std::function<void(Document*, bool didSave)>;
  using ShouldClose = std::function<void(Document*, bool shouldClose)>;
  using DidPrint = std::function<void(Document*, bool didPrint)>;

  explicit Document(Services& services);
  ~Document() override;

  // The file.

  /// Where the document is kept; empty while it has no file.
  const QUrl& fileURL() const { return fileURL_; }
  void setFileURL(const QUrl& url);
  /// The file's name without extension, or "Untitled" with a number.
  virtual QString displayName() const;
  void setUntitledNumber(int number) { untitledNumber_ = number; }
  int untitledNumber() const { return untitledNumber_; }

  /// Takes the content from bytes. A failure says why in words for the user and leaves the document unusable.
  virtual base::Result<> readFromData(const QByteArray& data, const QString& typeName) = 0;
  /// The content as bytes.
  virtual base::Result<QByteArray> dataOfType(const QString& typeName) = 0;
  /// Reads the file; on success it is the document's file and the document has no changes.
  virtual base::Result<> readFromURL(const QUrl& url);

  // Changes.

  void updateChangeCount(ChangeType change);
  bool isDocumentEdited() const noexcept { return changeCount_ != 0; }

  // Windows.

  /// The interface file of the document's window. None in the base class.
  virtual QString windowNibName() const { return {}; }
  /// Makes the window controllers; the base makes one for windowNibName().
  virtual void makeWindowControllers();
  /// Called when a window of the document has been loaded. The base does nothing; an override calls it first.
  virtual void windowControllerDidLoadNib(WindowController& windowController);
  /// Called when windowControllerDidLoadNib() of every class has run: the window shows the document as it was
  /// read.
  virtual void windowIsSetUp() {}
  /// Brings the document's windows to the front, after loading them if need be.
  void showWindows();
  /// The window that carries the document's sheets; none before it is loaded.
  QWidget* windowForSheet() const;
  /// The window of the document, loaded if need be.
  QWidget* window() const;

  // Saving. Every operation reports the outcome to `didSave`, where one is given, before it returns.

  /// Saves to the document's file; a document without one goes through the save panel.
  virtual void saveDocument(DidSave didSave = {});
  virtual void saveDocumentAs(DidSave didSave = {});
  virtual void runModalSavePanelForSaveOperation(SaveOperation operation, DidSave didSave);
  /// Sets the panel up before it runs; false gives up. A file URL set here only proposes a name: it is taken
  /// back when the panel has run, so a cancelled panel leaves a document without a file as it was.
  virtual bool prepareSavePanel(SavePanel& panel);
  /// The type that the save panel writes; the base answers the type of the file that was read.
  virtual QString fileTypeFromLastRunSavePanel() const { return fileType_; }
  /// Writes the content to `url`. After Save and SaveAs that is the document's file and its changes are
  /// cleared. A failure, whatever it comes from, is told to the user.
  virtual void saveToURL(const QUrl& url, const QString& typeName, SaveOperation operation, DidSave didSave);
  /// What a document does as its own save delegate. The base does nothing.
  virtual void documentDidSave(Document* document, bool didSave);

  // Closing.

  /// Asks whether the document may close and tells `shouldClose`. The base agrees when there are no changes,
  /// and asks otherwise.
  virtual void canCloseDocument(ShouldClose shouldClose);
  /// Closes `document` when the answer was yes.
  virtual void documentShouldClose(Document* document, bool shouldClose);
  /// What the window's close button does: asks, then closes.
  void performClose();
  /// Closes without a question. Closing twice does nothing more.
  virtual void close();
  bool isClosed() const noexcept { return closed_; }
  /// Called when another window has written a new version to this document's file, so that what is shown here
  /// is outdated. The base closes.
  virtual void fileWasReplaced() { close(); }
  /// Keeps unsaved changes somewhere, because the session ends and nobody can be asked. The base has nowhere.
  virtual void keepUnsavedChanges() {}
  /// Destroys the windows while the document is still whole. Called by the controller before it destroys the
  /// document.
  void releaseWindows();
  /// Whether it was the window's close button (or its command) that set the closing going.
  bool wasClosedByUser() const noexcept { return closedByUser_; }

  // Printing.

  /// Prints the document. The base has nothing to print and tells `didPrint` so.
  virtual void printDocument(const QVariantMap& settings, bool showPrintPanel, DidPrint didPrint = {});

 protected:
  Services& services() const { return services_; }
  const QString& fileType() const { return fileType_; }
  void setFileType(const QString& type) { fileType_ = type; }

  /// The largest file that readFromURL takes, in bytes.
  virtual qint64 largestFile() const { return 256LL * 1024 * 1024; }
  /// Takes what stands in the windows into the content, because that is about to be saved or kept. The base
  /// does nothing.
  virtual void takeFromWindows() {}
  /// The content as it is to be saved or kept: takeFromWindows(), then dataOfType(). An exception that these
  /// throw is a failure.
  base::Result<QByteArray> contentToKeep(const QString& typeName);
  /// Called with the bytes of the document's file once they have been read and understood. The base does
  /// nothing.
  virtual void didReadFile(const QByteArray&) {}
  /// Whether the user has agreed, in the save panel, to replace what stands at the place of the save in
  /// progress.
  bool replacementConfirmed() const { return replacementConfirmed_; }
  /// Puts the content into the file at `url`.
  virtual base::Result<> writeToURL(const QUrl& url, const QByteArray& data, SaveOperation operation);
  /// Tells the user that saving to `url` failed. `data` is the content, or empty when the document could not
  /// give it. An override may put it elsewhere; the base does not.
  virtual SaveOutcome presentSaveError(const QUrl& url, const QByteArray& data, const QString& reason);
  /// How the last attempt to save ended. Returns nothing when there has been none since forgetLastSave().
  std::optional<SaveOutcome> lastSave() const noexcept { return lastSave_; }
  void forgetLastSave() noexcept { lastSave_.reset(); }
  /// Shows name and changed state in the windows' titles.
  void synchronizeWindowTitle();
  const std::vector<std::unique_ptr<WindowController>>& windowControllers() const {
    return windowControllers_;
  }

 private:
  void replaceOtherDocumentsOf(const QUrl& url);

  Services& services_;
  QUrl fileURL_;
  QString fileType_;
  int changeCount_ = 0;
  int untitledNumber_ = 1;
  bool closed_ = false;
  bool closedByUser_ = false;
  bool askingToClose_ = false;
  bool replacementConfirmed_ = false;
  std::optional<SaveOutcome> lastSave_;
  std::vector<std::unique_ptr<WindowController>> windowControllers_;
};

}  // namespace velmora::platform
