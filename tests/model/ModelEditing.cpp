// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Examinations, text fields, look-up and link.
#include <QDate>

#include "tests/model/Model.h"

namespace model {

void Model::store(Doc& doc) { doc.record = doc.shown(); }

void Model::load(Doc& doc) {
  const Exam& exam = doc.record.exams.at(doc.current);
  doc.text[DateField] = exam.date;
  doc.text[MeasureField] = exam.measure;
}

void Model::putOrder(Doc& doc) {
  store(doc);
  doc.current = static_cast<int>(sortByDate(doc.record.exams, doc.current));
}

void Model::setIdentifier(Doc& doc, const QString& identifier) {
  doc.text[IdentifierField] = identifier;
  enteredUnder(doc);
}

void Model::setText(Doc& doc, int field, const QString& text) {
  if (field == IdentifierField) return setIdentifier(doc, text);
  // What stood there is written over on purpose.
  if (field != BirthField) drop({{}, {}, {doc.shown().exams.at(doc.current)}});
  doc.text[field] = text;
}

bool Model::begin(const DocPtr& doc, int field) {
  if (doc->editing.contains(field)) return true;
  const bool guarded = field == IdentifierField || field == BirthField;
  if (guarded && !doc->text[field].isEmpty()) {
    const int button =
        ask(QStringLiteral("This entry has already been defined"), QStringLiteral("Modify"),
            QStringLiteral("Cancel"), {}, QStringLiteral("Are you sure you want to modify this item?"));
    if (button == 1) {
      doc->focus = NoField;
      return false;
    }
  }
  doc->editing.insert(field);
  doc->edited = true;
  if (field != IdentifierField) doc->holdsMore = true;
  return true;
}

void Model::end(const DocPtr& doc, int field) {
  if (doc->editing.erase(field) == 0) return;
  const QString name = doc->preferredName().toUpper();
  if (doc->blank) {
    setIdentifier(*doc, name);
    doc->blank = false;
  }
  if (!doc->lookUpRequired || name.isEmpty()) return putOrder(*doc);
  doc->lookUpRequired = false;
  lookUp(doc, name, true);
}

void Model::leaveField(const DocPtr& doc, int next) {
  const int before = doc->focus;
  doc->focus = next;
  if (before != NoField && before != next) end(doc, before);
}

void Model::endEditing(const DocPtr& doc) {
  for (int field = 0; field < FieldCount; ++field) end(doc, field);
}

void Model::abandonEditing(Doc& doc) {
  if (doc.editing.contains(doc.focus)) doc.focus = NoField;
  doc.editing.clear();
}

void Model::typeOn(const DocPtr& doc, const QString& text, bool pressReturn) {
  const int field = doc->focus;
  if (field == NoField || !begin(doc, field)) return;
  doc->edited = true;
  if (field == IdentifierField) doc->lookUpRequired = true;
  setText(*doc, field, doc->text[field] + text);
  if (pressReturn) end(doc, field);
}

void Model::type(const DocPtr& doc, int field, const QString& text, bool pressReturn) {
  leaveField(doc, field);
  if (!begin(doc, field)) return;
  if (!text.isEmpty() || !doc->text[field].isEmpty()) {
    doc->edited = true;
    if (field == IdentifierField) doc->lookUpRequired = true;
  }
  setText(*doc, field, text);
  if (pressReturn) end(doc, field);
}

void Model::newExam(const DocPtr& doc) {
  doc->edited = doc->holdsMore = true;
  store(*doc);
  doc->record.exams.append({++lastToken_, {}, {}});
  doc->current = static_cast<int>(doc->record.exams.size()) - 1;
  enteredUnder(*doc);
  load(*doc);
  // The exam date gets the keyboard. In a window behind others no field loses it by that.
  if (active_ == doc) {
    leaveField(doc, DateField);
  } else {
    doc->focus = DateField;
  }
  begin(doc, DateField);
}

void Model::deleteExam(const DocPtr& doc) {
  if (doc->record.exams.size() == 1) {
    ++beeps_;
    return;
  }
  Question question;
  question.form = Question::Form::Sheet;
  question.alert = {QStringLiteral("Are you sure you want to remove this exam?"),
                    QStringLiteral("Remove"),
                    QStringLiteral("Cancel"),
                    {},
                    {}};
  questions.append(question);
  doc->tokenAskedAbout = doc->record.exams.at(doc->current).token;
}

void Model::answerSheet(const DocPtr& doc, bool remove) {
  const int asked = *std::exchange(doc->tokenAskedAbout, std::nullopt);
  if (!remove) return;
  // Only the examination that was asked about may go.
  if (doc->record.exams.at(doc->current).token != asked) {
    ++beeps_;
    return;
  }
  doc->edited = doc->holdsMore = true;
  drop({{}, {}, {doc->shown().exams.at(doc->current), doc->record.exams.at(doc->current)}});
  doc->record.exams.removeAt(doc->current);
  if (doc->current > 0) --doc->current;
  load(*doc);
}

void Model::goTo(const DocPtr& doc, int exam) {
  store(*doc);
  doc->current = exam;
  load(*doc);
}

// Look-up.

bool Model::lookUp(const DocPtr& doc, const QString& identifier, bool confirm) {
  const QString file = fileOf(identifier);
  if (!autoSave_ || !cache_.contains(identifier) || !files_.contains(file)) return false;
  if (confirm) {
    const int button =
        ask(QStringLiteral("Patient Data Found"), QStringLiteral("Open"), QStringLiteral("Cancel"), {},
            QStringLiteral(
                "A previously saved data file is available for patient '%1'.  Would you like to open it?")
                .arg(identifier.toUpper()));
    if (button != 0) return false;
  }
  later(0, doc, [this, doc, file, identifier, confirm] {
    openLookedUp(doc, file);
    if (confirm) tellWhoseRecord(file, identifier);
  });
  return true;
}

void Model::openLookedUp(const DocPtr& doc, const QString& file) {
  const bool ownFile = !doc->closed && documentOf(file) == doc;
  if (ownFile) doc->file.clear();  // meanwhile: it is to be opened anew
  const bool opened = open(file) != nullptr;
  if (ownFile) doc->file = file;
  if (opened || !ownFile) closeInFavour(doc, file);
  if (opened && ownFile && !doc->closed) doc->file.clear();
  if (!opened) {
    ask(QStringLiteral("The file '%1' could not be opened.").arg(file.section(QLatin1Char('/'), -1)),
        QStringLiteral("OK"), {}, {}, {}, false);
  }
}

void Model::closeInFavour(const DocPtr& doc, const QString& file) {
  const QString name = file.section(QLatin1Char('/'), -1).chopped(Extension.size() + 1);
  const bool another =
      !doc->preferredName().isEmpty() && doc->preferredName().compare(name, Qt::CaseInsensitive) != 0;
  const bool tells = another || !doc->file.isEmpty();
  const QString shownName = displayName(*doc);
  const bool copied = closeKeepingCopy(doc);
  if (tells && copied) tellAboutCopy(shownName);
}

void Model::tellAboutCopy(const QString& name) {
  ask(QStringLiteral("'%1' was closed with unsaved changes").arg(name), QStringLiteral("OK"), {}, {}, {},
      false);
}

void Model::tellWhoseRecord(const QString& file, const QString& identifier) {
  const DocPtr record = documentOf(file);
  if (!record || record->preferredName().compare(identifier, Qt::CaseInsensitive) == 0) return;
  ask(QStringLiteral("'%1' is the record of another patient").arg(displayName(*record)), QStringLiteral("OK"),
      {}, {},
      QStringLiteral("The file was saved for patient '%1', but the identifier in it reads '%2'.")
          .arg(identifier, record->text[IdentifierField]));
}

bool Model::closeKeepingCopy(const DocPtr& doc) {
  bool copied = false;
  if (!doc->closed && doc->edited && doc->holdsMore) {
    copied = !failingCopies_;
    if (rescue(doc) == Content::OnlyHere) return false;
  } else {
    // Nothing but an identifier was typed: that is dropped for the file of the identifier.
    drop(doc->shown());
  }
  close(doc);
  return copied;
}

// Link.

QString Model::studyDate(const Event& request) {
  if ((request.number & 2) == 0) return {};
  return QDate(2024, 6, 1).addDays(request.number / 4).toString(QStringLiteral("dd/MM/yyyy"));
}

void Model::link(const Event& request) {
  QString identifier = request.text;
  identifier.replace(QLatin1Char('/'), QLatin1Char('-'));
  if (identifier.isEmpty()) {
    failuresLogged.append(QStringLiteral("timed call: VelmoraAppController: Value==nil"));
    return;
  }
  const DocPtr doc = frontDocument();
  if (!doc) {
    failuresLogged.append(
        QStringLiteral("timed call: VelmoraAppController: a study was chosen, but no document is open"));
    return;
  }
  if (lookUp(doc, identifier, false)) {
    later(0.1, nullptr, [this, request] { linkedNewExam(request); });
    return;
  }
  abandonEditing(*doc);
  setIdentifier(*doc, identifier);
  if (request.number & 1) setText(*doc, BirthField, QStringLiteral("30/06/2021"));
  setText(*doc, DateField, studyDate(request));
  doc->name = QStringLiteral("Name^") + request.text;
  doc->studyID = QStringLiteral("1.2.%1").arg(request.number);
  doc->edited = doc->holdsMore = true;
  updateDisplay(*doc);
}

void Model::linkedNewExam(const Event& request) {
  if (!frontDocument()) return;
  QString identifier = request.text;
  identifier.replace(QLatin1Char('/'), QLatin1Char('-'));
  const DocPtr doc = documentOf(fileOf(identifier));
  if (!doc) return;
  if (doc->preferredName().compare(identifier, Qt::CaseInsensitive) != 0) {
    ask(QStringLiteral("No examination was added to '%1'").arg(displayName(*doc)), QStringLiteral("OK"), {},
        {},
        QStringLiteral("The file was saved for patient '%1', but the identifier in it reads '%2'.")
            .arg(identifier, doc->text[IdentifierField]));
    return;
  }
  if (doc != frontDocument()) bringToFront(doc);
  newExam(doc);
  doc->name = QStringLiteral("Name^") + request.text;
  doc->studyID.clear();
  setText(*doc, DateField, studyDate(request));
  doc->edited = doc->holdsMore = true;
  updateDisplay(*doc);
}

}  // namespace model
