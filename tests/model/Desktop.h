// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QPointer>
#include <functional>

#include "base/files/FileManager.h"
#include "testing/standins/TestServices.h"
#include "tests/model/Model.h"

namespace model {

/// A run loop in virtual time that lets window events through after every turn, as a real one does.
class PacedRunLoop : public velmora::platform::RunLoop {
 public:
  QDateTime now() const override;
  double uptime() const override { return time_; }
  /// Lets `seconds` pass. In a modal session nothing runs meanwhile.
  void pass(double seconds);

  std::function<void()> afterTurn;
  std::function<bool()> stopped;

 protected:
  void scheduleChanged() override {}

 private:
  double time_ = 0;
};

/// Answers every question as the model foresaw, and complains of those that it did not foresee.
class Answering : public velmora::platform::Alerts, public velmora::platform::Panels {
 public:
  explicit Answering(PacedRunLoop& runLoop) : runLoop_(runLoop) {}

  /// The questions of the next step, and where its files stand.
  void expect(const QList<Question>& questions, const QString& home);
  /// What was asked and not foreseen, or foreseen and not asked.
  QStringList complaints() const;
  /// Called for what happens while a question is open.
  std::function<void(const Event&)> happens;

  bool sheetIsOn(const QWidget* window) const {
    return sheets_.contains(window) && sheets_.value(window).owner;
  }
  void answerSheet(const QWidget* window, int returnCode);

  int runModal(const velmora::platform::Alert& alert) override;
  void beginSheetModalForWindow(const velmora::platform::Alert& alert, QWidget* window, const QObject* owner,
                                DidEnd didEnd) override;
  int runModal(velmora::platform::OpenPanel& panel) override;
  int runModal(velmora::platform::SavePanel& panel) override;

 private:
  struct Sheet {
    QPointer<const QObject> owner;
    DidEnd didEnd;
  };
  const Question* next(Question::Form form, const QString& what);
  int answer(const Question* question);

  PacedRunLoop& runLoop_;
  QList<Question> questions_;
  qsizetype asked_ = 0;
  QString home_;
  QStringList complaints_;
  QMap<const QWidget*, Sheet> sheets_;
};

/// Files as they are, but for folders whose disks can be full.
class FillableFileManager : public velmora::base::FileManager {
 public:
  QSet<QString> fullFolders;
  /// What somebody else does to the file that is written next, where there is a final check of what it
  /// replaces: right before that check or, where nothing stands, right after it.
  std::function<void(const QString&)> meanwhile;
  velmora::base::Result<> writeDurably(const QString& path, const QByteArray& contents,
                                       const FinalCheck& check = {}) override;
  velmora::base::Result<> writePrivately(const QString& path, const QByteArray& contents) override;

 private:
  bool isFull(const QString& path) const;
};

/// The stand-ins that a program runs on here.
struct ModelParts : velmora::testkit::StandIns {
  using RunLoop = PacedRunLoop;
  using Alerts = Answering;
  using Panels = Answering&;
  using FileManager = FillableFileManager;
};
class Desktop : public velmora::testkit::TestDesktop<ModelParts> {
 public:
  Desktop()
      : TestDesktop({{QStringLiteral("CFBundleIdentifier"), BundleIdentifier},
                     {QStringLiteral("CFBundleName"), QStringLiteral("Traced")},
                     {QStringLiteral("CFBundleShortVersionString"), QStringLiteral("1.0")}}) {}
};

}  // namespace model
