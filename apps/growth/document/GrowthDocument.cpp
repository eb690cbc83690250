// SPDX-License-Identifier: LGPL-3.0-or-later
#include "apps/growth/document/GrowthDocument.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTabWidget>

#include "apps/growth/document/GrowthCharts.h"
#include "apps/growth/record/Age.h"
#include "base/log/Guard.h"
#include "platform/documents/WindowController.h"
#include "platform/text/Localization.h"
#include "velmora/document/VelmoraGraphView.h"

using namespace velmora;

using growth::Measure;

namespace {

/// How near a click must be to a point to mean it, in pixels.
constexpr double ClickDistance = 14;

/// The items of the sex menu, in the order of the interface file.
enum SexItem { NoSex = 0, Female = 1, Male = 2 };

std::size_t at(Measure measure) { return static_cast<std::size_t>(measure); }

growth::RecordDate typedDate(const QString& text, const QDate& day) {
  return day.isValid() ? growth::RecordDate{day, {}} : growth::RecordDate{{}, text.trimmed()};
}

QString ageText(const growth::AgeParts& age) {
  return platform::formatted(
      platform::localizedString("VelmoraDocument", "%ld y %ld m %ld d"),
      {QString::number(age.years), QString::number(age.months), QString::number(age.days)});
}

}  // namespace

GrowthDocument::GrowthDocument(platform::Services& services, VelmoraApplicationDelegate& delegate,
                               const growth::GrowthReferences& references)
    : VelmoraDocument(services, delegate), references_(references) {}

void GrowthDocument::windowControllerDidLoadNib(platform::WindowController& windowController) {
  VelmoraDocument::windowControllerDidLoadNib(windowController);
  connectOwnOutlets(windowController.window());
  // A returning patient's record begins with the latest examination.
  setCurrentExam(lastExam());
  showPatient();
  synchronizeFromData();
}

void GrowthDocument::connectOwnOutlets(QWidget* window) {
  nameField_ = window->findChild<QLabel*>(QStringLiteral("nameField"));
  sexPopUp_ = window->findChild<QComboBox*>(QStringLiteral("sexPopUp"));
  for (const Measure measure : growth::measures) {
    const QString word = growth::wordFor(measure);
    measuredFields_[at(measure)] = window->findChild<QLineEdit*>(word + QStringLiteral("Field"));
    resultFields_[at(measure)] = window->findChild<QLabel*>(word + QStringLiteral("ResultField"));
    QWidget* chart = window->findChild<QWidget*>(word + QStringLiteral("GraphView"));
    charts_[at(measure)] = dynamic_cast<VelmoraGraphView*>(chart);
  }
  if (referenceIDField_) {
    QObject::connect(referenceIDField_, &QLineEdit::textEdited, this,
                     [this] { base::guarded("identifier", [this] { setLookUpRequired(true); }); });
  }
  if (sexPopUp_) {
    QObject::connect(sexPopUp_, &QComboBox::activated, this,
                     [this] { base::guarded("sex", [this] { directUpdateDisplayAndSetDirty(sexPopUp_); }); });
  }
  if (tabView_) {
    QObject::connect(tabView_, &QTabWidget::currentChanged, this,
                     [this] { base::guarded("tab", [this] { noteSelectedChart(); }); });
  }
}

growth::Examination& GrowthDocument::shownExamination() {
  const auto index = std::min(currentExam(), lastExam());
  return record_.examinations[static_cast<qsizetype>(index)];
}

void GrowthDocument::showPatient() {
  setIdentifier(record_.identifier);
  if (birthDateField_) {
    birthDateField_->setText(record_.birthDate.day.isValid() ? shownDate(record_.birthDate.day)
                                                             : record_.birthDate.unread);
  }
  if (!sexPopUp_) return;
  SexItem item = NoSex;
  if (record_.sex) item = *record_.sex == growth::Sex::Female ? Female : Male;
  sexPopUp_->setCurrentIndex(item);
}

void GrowthDocument::synchronizeFromData() {
  const growth::Examination& examination = shownExamination();
  if (examDateField_) {
    examDateField_->setText(examination.date.day.isValid() ? shownDate(examination.date.day)
                                                           : examination.date.unread);
  }
  for (const Measure measure : growth::measures) {
    if (QLineEdit* field = measuredFields_[at(measure)])
      field->setText(growth::textOf(examination.of(measure)));
  }
  showExamNumber();
  showResults();
  showCharts();
}

void GrowthDocument::synchronizeToData() {
  // Without a window there is nothing on it to store, and the record stands as it was read.
  if (!windowForSheet()) return;
  if (referenceIDField_) record_.identifier = identifier();
  if (birthDateField_) {
    record_.birthDate = typedDate(birthDateField_->text(), dayOfShownDate(birthDateField_->text()));
  }
  if (sexPopUp_) {
    record_.sex.reset();
    if (sexPopUp_->currentIndex() == Female) record_.sex = growth::Sex::Female;
    if (sexPopUp_->currentIndex() == Male) record_.sex = growth::Sex::Male;
  }
  growth::Examination& examination = shownExamination();
  if (examDateField_)
    examination.date = typedDate(examDateField_->text(), dayOfShownDate(examDateField_->text()));
  for (const Measure measure : growth::measures) {
    if (const QLineEdit* field = measuredFields_[at(measure)]) {
      examination.of(measure) = growth::measurementFromText(field->text());
    }
  }
}

void GrowthDocument::addExamination() {
  record_.examinations.append(growth::Examination{});
  setCurrentExam(lastExam());
}

void GrowthDocument::deleteCurrentExamination() {
  if (currentExam() <= lastExam() && lastExam() > 0) {
    record_.examinations.removeAt(static_cast<qsizetype>(currentExam()));
  }
}

void GrowthDocument::updateArrayOrder() {
  synchronizeToData();
  setCurrentExam(static_cast<quint64>(record_.sortExaminations(static_cast<qsizetype>(currentExam()))));
  showExamNumber();
  showResults();
  showCharts();
}

void GrowthDocument::updateDisplay() {
  updateArrayOrder();
  VelmoraDocument::updateDisplay();
}

void GrowthDocument::controlTextDidEndEditing(QLineEdit* control) {
  const bool looksUp = lookUpRequired() && !preferredFileName(false).isEmpty();
  VelmoraDocument::controlTextDidEndEditing(control);
  if (isClosed()) return;
  // While a look-up decides whether this record stays at all, its examinations keep their order.
  if (!looksUp) return updateDisplay();
  synchronizeToData();
  showResults();
  showCharts();
}

void GrowthDocument::setCurrentRecordFromClick(const QPointF& point) {
  const Measure measure = selectedMeasure();
  const VelmoraGraphView* chart = charts_[at(measure)];
  if (!chart) return;
  const auto near = chart->dataPointNear(chart->pointForCoordinate(point), ClickDistance);
  if (!near) return;
  synchronizeToData();
  const growth::ChartPoints points = growth::chartPoints(record_, measure);
  if (*near < points.examinations.size()) setCurrentExam(static_cast<quint64>(points.examinations.at(*near)));
  synchronizeFromData();
}

Measure GrowthDocument::selectedMeasure() const {
  for (const Measure measure : growth::measures) {
    const QWidget* chart = charts_[at(measure)];
    const QWidget* page = tabView_ ? tabView_->currentWidget() : nullptr;
    if (chart && page && (page == chart || page->isAncestorOf(chart))) return measure;
  }
  return Measure::Weight;
}

void GrowthDocument::showResults() {
  const growth::Examination& examination = shownExamination();
  for (const Measure measure : growth::measures) {
    if (QLabel* field = resultFields_[at(measure)]) {
      field->setText(growth::resultText(record_, examination, measure, references_.reference(measure)));
    }
  }
  const auto age = growth::ageParts(record_.birthDate.day, examination.date.day);
  if (ageField_) ageField_->setText(age ? ageText(*age) : QString());
  if (nameField_) nameField_->setText(patientName());
}

void GrowthDocument::showCharts() {
  for (const Measure measure : growth::measures) {
    if (VelmoraGraphView* chart = charts_[at(measure)]) {
      growth::showChart(*chart, record_, measure, references_.reference(measure),
                        static_cast<qsizetype>(currentExam()));
    }
  }
  noteSelectedChart();
}

void GrowthDocument::noteSelectedChart() {
  const growth::ChartPoints points = growth::chartPoints(record_, selectedMeasure());
  setCurrentDataPointsVisible(points.pointOf(static_cast<qsizetype>(currentExam())).has_value());
}

base::Result<> GrowthDocument::contentFromJson(const QJsonObject& content, int) {
  base::Result<growth::GrowthRecord> read = growth::GrowthRecord::fromJson(content);
  if (!read.ok()) return read.failure();
  record_ = std::move(read).value();
  return {};
}
