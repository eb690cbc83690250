// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <array>

#include "apps/growth/record/GrowthRecord.h"
#include "velmora/document/VelmoraDocument.h"

class QComboBox;
class VelmoraGraphView;

/// The growth of one child. Shows how an application of the family is written: its own record, its own
/// fields, and the hooks of the subclass contract; everything else is the framework's.
class GrowthDocument : public VelmoraDocument {
 public:
  GrowthDocument(velmora::platform::Services& services, VelmoraApplicationDelegate& delegate,
                 const growth::GrowthReferences& references);

  void windowControllerDidLoadNib(velmora::platform::WindowController& windowController) override;

  quint64 lastExam() const override { return static_cast<quint64>(record_.examinations.size() - 1); }
  void synchronizeFromData() override;
  void synchronizeToData() override;
  void addExamination() override;
  void deleteCurrentExamination() override;
  void updateArrayOrder() override;
  void setCurrentRecordFromClick(const QPointF& point) override;
  void updateDisplay() override;
  void controlTextDidEndEditing(QLineEdit* control) override;

  const growth::GrowthRecord& record() const { return record_; }

 protected:
  QJsonObject contentToJson() const override { return record_.toJson(); }
  velmora::base::Result<> contentFromJson(const QJsonObject& content, int version) override;

 private:
  void connectOwnOutlets(QWidget* window);
  void showPatient();
  void showResults();
  void showCharts();
  void noteSelectedChart();
  growth::Measure selectedMeasure() const;
  growth::Examination& shownExamination();

  const growth::GrowthReferences& references_;
  growth::GrowthRecord record_;

  QPointer<QLabel> nameField_;
  QPointer<QComboBox> sexPopUp_;
  // Each indexed by Measure.
  std::array<QPointer<QLineEdit>, growth::measures.size()> measuredFields_;
  std::array<QPointer<QLabel>, growth::measures.size()> resultFields_;
  std::array<QPointer<VelmoraGraphView>, growth::measures.size()> charts_;
};
