// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Saving, closing, quitting.
#include "tests/model/Model.h"

namespace model {

namespace {
constexpr qsizetype MostVersions = 20;
}

void Model::save(const DocPtr& doc) {
  const QString name = doc->preferredName();
  const bool another =
      !doc->file.isEmpty() && !name.isEmpty() && !doc->savedName.isEmpty() && name != doc->savedName;
  if (another) {
    const int button =
        ask(QStringLiteral("The identifier of this record has changed"), QStringLiteral("New File"),
            QStringLiteral("Same File"), {},
            QStringLiteral(
                "It was '%1' and is now '%2'. With a new file the record of '%1' stays as it was last saved.")
                .arg(doc->savedName, name));
    if (button == 0) return saveAs(doc);
  }
  if (doc->file.isEmpty()) {
    saveAs(doc);
  } else {
    saveTo(doc, doc->file, false, false);
  }
}

void Model::saveAs(const DocPtr& doc) {
  const QString name = doc->preferredName();
  if (!autoSaves(*doc)) {
    QString proposed = doc->file.isEmpty() ? name : doc->file.section(QLatin1Char('/'), -1);
    if (proposed.isEmpty()) proposed = QString();  // "Untitled" and some number
    const QString chosen =
        askSavePanel(proposed, {fileOf(name.isEmpty() ? QStringLiteral("NONAME") : name),
                                fileOf(QStringLiteral("P2")), QStringLiteral("Elsewhere/ELSE.rec")});
    if (!chosen.isEmpty()) saveTo(doc, chosen, true, true);
    return;
  }
  const QString file = fileOf(name);
  saveTo(doc, file, false, false);
  const bool saved = !doc->edited;
  close(doc);
  if (doc->closeRequested) return;
  const DocPtr again = open(file);
  if (!again || !saved) return;
  // To the user it is the same record.
  again->name = doc->name;
  again->studyID = doc->studyID;
  if (doc->current < again->record.exams.size()) again->current = doc->current;
  load(*again);
}

void Model::keepEarlier(const QString& file) {
  QList<Record>& versions = earlier_[file];
  versions.append(files_.at(file));
  if (versions.size() > MostVersions) drop(versions.takeFirst());
}

void Model::saveTo(const DocPtr& doc, const QString& file, bool replacementConfirmed, bool throughPanel) {
  store(*doc);
  doc->lookUpRequired = false;
  const QString name = file.section(QLatin1Char('/'), -1);
  const bool exists = files_.contains(file);
  const bool removedByAnother = doc->file == file && !exists;
  const bool ownVersion = doc->file == file && exists && files_.at(file) == doc->known;
  if (exists) keepEarlier(file);
  if (failingWrites_ && file.startsWith(QStringLiteral("Records/"))) {
    rescued_.append(doc->record);
    ask(QStringLiteral("The record '%1' could not be saved.").arg(name), QStringLiteral("OK"), {}, {}, {},
        false);
  } else {
    files_[file] = doc->known = doc->record;
    if (removedByAnother) {
      ask(QStringLiteral("The record '%1' had been removed by somebody else.").arg(name),
          QStringLiteral("OK"), {}, {}, QStringLiteral("It has been saved again."));
    } else if (exists && !ownVersion && !replacementConfirmed) {
      ask(QStringLiteral("Another version of the record '%1' was in its place.").arg(name),
          QStringLiteral("OK"), {}, {}, {}, false);
    }
    doc->file = file;
    doc->edited = false;
    // A second window on the same file would overwrite what this one has saved.
    for (const DocPtr& other : QList<DocPtr>(docs_)) {
      if (other == doc || other->file != file) continue;
      if (other->edited) {
        store(*other);
        rescued_.append(other->record);
      }
      close(other);
    }
    if (throughPanel) doc->closeAfterSave = true;
    doc->savedName = doc->preferredName();
    doc->holdsMore = false;
  }
  addToCache(name);
  if (doc->closeAfterSave) close(doc);
}

bool Model::canClose(const DocPtr& doc) {
  if (!doc->edited) {
    doc->closeRequested = true;
    return true;
  }
  const bool automatic = autoSaves(*doc);
  const int button = ask(QStringLiteral("Save changes to document?"),
                         automatic ? QStringLiteral("Save") : QStringLiteral("Save As..."),
                         QStringLiteral("Don't Save"), QStringLiteral("Cancel"), {});
  if (button == 2) return false;
  if (button == 1) {
    drop(doc->shown());
    return true;
  }
  if (!automatic) {
    saveAs(doc);
    return !doc->edited;
  }
  doc->closeRequested = true;
  save(doc);
  return true;
}

void Model::performClose(const DocPtr& doc) {
  if (doc->askingToClose) return;
  doc->askingToClose = true;
  endEditing(doc);
  later(0, doc, [this, doc] {
    doc->closedByUser = !doc->closed;
    if (!doc->closed && canClose(doc)) close(doc);
    doc->askingToClose = false;
    if (!doc->closed) doc->closedByUser = false;
  });
}

bool Model::closeAllNow() {
  for (const DocPtr& doc : QList<DocPtr>(front_)) {
    if (doc->closed) continue;
    if (doc->edited) bringToFront(doc);
    if (!canClose(doc)) return false;
    close(doc);
  }
  return true;
}

void Model::terminate() {
  if (terminating_) return;
  terminating_ = true;
  for (const DocPtr& doc : QList<DocPtr>(docs_)) endEditing(doc);
  later(0, nullptr, [this] {
    qsizetype unsaved = 0;
    for (const DocPtr& doc : docs_) unsaved += doc->edited ? 1 : 0;
    int button = 0;
    if (unsaved > 1) {
      button = ask(
          QStringLiteral(
              "You have %1 documents with unsaved changes. Do you want to review these changes before "
              "quitting?")
              .arg(unsaved),
          QStringLiteral("Review Changes..."), QStringLiteral("Discard Changes"), QStringLiteral("Cancel"),
          QStringLiteral("If you don't review your documents, all your changes will be lost."));
    }
    if (button == 1) {
      for (const DocPtr& doc : QList<DocPtr>(docs_)) {
        drop(doc->shown());
        close(doc);
      }
    }
    if (button == 2 || (button == 0 && !closeAllNow())) {
      terminating_ = false;
      return;
    }
    quit();
  });
}

void Model::quit() {
  stopped_ = true;
  waitingReplies_.clear();
  cache_.clear();
}

void Model::sessionEnd() {
  for (const DocPtr& doc : QList<DocPtr>(docs_)) endEditing(doc);
  for (const DocPtr& doc : docs_) {
    if (doc->edited) {
      store(*doc);
      rescued_.append(doc->record);
    } else {
      drop(doc->shown());
    }
  }
  quit();
}

void Model::restart() {
  restarted = true;
  stopped_ = terminating_ = false;
  calls_.clear();
  docs_.clear();
  front_.clear();
  closedDocs_.clear();
  later(1.5, nullptr, [this] { scan(); });
  newDocument();
  eventsComeThrough();
}

}  // namespace model
