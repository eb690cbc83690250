// SPDX-License-Identifier: LGPL-3.0-or-later
#include <QCoreApplication>
#include <QTimer>
#include <csignal>
#include <cstdlib>
#include <mutex>

#include "base/log/Guard.h"
#include "base/process/SignalHandler.h"
#include "bridge/cli/Commands.h"
#include "bridge/pacs/PacsFactory.h"
#include "bridge/service/Service.h"
#include "link/bus/BusLink.h"
#include "link/protocol/LinkProtocol.h"

using namespace velmora;

namespace bridge {
namespace {

/// How long the current exchange may go on when the program is to end. A chart whose exchange is cut off is
/// sent again after the next start, as the same object.
constexpr std::chrono::seconds ShutdownTimeout{10};
/// How often to look whether the bus is ready, and how long one look may hold up the writing of replies.
constexpr std::chrono::milliseconds PollInterval{500};

/// Lines come from several threads.
void say(void (*print)(const QString&), const QString& line) {
  static std::mutex mutex;
  const std::lock_guard guard(mutex);
  print(line);
}
void done(const QString& line) { say(&printLine, line); }
void failed(const QString& line) { say(&printError, line); }

/// Subscribes to the applications' messages, and says when the subscriptions are in place.
class Listening {
 public:
  Listening(Service& service, const Config& config)
      : config_(config),
        bus_(
            QString(), [&service](const link::Message& message) { service.receive(message); },
            [](const QString& line) { failed(line); }) {
    for (const QString& application : config.applications) {
      const QString name = link::notificationName(application);
      bus_.subscribe(name, link::RequestObject);
      bus_.subscribe(name, link::ReplyObject);
    }
    looks_.setInterval(PollInterval);
    QObject::connect(&looks_, &QTimer::timeout, &looks_, [this] { look(); });
    looks_.start();
    QTimer::singleShot(0, &looks_, [this] { look(); });
  }

 private:
  void look() {
    base::guarded("a look for the bus", [this] {
      if (!looks_.isActive() || !bus_.flush(PollInterval)) return;
      looks_.stop();
      done(QStringLiteral("listening for the charts of %1, spool %2")
               .arg(config_.applications.join(QStringLiteral(", ")), config_.spoolFolder));
    });
  }

  const Config& config_;
  link::BusLink bus_;
  QTimer looks_;
};

}  // namespace

int runServe(const QStringList& arguments) {
  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral(
      "Stores the charts that the applications send in the PACS, in the study that they belong\n"
      "to, until it is told to end (SIGTERM or SIGINT). A chart is kept on the disk until the\n"
      "PACS has confirmed it. Says \"listening ...\" when nothing can be missed any more, and\n"
      "one line for each chart: \"taken\", \"stored\", \"waiting\" or \"aside\", with the name that\n"
      "\"velmora-link status\" shows, never the patient's."));
  parser.addPositionalArgument(QStringLiteral("serve"), QStringLiteral("This command."));
  addConfigOption(parser);
  if (const auto end = parse(parser, arguments)) return *end;
  const auto config = configOption(parser);
  if (!config) return WrongUsage;

  Spool spool(config->spoolFolder);
  const base::Result<> opened = spool.open();
  if (!opened) {
    failed(opened.error());
    return Failure;
  }
  for (const QString& warning : spool.warnings()) failed(warning);
  RequestHistory requests(spool.folder() + QStringLiteral("/requests"));
  const base::Result<> remembered = requests.open(QDateTime::currentDateTimeUtc());
  if (!remembered) failed(remembered.error());

  const base::SignalHandler signalHandler(base::SignalHandler::Program::Service,
                                          [] { QCoreApplication::quit(); });
  // The reader of our output may end before us.
  ::signal(SIGPIPE, SIG_IGN);
  const std::unique_ptr<Pacs> pacs = makePacs(config->pacs);
  Service service(spool, requests, *pacs, *config, &done, &failed);
  {
    const Listening listening(service, *config);
    QCoreApplication::exec();
  }
  service.drain();
  if (!service.end(ShutdownTimeout)) {
    failed(QStringLiteral("ended in the middle of an exchange with the PACS"));
    std::_Exit(Success);
  }
  return Success;
}

}  // namespace bridge
