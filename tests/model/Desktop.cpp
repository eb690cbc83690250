// SPDX-License-Identifier: LGPL-3.0-or-later
#include "tests/model/Desktop.h"

#include <algorithm>
#include <utility>

using namespace velmora;

namespace model {

namespace {

constexpr double Tolerance = 1e-9;

QString described(const platform::Alert& alert) {
  return QStringLiteral("'%1' [%2|%3|%4] '%5'")
      .arg(alert.messageText, alert.defaultButton, alert.alternateButton, alert.otherButton,
           alert.informativeText);
}

QString described(const Question& question) {
  if (question.form == Question::Form::OpenPanel) return QStringLiteral("open panel");
  if (question.form == Question::Form::SavePanel) return QStringLiteral("save panel");
  return described(question.alert);
}

}  // namespace

QDateTime PacedRunLoop::now() const {
  return QDateTime(QDate(2024, 5, 2), QTime(10, 0)).addMSecs(qRound64(time_ * 1000));
}

void PacedRunLoop::pass(double seconds) {
  const double end = time_ + seconds;
  while (!stopped()) {
    const std::optional<double> due = nextDue();
    if (!due || *due > std::max(end + Tolerance, time_)) break;
    time_ = std::max(time_, *due);
    runDueCalls();
    afterTurn();
  }
  time_ = std::max(time_, end);
}

void Answering::expect(const QList<Question>& questions, const QString& home) {
  questions_ = questions;
  asked_ = 0;
  home_ = home;
  complaints_.clear();
}

QStringList Answering::complaints() const {
  QStringList all = complaints_;
  for (qsizetype i = asked_; i < questions_.size(); ++i) {
    all.append(QStringLiteral("never asked: ") + described(questions_.at(i)));
  }
  return all;
}

const Question* Answering::next(Question::Form form, const QString& what) {
  if (asked_ >= questions_.size()) {
    complaints_.append(QStringLiteral("not foreseen: ") + what);
    return nullptr;
  }
  const Question* question = &questions_.at(asked_++);
  if (question->form != form) {
    complaints_.append(QStringLiteral("asked %1 where %2 was foreseen").arg(what, described(*question)));
    return nullptr;
  }
  return question;
}

int Answering::answer(const Question* question) {
  if (!question) return 0;
  const Question copy = *question;
  const platform::RunLoop::ModalSession session(runLoop_);
  for (const Event& event : copy.meanwhile) happens(event);
  return copy.result;
}

int Answering::runModal(const platform::Alert& alert) {
  const Question* question = next(Question::Form::Alert, described(alert));
  if (question) {
    platform::Alert shown = alert;
    if (!question->informationKnown) shown.informativeText = question->alert.informativeText;
    if (shown != question->alert) {
      complaints_.append(
          QStringLiteral("asked %1 where %2 was foreseen").arg(described(alert), described(question->alert)));
    }
  }
  return answer(question);
}

void Answering::beginSheetModalForWindow(const platform::Alert& alert, QWidget* window, const QObject* owner,
                                         DidEnd didEnd) {
  const Question* question = next(Question::Form::Sheet, described(alert));
  if (question && question->alert != alert)
    complaints_.append(QStringLiteral("another sheet: ") + described(alert));
  if (sheetIsOn(window)) complaints_.append(QStringLiteral("a second sheet on one window"));
  sheets_.insert(window, {owner, std::move(didEnd)});
}

void Answering::answerSheet(const QWidget* window, int returnCode) {
  const Sheet sheet = sheets_.take(window);
  if (sheet.owner) sheet.didEnd(returnCode);
}

int Answering::runModal(platform::OpenPanel& panel) {
  const Question* question = next(Question::Form::OpenPanel, QStringLiteral("open panel"));
  if (question) panel.urls = {QUrl::fromLocalFile(home_ + QLatin1Char('/') + question->chosen)};
  return answer(question);
}

int Answering::runModal(platform::SavePanel& panel) {
  const QString what = QStringLiteral("save panel '%1'").arg(panel.nameFieldStringValue);
  const Question* question = next(Question::Form::SavePanel, what);
  if (question) {
    if (!question->proposedName.isNull() && question->proposedName != panel.nameFieldStringValue) {
      complaints_.append(QStringLiteral("%1, but '%2' was to be proposed").arg(what, question->proposedName));
    }
    panel.url = QUrl::fromLocalFile(home_ + QLatin1Char('/') + question->chosen);
  }
  return answer(question);
}

bool FillableFileManager::isFull(const QString& path) const {
  return std::any_of(fullFolders.begin(), fullFolders.end(),
                     [&](const QString& folder) { return path.startsWith(folder + QLatin1Char('/')); });
}

base::Result<> FillableFileManager::writePrivately(const QString& path, const QByteArray& contents) {
  if (isFull(path)) return base::Failure{QStringLiteral("No space left on device")};
  return FileManager::writePrivately(path, contents);
}

base::Result<> FillableFileManager::writeDurably(const QString& path, const QByteArray& contents,
                                                 const FinalCheck& check) {
  if (isFull(path)) return base::Failure{QStringLiteral("No space left on device")};
  if (!check || !meanwhile) return FileManager::writeDurably(path, contents, check);
  const auto act = std::exchange(meanwhile, nullptr);
  bool acted = false;
  return FileManager::writeDurably(path, contents, [&] {
    const bool actsNow = !std::exchange(acted, true);
    const bool stands = fileExistsAtPath(path);
    if (actsNow && stands) act(path);
    const base::Result<> looked = check();
    if (actsNow && !stands) act(path);
    return looked;
  });
}

}  // namespace model
