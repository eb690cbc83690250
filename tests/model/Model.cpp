// SPDX-License-Identifier: LGPL-3.0-or-later
//
// What each step sets going, and the rest: cache, batch, export.
#include <QDate>
#include <utility>

#include "tests/model/Model.h"

namespace model {

void Model::addToCache(const QString& file) {
  const QString name = file.chopped(Extension.size() + 1);
  if (!cache_.contains(name)) cache_.append(name);
}

void Model::scan() {
  if (!autoSave_) return;
  const QString folder = QStringLiteral("Records/");
  for (const auto& [file, record] : files_) {
    if (file.startsWith(folder)) cache_.append(file.mid(folder.size()).chopped(Extension.size() + 1));
  }
  if (cache_.isEmpty()) later(10, nullptr, [this] { scan(); });
}

void Model::command(const DocPtr& doc, std::function<void()> what) {
  endEditing(doc);
  later(0, doc, [doc, what = std::move(what)] {
    if (!doc->closed) what();
  });
}

void Model::openWithPanel(int number) {
  const QString file = fileNumbered(number);
  Question question;
  question.form = Question::Form::OpenPanel;
  const qsizetype place = questions.size();
  if (ask(question, 2) == 1) return;
  questions[place].result = 1;
  questions[place].chosen = file;
  const QList<DocPtr> before = docs_;
  if (!open(file)) {
    ask(QStringLiteral("The file '%1' could not be opened.").arg(file.section(QLatin1Char('/'), -1)),
        QStringLiteral("OK"), {}, {}, {}, false);
    return;
  }
  makeRoomFor(before);
}

void Model::makeRoomFor(const QList<DocPtr>& before) {
  for (const DocPtr& doc : before) {
    if (!doc->closed && doc->file.isEmpty() && !doc->edited && doc->blank) close(doc);
  }
}

void Model::openKept(int number) {
  QList<Record> copies = kept();
  copies.removeIf([](const Record& record) { return record.damaged; });
  if (copies.isEmpty()) return;
  keptMeant = copies.at(number % copies.size());
  const QList<DocPtr> before = docs_;
  // Content without a file: its save goes the way of any new record.
  const auto doc = std::make_shared<Doc>();
  doc->record = *keptMeant;
  doc->text[IdentifierField] = doc->record.identifier;
  doc->text[BirthField] = doc->record.birth;
  load(*doc);
  doc->blank = false;
  doc->edited = true;
  adopt(doc);
  makeRoomFor(before);
}

void Model::batchOpen(const QString& file) {
  const DocPtr doc = open(file);
  if (doc) {
    exportChart(doc, false);
    ++closing_;
    later(1, nullptr, [this, doc] {
      if (!doc->destroyed && closeKeepingCopy(doc)) batchKept_ = true;
      if (--closing_ > 0 || !std::exchange(batchKept_, false)) return;
      ask(QStringLiteral("The batch export has closed records with unsaved changes"), QStringLiteral("OK"),
          {}, {}, {}, false);
    });
  }
  later(0, nullptr, [] {});
}

void Model::exportChart(const DocPtr& doc, bool interactive) {
  if (toOsirix_) {
    if (waitingReplies_.isEmpty()) later(1, nullptr, [this] { sendReply(); });
    // A text that is no date does not travel.
    const QString date = doc->text[DateField];
    const bool isDate = QDate::fromString(date, QStringLiteral("dd/MM/yyyy")).isValid();
    waitingReplies_.append({doc->text[IdentifierField], doc->name, doc->studyID, isDate ? date : QString()});
    return;
  }
  if (interactive && !autoSaves(*doc)) {
    askSavePanel({}, {QStringLiteral("Charts/free.jpg")});
    return;
  }
  const QString name = doc->preferredName().toUpper() + QStringLiteral(".jpg");
  if (charts_.contains(name)) {
    ask(QStringLiteral("A file with that name already exists"), QStringLiteral("Overwrite"),
        QStringLiteral("Skip"), {}, {}, false);
  }
  charts_.insert(name);
}

void Model::sendReply() {
  if (waitingReplies_.isEmpty()) return;
  replies_.append(waitingReplies_.takeFirst());
  later(4, nullptr, [this] { sendReply(); });
}

void Model::play(const Step& step) {
  questions.clear();
  failuresLogged.clear();
  keptMeant.reset();
  restarted = false;
  answers_ = step.answers;
  fileMeant = fileNumbered(step.number);
  userStep(step);
  eventsComeThrough();
  if (stopped_) restart();
}

void Model::userStep(const Step& step) {
  const QString file = fileMeant;
  switch (step.kind) {
    // From outside: nothing needs to have run before the next step.
    case Kind::Link:
    case Kind::Pass:
      return happens(step);
    case Kind::AutoSave:
      autoSave_ = step.number == 1;
      return;
    case Kind::ToOsirix:
      toOsirix_ = step.number == 1;
      return;
    case Kind::FailingWrites:
      failingWrites_ = step.number == 1;
      return;
    case Kind::ForeignRace:
      racing_ = true;
      return;
    case Kind::FailingCopies:
      failingCopies_ = step.number == 1;
      return;
    case Kind::KeepsBlank:
      keepsBlank_ = step.number % 2 == 1;
      return;
    case Kind::ForeignChange:
    case Kind::ForeignRemove:
    case Kind::ForeignDamage: {
      const auto found = files_.find(file);
      if (found == files_.end()) return;
      if (step.kind == Kind::ForeignChange) {
        found->second = changedByAnother(found->second, ++lastToken_);
        for (const Exam& exam : found->second.exams) ledger_.insert({exam.token, found->second.identifier});
      } else {
        drop(found->second);
        if (step.kind == Kind::ForeignRemove) files_.erase(found);
        if (step.kind == Kind::ForeignDamage) found->second = {{}, {}, {}, true};
      }
      return;
    }
    case Kind::SessionEnd:
      return sessionEnd();

    // The application's own commands, which need no document.
    case Kind::Quit:
      terminate();
      return pass(0);
    case Kind::CloseAll:
      for (const DocPtr& doc : QList<DocPtr>(docs_)) endEditing(doc);
      later(0, nullptr, [this] { closeAllNow(); });
      return pass(0);
    case Kind::NewDocument:
      newDocument();
      return pass(0);
    case Kind::OpenFile:
      openWithPanel(step.number);
      return pass(0);
    case Kind::OpenKept:
      openKept(step.number);
      return pass(0);
    case Kind::BatchOpen:
      batchOpen(file);
      return pass(0);
    case Kind::Front:
      if (front_.isEmpty()) return;
      bringToFront(front_.at(step.number % front_.size()));
      eventsComeThrough();
      return pass(0);
    case Kind::AnswerSheet: {
      const DocPtr doc = frontDocument();
      if (!doc || !doc->tokenAskedAbout) return;
      answerSheet(doc, step.number % 2 == 1);
      return pass(0);
    }
    default:
      break;
  }

  // What the user does in the front window; a sheet is in the way of all of it.
  const DocPtr doc = userDocument();
  if (!doc) return;
  switch (step.kind) {
    case Kind::TypeIdentifier:
      type(doc, IdentifierField, step.text, step.number == 1);
      break;
    case Kind::TypeBirth:
      type(doc, BirthField, step.text, step.number == 1);
      break;
    case Kind::TypeDate:
      type(doc, DateField, step.text, step.number == 1);
      break;
    case Kind::TypeMeasure:
      type(doc, MeasureField, step.text, step.number == 1);
      break;
    case Kind::TypeOn:
      typeOn(doc, step.text, step.number == 1);
      break;
    case Kind::NewExam:
      command(doc, [this, doc] { newExam(doc); });
      break;
    case Kind::DeleteExam:
      command(doc, [this, doc] { deleteExam(doc); });
      break;
    case Kind::Next:
      leaveField(doc, NoField);
      if (doc->current + 1 < doc->record.exams.size()) goTo(doc, doc->current + 1);
      break;
    case Kind::Previous:
      leaveField(doc, NoField);
      if (doc->current > 0) goTo(doc, doc->current - 1);
      break;
    case Kind::Click:
      leaveField(doc, NoField);
      goTo(doc, step.number % static_cast<int>(doc->record.exams.size()));
      break;
    case Kind::Save:
      command(doc, [this, doc] { save(doc); });
      break;
    case Kind::SaveAs:
      command(doc, [this, doc] { saveAs(doc); });
      break;
    case Kind::Close:
      performClose(doc);
      break;
    case Kind::Export:
      command(doc, [this] { exportChart(frontDocument(), true); });
      break;
    default:
      break;
  }
  pass(0);
}

}  // namespace model
