// SPDX-License-Identifier: LGPL-3.0-or-later
//
// An application with the real desktop around it, which says what happens to it: a line for each thing, with
// its process number before it, in the file that DESK_SAYS names. On standard input it takes orders: "answer"
// closes the alert that is open, "edit" changes the front document, "stall" keeps the main thread busy for
// good, "quit" quits.
#include <unistd.h>

#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QSocketNotifier>
#include <QWidget>
#include <memory>

#include "desktop/Desktop.h"
#include "orv/documents/OrvDocument.h"
#include "platform/controls/Alert.h"
#include "platform/documents/Application.h"
#include "platform/documents/DocumentController.h"
#include "platform/runloop/RunLoop.h"

using namespace velmora;

namespace {

void say(const QString& what) {
  QFile file(qEnvironmentVariable("DESK_SAYS"));
  if (!file.open(QIODevice::WriteOnly | QIODevice::Append)) return;
  file.write(QStringLiteral("%1 %2\n").arg(QCoreApplication::applicationPid()).arg(what).toUtf8());
}

class Record : public OrvDocument {
 public:
  using OrvDocument::OrvDocument;
  base::Result<> readFromData(const QByteArray&, const QString&) override { return {}; }
  base::Result<QByteArray> dataOfType(const QString&) override { return QByteArray("edited"); }

 protected:
  QJsonObject contentToJson() const override { return {}; }
  base::Result<> contentFromJson(const QJsonObject&, int) override { return {}; }
};

class Controller : public platform::DocumentController {
 public:
  explicit Controller(platform::Services& desktop) : DocumentController(desktop) {
    setDocumentFactory([this] { return std::make_unique<Record>(services()); });
  }
  void awakeFromNib() override { say(QStringLiteral("awake")); }
  void applicationDidFinishLaunching() override {
    for (const platform::Document* document : documents())
      if (document->fileURL().isEmpty()) say(QStringLiteral("blank"));
    say(QStringLiteral("launched"));
    if (!qEnvironmentVariableIsSet("DESK_ASKS")) return;
    services().runLoop.performAfterDelay(this, 0, [this] {
      say(QStringLiteral("asks"));
      services().alerts.runModal({QStringLiteral("Well?"), QStringLiteral("OK"), {}, {}, {}});
      say(QStringLiteral("answered"));
      if (qEnvironmentVariable("DESK_ASKS") == QLatin1String("and ends")) services().application.stop();
    });
  }
  void applicationWillTerminate() override { say(QStringLiteral("terminates")); }
  void noteNewRecentDocumentURL(const QUrl& url) override {
    say(QStringLiteral("opens ") + QFileInfo(url.toLocalFile()).fileName());
  }
  bool applicationPrintFile(const QString& path) override {
    say(QStringLiteral("prints ") + QFileInfo(path).fileName());
    return true;
  }
  bool applicationPerformAction(const QString& name) override {
    say(QStringLiteral("does ") + name);
    return DocumentController::applicationPerformAction(name);
  }
};

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  desktop::Desktop desktop(QStringLiteral("desktop-application"));
  Controller controller(desktop.services());
  QSocketNotifier orders(STDIN_FILENO, QSocketNotifier::Read);
  QObject::connect(&orders, &QSocketNotifier::activated, &orders, [&] {
    char order[16] = {};
    const ssize_t size = ::read(STDIN_FILENO, order, sizeof order - 1);
    if (size <= 0) orders.setEnabled(false);
    const QByteArray word = QByteArray(order).trimmed();
    if (word == "quit") controller.terminate();
    if (word == "edit" && controller.currentDocument()) {
      controller.currentDocument()->updateChangeCount(platform::ChangeType::Done);
      say(QStringLiteral("edited"));
    }
    if (word == "stall") {
      say(QStringLiteral("stalls"));
      for (;;) ::pause();
    }
    if (word == "answer" && QApplication::activeModalWidget()) QApplication::activeModalWidget()->close();
  });
  return desktop.run(controller);
}
