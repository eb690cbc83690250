// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Saving, closing, quitting.
#include <algorithm>
#include <utility>

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
            QStringLiteral("Same File"), QStringLiteral("Cancel"),
            QStringLiteral(
                "It was '%1' and is now '%2'. With a new file the record of '%1' stays as it was last saved.")
                .arg(doc->savedName, name));
    if (button == 0) return saveAs(doc);
    if (button == 2) return;
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
  const bool saved = doc->lastSaveSucceeded;
  if (!mayCloseAfterSave(*doc)) return;
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

bool Model::keepEarlier(const QString& file, bool own) {
  QList<Version>& versions = earlier_[file];
  const Record& standing = files_.at(file);
  if (!versions.isEmpty() && versions.last().record == standing && (own || !versions.last().own)) return true;
  if (failingCopies_) return false;
  versions.append({standing, own});
  const auto isOwn = [](const Version& version) { return version.own; };
  // Own versions push only each other out, and the newest never goes.
  if (own && std::count_if(versions.begin(), versions.end(), isOwn) > MostVersions) {
    const auto first = std::find_if(versions.begin(), versions.end(), isOwn);
    drop(first->record);
    versions.erase(first);
  }
  return true;
}

void Model::somebodySavesMeanwhile(const QString& file) {
  racing_ = false;
  const auto found = files_.find(file);
  if (found == files_.end()) {
    files_[file] = madeByAnother(++lastToken_);
  } else {
    found->second = changedByAnother(found->second, ++lastToken_);
  }
  for (const Exam& exam : files_[file].exams) ledger_.insert({exam.token, files_[file].identifier});
}

Content Model::askWhereToSave(const DocPtr& doc, const QString& message) {
  const int button = ask(message, QStringLiteral("Save Elsewhere..."), QStringLiteral("Don't Save"),
                         QStringLiteral("Cancel"), {}, false);
  if (button == 1) return Content::GivenUp;
  while (button == 0) {
    const QString chosen =
        askSavePanel(displayName(*doc), {fileOf(QStringLiteral("P2")), QStringLiteral("Elsewhere/SAFE.rec")});
    if (chosen.isEmpty()) break;
    if (failingWrites_ && chosen.startsWith(QStringLiteral("Records/"))) {
      ask(QStringLiteral("The record '%1' could not be saved.").arg(chosen.section(QLatin1Char('/'), -1)),
          QStringLiteral("OK"), {}, {}, {}, false);
      continue;
    }
    // Whoever chose it has agreed to replace what stands there, and there is no room for a copy.
    if (files_.contains(chosen)) drop(files_.at(chosen));
    files_[chosen] = doc->record;
    return Content::Kept;
  }
  return Content::OnlyHere;
}

Content Model::rescue(const DocPtr& doc) {
  store(*doc);
  if (!failingCopies_) {
    rescued_.append(doc->record);
    return Content::Kept;
  }
  const Content content = askWhereToSave(
      doc, QStringLiteral("Unsaved changes to '%1' are about to be dropped.").arg(displayName(*doc)));
  if (content == Content::GivenUp) drop(doc->shown());
  return content;
}

void Model::couldNotSave(const DocPtr& doc, const QString& file) {
  const QString message =
      QStringLiteral("The record '%1' could not be saved.").arg(file.section(QLatin1Char('/'), -1));
  if (failingCopies_) {
    doc->lastSave = askWhereToSave(doc, message);
    return;
  }
  rescued_.append(doc->record);
  ask(message, QStringLiteral("OK"), {}, {}, {}, false);
  doc->lastSave = Content::Kept;
}

void Model::fileWasReplaced(const DocPtr& doc) {
  const QString name = displayName(*doc);
  const bool copied = doc->edited && !failingCopies_;
  if (doc->edited && rescue(doc) == Content::OnlyHere) {
    doc->file.clear();
    return;
  }
  close(doc);
  if (copied) tellAboutCopy(name);
}

bool Model::mayCloseAfterSave(const Doc& doc) {
  if (doc.lastSave == Content::GivenUp && doc.closeRequested) {
    drop(doc.shown());
    return true;
  }
  return doc.lastSave == Content::Kept;
}

bool Model::written(const DocPtr& doc, const QString& file, bool replacementConfirmed) {
  const bool exists = files_.contains(file);
  const bool removedByAnother = doc->file == file && !exists;
  const bool ownVersion = exists && ((doc->file == file && files_.at(file) == doc->known) ||
                                     (doc->attempted && files_.at(file) == *doc->attempted));
  const bool mayGoWithoutCopy = ownVersion || replacementConfirmed;
  const bool copied = !exists || keepEarlier(file, ownVersion);
  if (!copied && !mayGoWithoutCopy) return false;
  doc->attempted = doc->record;
  if (failingWrites_ && file.startsWith(QStringLiteral("Records/"))) return false;

  const std::optional<Record> seen = exists ? std::optional(files_.at(file)) : std::nullopt;
  if (racing_) somebodySavesMeanwhile(file);
  const bool changedMeanwhile = files_.contains(file) && (!seen || files_.at(file) != *seen);
  if (changedMeanwhile && !keepEarlier(file, false)) return false;
  // An own earlier version, or what the user chose to replace, is not worth a failed save.
  if (!copied) drop(*seen);
  files_[file] = doc->known = doc->record;
  if (removedByAnother) {
    ask(QStringLiteral("The record '%1' had been removed by somebody else.")
            .arg(file.section(QLatin1Char('/'), -1)),
        QStringLiteral("OK"), {}, {}, QStringLiteral("It has been saved again."));
  }
  const int others = (exists && !mayGoWithoutCopy ? 1 : 0) + (changedMeanwhile ? 1 : 0);
  for (int i = 0; i < others; ++i) {
    ask(QStringLiteral("Another version of the record '%1' was in its place.")
            .arg(file.section(QLatin1Char('/'), -1)),
        QStringLiteral("OK"), {}, {}, {}, false);
  }
  return true;
}

void Model::saveTo(const DocPtr& doc, const QString& file, bool replacementConfirmed, bool throughPanel) {
  store(*doc);
  doc->lookUpRequired = false;
  doc->lastSaveSucceeded = written(doc, file, replacementConfirmed);
  if (!doc->lastSaveSucceeded) {
    couldNotSave(doc, file);
  } else {
    doc->lastSave = Content::Kept;
    doc->file = file;
    doc->edited = false;
    // A second window on the same file would overwrite what this one has saved.
    for (const DocPtr& other : QList<DocPtr>(docs_)) {
      if (other != doc && other->file == file) fileWasReplaced(other);
    }
    if (throughPanel) doc->closeAfterSave = true;
    doc->savedName = doc->preferredName();
    doc->holdsMore = false;
  }
  addToCache(file.section(QLatin1Char('/'), -1));
  if (doc->closeAfterSave && mayCloseAfterSave(*doc)) close(doc);
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
  const bool before = std::exchange(doc->closeRequested, true);
  doc->lastSave.reset();
  save(doc);
  const bool mayClose = mayCloseAfterSave(*doc);
  if (!mayClose) doc->closeRequested = before;
  return mayClose;
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
  for (const DocPtr& doc : docs_) {
    if (doc->edited && !failingCopies_) {
      store(*doc);
      rescued_.append(doc->record);
    } else {
      // Where no copy can be kept there is nobody to ask, and nothing left to do.
      drop(doc->shown());
    }
  }
  quit();
}

void Model::restart() {
  restarted = true;
  stopped_ = terminating_ = batchKept_ = false;
  closing_ = 0;
  calls_.clear();
  docs_.clear();
  front_.clear();
  closedDocs_.clear();
  later(1.5, nullptr, [this] { scan(); });
  newDocument();
  eventsComeThrough();
}

}  // namespace model
