// SPDX-License-Identifier: LGPL-3.0-or-later
#include "tests/model/TracedDocument.h"

#include <QFormLayout>

#include "platform/documents/WindowController.h"
#include "velmora/document/VelmoraGraphView.h"

using namespace velmora;

namespace model {

namespace {
constexpr QSize WindowSize(420, 420);
}

void TracedDocument::windowControllerDidLoadNib(platform::WindowController& windowController) {
  QWidget* window = windowController.window();
  window->resize(WindowSize);
  window->setUpdatesEnabled(false);  // what is painted is looked at elsewhere
  measureField_ = new QLineEdit;
  window->findChild<QFormLayout*>()->addRow(measureField_);
  VelmoraDocument::windowControllerDidLoadNib(windowController);
  QObject::connect(referenceIDField_, &QLineEdit::textEdited, this, [this] { setLookUpRequired(true); });
  if (record_.exams.isEmpty()) record_.exams.append({nextToken_(), {}, {}});
  setIdentifier(record_.identifier);
  birthDateField_->setText(record_.birth);
  synchronizeFromData();
}

Record TracedDocument::shown() const {
  Record all = record_;
  all.identifier = identifier();
  all.birth = birthDateField_->text();
  Exam& exam = all.exams[static_cast<qsizetype>(currentExam())];
  exam.date = examDateField_->text();
  exam.measure = measureField_->text();
  return all;
}

void TracedDocument::synchronizeFromData() {
  const Exam& exam = record_.exams.at(static_cast<qsizetype>(currentExam()));
  examDateField_->setText(exam.date);
  measureField_->setText(exam.measure);
  showExamNumber();
  showChart();
}

void TracedDocument::synchronizeToData() {
  if (windowForSheet()) record_ = shown();
}

void TracedDocument::addExamination() {
  record_.exams.append({nextToken_(), {}, {}});
  setCurrentExam(lastExam());
}

void TracedDocument::deleteCurrentExamination() {
  record_.exams.removeAt(static_cast<qsizetype>(currentExam()));
}

void TracedDocument::updateArrayOrder() {
  synchronizeToData();
  setCurrentExam(static_cast<quint64>(sortByDate(record_.exams, static_cast<qsizetype>(currentExam()))));
}

void TracedDocument::setCurrentRecordFromClick(const QPointF& point) {
  synchronizeToData();
  setCurrentExam(static_cast<quint64>(std::clamp<qsizetype>(qRound(point.x()), 0, record_.exams.size() - 1)));
  synchronizeFromData();
}

VelmoraGraphView* TracedDocument::chart() const {
  for (QWidget* widget : window()->findChildren<QWidget*>()) {
    if (auto* found = dynamic_cast<VelmoraGraphView*>(widget)) return found;
  }
  return nullptr;
}

void TracedDocument::showChart() {
  VelmoraGraphView* view = chart();
  QList<QPointF> points;
  for (qsizetype i = 0; i < record_.exams.size(); ++i) points.append(QPointF(static_cast<double>(i), 1));
  view->setAxes(QStringLiteral("Number"), QStringLiteral("Measure"),
                {-0.5, static_cast<double>(points.size()) - 0.5}, {0, 2});
  view->setDataPoints(points);
}

base::Result<> TracedDocument::contentFromJson(const QJsonObject& content, int) {
  record_ = recordOf(content);
  return {};
}

}  // namespace model
