// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Time, questions, and which documents there are.
#include <algorithm>

#include "tests/model/Model.h"

namespace model {

namespace {
constexpr double Tolerance = 1e-9;
constexpr int FirstFreeToken = 100;
}  // namespace

std::map<QString, Record> firstFiles() {
  return {{QStringLiteral("Records/P1.rec"),
           {QStringLiteral("P1"),
            QStringLiteral("01/02/2019"),
            {{1, QStringLiteral("03/01/2023"), QStringLiteral("a1")},
             {2, QStringLiteral("04/02/2023"), QStringLiteral("a2")}}}},
          {QStringLiteral("Records/P2.rec"),
           {QStringLiteral("P2"), QString(), {{3, QStringLiteral("05/03/2023"), QStringLiteral("a3")}}}},
          {QStringLiteral("Records/old/P3.rec"),
           {QStringLiteral("P3"), QString(), {{4, QStringLiteral("06/03/2023"), QStringLiteral("a4")}}}}};
}

Record changedByAnother(Record record, int token) {
  if (record.damaged) return record;
  record.exams.append({token, QStringLiteral("01/12/2023"), QStringLiteral("another%1").arg(token)});
  return record;
}

Record madeByAnother(int token) {
  return {QStringLiteral("MADE"), QString(), {{token, QStringLiteral("02/12/2023"), QStringLiteral("made")}}};
}

QString Doc::preferredName() const {
  QString identifier = text[IdentifierField];
  return identifier.replace(QLatin1Char('/'), QLatin1Char('-'));
}

Record Doc::shown() const {
  Record all = record;
  all.identifier = text[IdentifierField];
  all.birth = text[BirthField];
  all.exams[current].date = text[DateField];
  all.exams[current].measure = text[MeasureField];
  return all;
}

Model::Model() : files_(firstFiles()), lastToken_(FirstFreeToken) {
  for (const auto& [file, record] : files_) {
    for (const Exam& exam : record.exams) ledger_.insert({exam.token, record.identifier});
  }
  restart();
  restarted = false;
}

QList<Record> Model::kept() const {
  QList<Record> all = rescued_;
  for (const auto& [file, versions] : earlier_) {
    for (const Version& version : versions) all.append(version.record);
  }
  return all;
}

void Model::drop(const Record& record) { drops_.unite(versions(record)); }

void Model::enteredUnder(const Doc& doc) {
  for (const Exam& exam : doc.record.exams) ledger_.insert({exam.token, doc.text[IdentifierField]});
}

// Time. What is due runs turn by turn; what a turn adds belongs to the next one.

void Model::later(double seconds, const DocPtr& owner, std::function<void()> what) {
  const double due = now_ + seconds;
  auto place = calls_.begin();
  while (place != calls_.end() && place->due <= due) ++place;
  calls_.insert(place, {due, ++sequence_, owner, std::move(what)});
}

void Model::turn() {
  const long last = sequence_;
  const double time = now_;
  while (!calls_.empty() && calls_.front().due <= time && calls_.front().sequence <= last) {
    const Call call = calls_.front();
    calls_.pop_front();
    if (!call.owner || !call.owner->destroyed) call.what();
  }
}

void Model::pass(double seconds) {
  const double end = now_ + seconds;
  // While a question is open, time passes and nothing runs.
  while (!asking_ && !stopped_ && !calls_.empty() && calls_.front().due <= std::max(end + Tolerance, now_)) {
    now_ = std::max(now_, calls_.front().due);
    turn();
    eventsComeThrough();
  }
  now_ = std::max(now_, end);
}

void Model::eventsComeThrough() { active_ = frontDocument(); }

// Questions.

int Model::ask(Question question, int buttons) {
  const Answer answer = answers_.isEmpty() ? Answer{buttons - 1, {}} : answers_.takeFirst();
  const int choice = answer.choice % buttons;
  question.meanwhile = answer.meanwhile;
  // Of two buttons the second is the alternate one, of three the third is the other.
  if (question.form == Question::Form::Alert) question.result = 1 - choice;
  questions.append(question);
  asking_ = true;
  for (const Event& event : answer.meanwhile) happens(event);
  asking_ = false;
  return choice;
}

int Model::ask(const QString& message, const QString& first, const QString& second, const QString& third,
               const QString& information, bool informationKnown) {
  Question question;
  question.alert = {message, first, second, third, information};
  question.informationKnown = informationKnown;
  return ask(question, second.isEmpty() ? 1 : third.isEmpty() ? 2 : 3);
}

QString Model::askSavePanel(const QString& proposedName, const QStringList& choices) {
  Question question;
  question.form = Question::Form::SavePanel;
  question.proposedName = proposedName;
  const qsizetype place = questions.size();
  const int choice = ask(question, static_cast<int>(choices.size()) + 1);
  if (choice == 0) return {};
  questions[place].result = 1;
  questions[place].chosen = choices.at(choice - 1);
  return choices.at(choice - 1);
}

void Model::happens(const Event& event) {
  if (event.kind == Kind::Pass) pass(event.text.toDouble());
  if (event.kind == Kind::Link) later(0, nullptr, [this, event] { link(event); });
}

// Documents.

DocPtr Model::adopt(const DocPtr& doc) {
  docs_.append(doc);
  front_.prepend(doc);
  return doc;
}

DocPtr Model::newDocument() {
  auto doc = std::make_shared<Doc>();
  doc->record.exams.append({++lastToken_, {}, {}});
  const auto taken = [this](int number) {
    return std::any_of(docs_.begin(), docs_.end(), [number](const DocPtr& each) {
      return each->file.isEmpty() && each->untitledNumber == number;
    });
  };
  while (taken(doc->untitledNumber)) ++doc->untitledNumber;
  enteredUnder(*doc);
  return adopt(doc);
}

DocPtr Model::documentOf(const QString& file) const {
  for (const DocPtr& doc : docs_) {
    if (doc->file == file) return doc;
  }
  return nullptr;
}

DocPtr Model::open(const QString& file) {
  if (const DocPtr doc = documentOf(file)) {
    bringToFront(doc);
    return doc;
  }
  const auto found = files_.find(file);
  if (found == files_.end() || found->second.damaged) return nullptr;
  auto doc = std::make_shared<Doc>();
  doc->file = file;
  doc->record = doc->known = found->second;
  doc->text[IdentifierField] = doc->record.identifier;
  doc->text[BirthField] = doc->record.birth;
  load(*doc);
  doc->blank = false;
  doc->savedName = doc->preferredName();
  return adopt(doc);
}

DocPtr Model::userDocument() const {
  const DocPtr doc = frontDocument();
  return doc && !doc->tokenAskedAbout ? doc : nullptr;
}

void Model::bringToFront(DocPtr doc) {
  front_.removeAll(doc);
  front_.prepend(doc);
}

void Model::close(const DocPtr& doc) {
  if (doc->closed) return;
  doc->closed = true;
  // What somebody else has done to its file in the meantime is his; the document itself said nothing new.
  if (!doc->edited) drop(doc->shown());
  docs_.removeAll(doc);
  front_.removeAll(doc);
  closedDocs_.push_back(doc);
  const bool leaving = doc->closedByUser && doc->file.isEmpty() && !doc->edited && doc->blank;
  later(0, nullptr, [this, leaving] {
    for (const DocPtr& each : closedDocs_) each->destroyed = true;
    closedDocs_.clear();
    if (!keepsBlank_ || terminating_ || !docs_.isEmpty()) return;
    if (leaving) {
      terminate();
    } else {
      newDocument();
    }
  });
}

QString Model::displayName(const Doc& doc) const {
  if (!doc.file.isEmpty()) return doc.file.section(QLatin1Char('/'), -1).chopped(Extension.size() + 1);
  if (!doc.preferredName().isEmpty()) return doc.preferredName();
  const QString untitled = QStringLiteral("Untitled");
  return doc.untitledNumber == 1 ? untitled : untitled + QStringLiteral(" %1").arg(doc.untitledNumber);
}

QString Model::fileNumbered(int number) const {
  QStringList names;
  for (const auto& [file, record] : files_) names.append(file);
  names.append(QStringLiteral("Records/nobody.rec"));
  return names.at(number % names.size());
}

}  // namespace model
