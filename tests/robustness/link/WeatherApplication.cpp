// SPDX-License-Identifier: LGPL-3.0-or-later
//
// The sample application on the real desktop, as its own main makes it, with a wire into its inside: it says
// what becomes of link requests on standard output, and takes orders on standard input, a line each.
//
//   block MS   keeps the main thread busy that long       -> "blocked" when it begins, "free" when it is over
//   memory     how much memory the program holds          -> "memory BYTES"
//   quit       ends the program                           -> exit status 0
//
// Of itself it says "ready" once its window is there, and "shown IDENTIFIER" whenever the identifier changes.
#include <malloc.h>
#include <unistd.h>

#include <QApplication>
#include <QLineEdit>
#include <QSocketNotifier>
#include <QThread>
#include <cstdio>
#include <iostream>
#include <string>

#include "apps/growth/document/GrowthDocument.h"
#include "apps/growth/reference/GrowthReferences.h"
#include "apps/growth/resources/GrowthResources.h"
#include "desktop/Desktop.h"
#include "desktop/activation/SessionBus.h"
#include "platform/bundles/Bundle.h"
#include "platform/controls/InterfaceFiles.h"
#include "platform/documents/Document.h"
#include "platform/documents/WindowController.h"
#include "platform/settings/UserDefaults.h"
#include "velmora/app/VelmoraAppController.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;

#if defined(__SANITIZE_ADDRESS__)
// As the sanitizer runtime declares it; its header comes with another package.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace {

void say(const std::string& line) { std::cout << line << std::endl; }

/// What the program holds: resident memory; under the address sanitizer, which gives nothing back to the
/// system, what is allocated.
long long memoryHeld() {
#if defined(__SANITIZE_ADDRESS__)
  return static_cast<long long>(__sanitizer_get_current_allocated_bytes());
#else
  long long pages = 0;
  long long resident = 0;
  FILE* file = std::fopen("/proc/self/statm", "r");
  const bool read = file && std::fscanf(file, "%lld %lld", &pages, &resident) == 2;
  if (file) std::fclose(file);
  return read ? resident * sysconf(_SC_PAGESIZE) : -1;
#endif
}

class WiredController : public VelmoraAppController {
 public:
  using VelmoraAppController::VelmoraAppController;

  void documentWindowDidLoad(platform::WindowController& windowController) override {
    VelmoraAppController::documentWindowDidLoad(windowController);
    auto* field = windowController.window()->findChild<QLineEdit*>(QStringLiteral("referenceIDField"));
    QObject::connect(field, &QLineEdit::textChanged, field,
                     [](const QString& identifier) { say("shown " + identifier.left(100).toStdString()); });
  }
  void applicationDidFinishLaunching() override {
    VelmoraAppController::applicationDidFinishLaunching();
    say("ready");
  }
};

void obey(const std::string& order) {
  if (order.rfind("block ", 0) == 0) {
    say("blocked");
    QThread::msleep(static_cast<unsigned long>(std::stoul(order.substr(6))));
    say("free");
  } else if (order == "memory") {
    say("memory " + std::to_string(memoryHeld()));
  } else if (order == "quit") {
    QCoreApplication::exit(0);
  }
}

}  // namespace

int main(int argc, char** argv) {
  desktop::prepareSessionBus();
  QApplication application(argc, argv);
  desktop::Desktop desktop(qEnvironmentVariable("WEATHER_BUNDLE"));
  platform::Services& services = desktop.services();
  services.defaults.setInteger(31, velmora::settings::VersionCheckInterval);  // not the first run
  services.defaults.registerDefaults({{velmora::settings::DataFileExtension, QStringLiteral("growth")}});
  const growth::GrowthReferences references(QStringLiteral(GROWTH_REFERENCE_FOLDER));

  WiredController controller(services);
  services.interfaceFiles.addSearchPath(growth::interfaceFolder());
  controller.setDocumentFactory(
      [&] { return std::make_unique<GrowthDocument>(services, controller, references); });

  QSocketNotifier orders(STDIN_FILENO, QSocketNotifier::Read);
  QObject::connect(&orders, &QSocketNotifier::activated, &orders, [&orders] {
    std::string order;
    if (!std::getline(std::cin, order)) {
      orders.setEnabled(false);
      return QCoreApplication::exit(1);
    }
    obey(order);
  });
  return desktop.run(controller);
}
