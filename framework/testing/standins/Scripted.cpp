// SPDX-License-Identifier: LGPL-3.0-or-later
#include "testing/standins/Scripted.h"

#include <QWidget>
#include <cstdio>
#include <cstdlib>

namespace velmora::testkit {

namespace {

FailureHandler& failureHandler() {
  static FailureHandler handler;
  return handler;
}

QString described(const platform::Alert& alert) {
  return QStringLiteral("'%1' [%2|%3|%4] '%5'")
      .arg(alert.messageText, alert.defaultButton, alert.alternateButton, alert.otherButton,
           alert.informativeText);
}

}  // namespace

void setFailureHandler(FailureHandler handler) { failureHandler() = std::move(handler); }

void reportFailure(const QString& what) {
  if (failureHandler()) return failureHandler()(what);
  std::fprintf(stderr, "%s\n", qPrintable(what));
  std::abort();
}

ScriptedAlerts::~ScriptedAlerts() {
  for (const Expected& expected : expected_) {
    reportFailure(QStringLiteral("Expected alert never came: ") + described(expected.alert));
  }
  if (sheetDidEnd_ && sheetOwner_) reportFailure(QStringLiteral("A sheet was left unanswered"));
}

void ScriptedAlerts::expect(const platform::Alert& alert, int answer, std::function<void()> whileOpen) {
  expected_.push_back({alert, answer, std::move(whileOpen)});
}

ScriptedAlerts::Expected ScriptedAlerts::take(const platform::Alert& alert) {
  shown_.append(alert);
  if (expected_.empty()) {
    reportFailure(QStringLiteral("Unexpected alert: ") + described(alert));
    return {alert, platform::AlertAlternateReturn, {}};
  }
  Expected next = std::move(expected_.front());
  expected_.pop_front();
  if (next.alert != alert) {
    reportFailure(
        QStringLiteral("Expected alert %1, but %2 came").arg(described(next.alert), described(alert)));
  }
  return next;
}

int ScriptedAlerts::runModal(const platform::Alert& alert) {
  const platform::RunLoop::ModalSession session(runLoop_);
  const Expected next = take(alert);
  if (next.whileOpen) next.whileOpen();
  return next.answer;
}

void ScriptedAlerts::beginSheetModalForWindow(const platform::Alert& alert, QWidget* window,
                                              const QObject* owner, DidEnd didEnd) {
  take(alert);
  sheetDidEnd_ = std::move(didEnd);
  sheetOwner_ = owner;
  sheetWindow_ = window;
}

void ScriptedAlerts::answerSheet(int returnCode, const QWidget* window) {
  if (!sheetDidEnd_) return reportFailure(QStringLiteral("No sheet is open"));
  if (window && window != sheetWindow_) reportFailure(QStringLiteral("The sheet is on another window"));
  const DidEnd didEnd = std::exchange(sheetDidEnd_, {});
  if (sheetOwner_) didEnd(returnCode);
}

ScriptedPanels::~ScriptedPanels() {
  if (!expectedOpen_.empty()) reportFailure(QStringLiteral("Expected open panel never came"));
  if (!expectedSave_.empty()) reportFailure(QStringLiteral("Expected save panel never came"));
}

int ScriptedPanels::runModal(platform::OpenPanel& panel) {
  openPanels_.append(panel);
  if (expectedOpen_.empty()) {
    reportFailure(QStringLiteral("Unexpected open panel"));
    return platform::PanelCancelButton;
  }
  panel.urls = expectedOpen_.front().answer;
  if (!expectedOpen_.front().directoryURL.isEmpty()) panel.directoryURL = expectedOpen_.front().directoryURL;
  expectedOpen_.pop_front();
  return panel.urls.isEmpty() ? platform::PanelCancelButton : platform::PanelOKButton;
}

int ScriptedPanels::runModal(platform::SavePanel& panel) {
  savePanels_.append(panel);
  if (expectedSave_.empty()) {
    reportFailure(QStringLiteral("Unexpected save panel"));
    return platform::PanelCancelButton;
  }
  panel.url = expectedSave_.front();
  expectedSave_.pop_front();
  return panel.url.isEmpty() ? platform::PanelCancelButton : platform::PanelOKButton;
}

void RecordingDistributedCenter::deliver(const QString& name, const QString& object,
                                         const QVariantMap& userInfo) {
  const QList<Observer> snapshot = observers_;
  for (const Observer& observer : snapshot) {
    if (observer.name == name && observer.object == object) observer.handler({name, object, userInfo});
  }
}

void RecordingDistributedCenter::addObserver(const QObject* observer, const QString& name,
                                             const QString& object, Handler handler) {
  observers_.append({observer, name, object, std::move(handler)});
}

void RecordingDistributedCenter::removeObserver(const QObject* observer, const std::optional<QString>& name,
                                                const std::optional<QString>& object) {
  observers_.removeIf([&](const Observer& each) {
    return each.observer == observer && (!name || each.name == *name) && (!object || each.object == *object);
  });
}

void RecordingDistributedCenter::postNotificationName(const QString& name, const QString& object,
                                                      const QVariantMap& userInfo) {
  posted_.append({runLoop_.uptime(), name, object, userInfo});
  deliver(name, object, userInfo);
}

base::Result<bool> RecordingPrinter::printView(QWidget* view, const platform::PrintInfo& info,
                                               const QVariantMap& settings, bool showPrintPanel) {
  jobs.append({view->window()->windowTitle().remove(QStringLiteral("[*]")), info, settings, showPrintPanel});
  if (whilePrinting) whilePrinting(view);
  return true;
}

bool RecordingPrinter::runPageSetup(platform::PrintInfo& info, QWidget*) {
  ++pageSetups;
  if (!chooseInPageSetup) return false;
  chooseInPageSetup(info);
  return true;
}

}  // namespace velmora::testkit
