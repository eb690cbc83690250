// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QList>
#include <QPointer>
#include <deque>
#include <functional>

#include "base/Export.h"
#include "platform/controls/Alert.h"
#include "platform/controls/Feedback.h"
#include "platform/controls/Panels.h"
#include "platform/documents/Application.h"
#include "platform/notifications/NotificationCenter.h"
#include "platform/printing/Printing.h"
#include "platform/runloop/RunLoop.h"
#include "platform/settings/UserDefaults.h"
#include "platform/workspace/Workspace.h"

/// Stand-ins for the parts of the desktop that a person or another program would answer. What a test expects
/// of them it says beforehand; what was not expected, and what was expected and never came, fails the test.
namespace velmora::testkit {

/// Told of every broken expectation. A test program sets this to its framework's failure function; without it
/// the failure ends the process.
using FailureHandler = std::function<void(const QString&)>;
VELMORA_EXPORT void setFailureHandler(FailureHandler handler);
VELMORA_EXPORT void reportFailure(const QString& what);

/// Answers alerts from a list. Each entry says which alert must come, word for word.
class VELMORA_EXPORT ScriptedAlerts : public platform::Alerts {
 public:
  explicit ScriptedAlerts(platform::RunLoop& runLoop) : runLoop_(runLoop) {}
  /// Fails the test if an expected alert never came or a sheet was left unanswered.
  ~ScriptedAlerts() override;

  /// The next alert must be exactly this one; it is answered with `answer`. `whileOpen` runs while it is
  /// open.
  void expect(const platform::Alert& alert, int answer, std::function<void()> whileOpen = {});
  /// Whether every expected alert has come.
  bool allCame() const { return expected_.empty(); }
  /// Every alert that came, in order.
  const QList<platform::Alert>& shown() const { return shown_; }
  /// Answers the open sheet; `window` must be the one it is on, when given.
  void answerSheet(int returnCode, const QWidget* window = nullptr);
  bool sheetOpen() const { return static_cast<bool>(sheetDidEnd_); }

  int runModal(const platform::Alert& alert) override;
  /// Sheets stay open until answerSheet(); they must be expected all the same (their scripted answer is not
  /// used).
  void beginSheetModalForWindow(const platform::Alert& alert, QWidget* window, const QObject* owner,
                                DidEnd didEnd) override;

 private:
  struct Expected {
    platform::Alert alert;
    int answer;
    std::function<void()> whileOpen;
  };
  Expected take(const platform::Alert& alert);

  platform::RunLoop& runLoop_;
  std::deque<Expected> expected_;
  QList<platform::Alert> shown_;
  DidEnd sheetDidEnd_;
  QPointer<const QObject> sheetOwner_;
  QWidget* sheetWindow_ = nullptr;
};

/// Answers panels from a list: a chosen location, or an empty one for Cancel.
class VELMORA_EXPORT ScriptedPanels : public platform::Panels {
 public:
  ~ScriptedPanels() override;
  /// `directoryURL` is where the panel is when it closes; none leaves it where it started.
  void expectOpen(const QList<QUrl>& answer, const QUrl& directoryURL = {}) {
    expectedOpen_.push_back({answer, directoryURL});
  }
  void expectSave(const QUrl& answer) { expectedSave_.push_back(answer); }
  const QList<platform::OpenPanel>& openPanels() const { return openPanels_; }
  const QList<platform::SavePanel>& savePanels() const { return savePanels_; }

  int runModal(platform::OpenPanel& panel) override;
  int runModal(platform::SavePanel& panel) override;

 private:
  struct ExpectedOpen {
    QList<QUrl> answer;
    QUrl directoryURL;
  };
  std::deque<ExpectedOpen> expectedOpen_;
  std::deque<QUrl> expectedSave_;
  QList<platform::OpenPanel> openPanels_;
  QList<platform::SavePanel> savePanels_;
};

/// Settings that live in memory.
class VELMORA_EXPORT MemoryUserDefaults : public platform::UserDefaults {
 public:
  /// What has been stored, registered defaults not included.
  const QVariantMap& stored() const { return values_; }

 protected:
  QVariant storedValue(const QString& key) const override { return values_.value(key); }
  void storeValue(const QString& key, const QVariant& value) override { values_.insert(key, value); }

 private:
  QVariantMap values_;
};

/// A distributed centre without other processes: keeps what is posted, delivers what the test says.
class VELMORA_EXPORT RecordingDistributedCenter : public platform::DistributedNotificationCenter {
 public:
  struct Posted {
    double time;
    QString name;
    QString object;
    QVariantMap userInfo;
  };
  explicit RecordingDistributedCenter(const platform::RunLoop& runLoop) : runLoop_(runLoop) {}

  /// As if another process had posted this.
  void deliver(const QString& name, const QString& object, const QVariantMap& userInfo);
  const QList<Posted>& posted() const { return posted_; }
  qsizetype observerCount() const { return observers_.size(); }

  void addObserver(const QObject* observer, const QString& name, const QString& object,
                   Handler handler) override;
  void removeObserver(const QObject* observer, const std::optional<QString>& name,
                      const std::optional<QString>& object) override;
  void postNotificationName(const QString& name, const QString& object, const QVariantMap& userInfo) override;

 private:
  struct Observer {
    const QObject* observer;
    QString name;
    QString object;
    Handler handler;
  };
  const platform::RunLoop& runLoop_;
  QList<Observer> observers_;
  QList<Posted> posted_;
};

class VELMORA_EXPORT RecordingWorkspace : public platform::Workspace {
 public:
  QList<QUrl> opened;
  QStringList revealed;
  /// Bundle identifier to path of the applications that are "installed".
  QMap<QString, QString> applications;

  bool openURL(const QUrl& url) override {
    opened.append(url);
    return true;
  }
  bool selectFile(const QString& path) override {
    revealed.append(path);
    return true;
  }
  std::optional<QString> absolutePathForAppBundleWithIdentifier(const QString& identifier) const override {
    const auto found = applications.constFind(identifier);
    return found == applications.constEnd() ? std::nullopt : std::optional(*found);
  }
};

class VELMORA_EXPORT RecordingPrinter : public platform::Printer {
 public:
  struct Job {
    QString title;
    platform::PrintInfo info;
    QVariantMap settings;
    bool showPrintPanel;
  };
  QList<Job> jobs;
  /// Whether there is a printer.
  bool available = true;
  /// How often the page set-up was shown, and what the user then chooses in it; without that it is cancelled.
  int pageSetups = 0;
  std::function<void(platform::PrintInfo&)> chooseInPageSetup;
  /// Called with the view while it is "printed".
  std::function<void(QWidget*)> whilePrinting;

  base::Result<bool> printView(QWidget* view, const platform::PrintInfo& info, const QVariantMap& settings,
                               bool showPrintPanel) override;
  bool runPageSetup(platform::PrintInfo& info, QWidget* window) override;
  bool hasPrinter() const override { return available; }
};

class VELMORA_EXPORT RecordingFeedback : public platform::Feedback {
 public:
  int beeps = 0;
  QList<QPoint> poofs;
  void beep() override { ++beeps; }
  void showPoof(const QPoint& screenPoint) override { poofs.append(screenPoint); }
};

class VELMORA_EXPORT RecordingApplication : public platform::Application {
 public:
  int stops = 0;
  int helps = 0;
  void stop() override { ++stops; }
  void showHelp() override { ++helps; }
};

}  // namespace velmora::testkit
