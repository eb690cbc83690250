// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include "base/Export.h"

namespace velmora {

/// The subclass contract of a patient document: how it is told to keep, show, add and remove examinations.
/// The hooks do nothing unless a class that holds examinations overrides them.
class VELMORA_EXPORT ExaminationHooks {
 public:
  virtual ~ExaminationHooks() = default;

  /// The index of the last examination: their number less one. The base answers 0.
  virtual quint64 lastExam() const { return 0; }
  /// Fill fields and chart, and setCurrentDataPointsVisible, from the examination at currentExam. Called
  /// after every change of currentExam, after adding and deleting, and before deleting.
  virtual void synchronizeFromData() {}
  /// Store the fields into the examination at currentExam. Called before every change of currentExam, before
  /// adding, refreshing the display, printing and saving.
  virtual void synchronizeToData() {}
  /// Add an examination. An override that wants it shown moves currentExam (setCurrentExam).
  virtual void addExamination() {}
  /// Remove the examination at currentExam.
  virtual void deleteCurrentExamination() {}
  /// Bring the examinations back into their order after an edit.
  virtual void updateArrayOrder() {}
};

}  // namespace velmora
