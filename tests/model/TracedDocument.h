// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QLineEdit>
#include <QPointer>

#include "tests/model/Record.h"
#include "velmora/document/VelmoraDocument.h"

class VelmoraGraphView;

namespace model {

/// A document of an application of the family whose examinations carry tokens, so that each can be traced to
/// where it was made. An examination has a date and one measurement, any text.
class TracedDocument : public VelmoraDocument {
 public:
  /// `nextToken` gives the token of a new examination.
  TracedDocument(velmora::platform::Services& services, VelmoraApplicationDelegate& delegate,
                 std::function<int()> nextToken)
      : VelmoraDocument(services, delegate), nextToken_(std::move(nextToken)) {}

  /// What is stored, and what the window shows.
  const Record& record() const { return record_; }
  Record shown() const;
  QLineEdit* identifierField() const { return referenceIDField_; }
  QLineEdit* birthField() const { return birthDateField_; }
  QLineEdit* dateField() const { return examDateField_; }
  QLineEdit* measureField() const { return measureField_; }
  VelmoraGraphView* chart() const;

  void windowControllerDidLoadNib(velmora::platform::WindowController& windowController) override;
  quint64 lastExam() const override { return static_cast<quint64>(record_.exams.size() - 1); }
  void synchronizeFromData() override;
  void synchronizeToData() override;
  void addExamination() override;
  void deleteCurrentExamination() override;
  void updateArrayOrder() override;
  void setCurrentRecordFromClick(const QPointF& point) override;

 protected:
  QJsonObject contentToJson() const override { return contentOf(record_); }
  velmora::base::Result<> contentFromJson(const QJsonObject& content, int version) override;

 private:
  void showChart();

  std::function<int()> nextToken_;
  Record record_;
  QPointer<QLineEdit> measureField_;
};

}  // namespace model
