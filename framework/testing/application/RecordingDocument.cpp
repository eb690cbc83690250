// SPDX-License-Identifier: LGPL-3.0-or-later
#include "testing/application/RecordingDocument.h"

#include <QJsonArray>
#include <QLineEdit>

namespace velmora::testkit {

void RecordingDocument::note(const char* hook) {
  calls.append(QStringLiteral("%1 %2").arg(QString::fromLatin1(hook)).arg(currentExam()));
  changedByThen.append(isDocumentEdited());
}

void RecordingDocument::forgetCalls() {
  calls.clear();
  changedByThen.clear();
}

void RecordingDocument::windowControllerDidLoadNib(platform::WindowController& windowController) {
  VelmoraDocument::windowControllerDidLoadNib(windowController);
  setIdentifier(identifierOfRecord_);
  if (birthDateField_) birthDateField_->setText(birthDateOfRecord_);
  if (examDateField_) examDateField_->setText(exams.first());
}

void RecordingDocument::synchronizeFromData() {
  note("synchronizeFromData");
  if (examDateField_) examDateField_->setText(exams.value(static_cast<qsizetype>(currentExam())));
}

void RecordingDocument::synchronizeToData() {
  note("synchronizeToData");
  if (!windowForSheet()) return;
  identifierOfRecord_ = identifier();
  if (birthDateField_) birthDateOfRecord_ = birthDateField_->text();
  if (examDateField_ && currentExam() <= lastExam()) {
    exams[static_cast<qsizetype>(currentExam())] = examDateField_->text();
  }
}

void RecordingDocument::addExamination() {
  note("addExamination");
  exams.append(QString());
  if (showsAddedExamination) setCurrentExam(lastExam());
}

void RecordingDocument::deleteCurrentExamination() {
  note("deleteCurrentExamination");
  exams.removeAt(static_cast<qsizetype>(currentExam()));
}

void RecordingDocument::updateArrayOrder() { note("updateArrayOrder"); }

void RecordingDocument::setCurrentRecordFromClick(const QPointF& point) {
  note("setCurrentRecordFromClick");
  clicks.append(point);
  VelmoraDocument::setCurrentRecordFromClick(point);
}

void RecordingDocument::updateDisplay() {
  note("updateDisplay");
  VelmoraDocument::updateDisplay();
}

void RecordingDocument::documentDidSave(platform::Document* document, bool didSave) {
  toldOfSave = true;
  VelmoraDocument::documentDidSave(document, didSave);
}

QJsonObject RecordingDocument::contentToJson() const {
  return {{QStringLiteral("identifier"), identifierOfRecord_},
          {QStringLiteral("birthDate"), birthDateOfRecord_},
          {QStringLiteral("exams"), QJsonArray::fromStringList(exams)}};
}

base::Result<> RecordingDocument::contentFromJson(const QJsonObject& content, int) {
  identifierOfRecord_ = content.value(QStringLiteral("identifier")).toString();
  birthDateOfRecord_ = content.value(QStringLiteral("birthDate")).toString();
  exams.clear();
  for (const QJsonValue exam : content.value(QStringLiteral("exams")).toArray())
    exams.append(exam.toString());
  return {};
}

}  // namespace velmora::testkit
