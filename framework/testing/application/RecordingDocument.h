// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QStringList>

#include "base/Export.h"
#include "velmora/document/VelmoraDocument.h"

namespace velmora::testkit {

/// A document of an application of the family that keeps, in order, what the framework asks of it. An
/// examination of its record is nothing but its date, as text.
class VELMORA_EXPORT RecordingDocument : public VelmoraDocument {
 public:
  using VelmoraDocument::VelmoraDocument;

  /// Each "hook index": the hook called and the examination that was current.
  QStringList calls;
  /// For each call, whether the document counted as changed by then.
  QList<bool> changedByThen;
  void forgetCalls();

  QStringList exams{QString()};
  /// What the framework's hooks do, done only by subclasses.
  using VelmoraDocument::setCurrentExam;
  /// Whether a new examination becomes the current one.
  bool showsAddedExamination = true;
  /// Whether the last save through a panel told the document itself.
  bool toldOfSave = false;

  quint64 lastExam() const override { return static_cast<quint64>(exams.size() - 1); }
  void windowControllerDidLoadNib(platform::WindowController& windowController) override;
  void synchronizeFromData() override;
  void synchronizeToData() override;
  void addExamination() override;
  void deleteCurrentExamination() override;
  void updateArrayOrder() override;
  void setCurrentRecordFromClick(const QPointF& point) override;
  void updateDisplay() override;
  void documentDidSave(platform::Document* document, bool didSave) override;

  QList<QPointF> clicks;

 protected:
  QJsonObject contentToJson() const override;
  base::Result<> contentFromJson(const QJsonObject& content, int version) override;

 private:
  void note(const char* hook);

  QString identifierOfRecord_;
  QString birthDateOfRecord_;
};

}  // namespace velmora::testkit
