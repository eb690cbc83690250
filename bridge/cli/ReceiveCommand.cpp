// SPDX-License-Identifier: LGPL-3.0-or-later
#include <QCoreApplication>
#include <QTimer>
#include <chrono>

#include "base/log/Guard.h"
#include "bridge/cli/Commands.h"
#include "bridge/cli/ReplyFolder.h"
#include "bridge/cli/ReplySummary.h"
#include "link/bus/BusLink.h"
#include "link/protocol/LinkProtocol.h"

using namespace velmora;

namespace bridge {
namespace {

struct Limits {
  int count = 0;                         ///< replies to wait for; 0 for as many as come
  std::chrono::milliseconds timeout{0};  ///< 0 for as long as it takes
};

std::optional<Limits> limitsFrom(const QCommandLineParser& parser) {
  Limits limits;
  if (parser.isSet(QStringLiteral("count"))) {
    bool isNumber = false;
    limits.count = parser.value(QStringLiteral("count")).toInt(&isNumber);
    if (!isNumber || limits.count < 1) {
      printError(QStringLiteral("--count is not a whole number above 0"));
      return std::nullopt;
    }
  }
  if (parser.isSet(QStringLiteral("timeout"))) {
    bool isNumber = false;
    const double seconds = parser.value(QStringLiteral("timeout")).toDouble(&isNumber);
    if (!isNumber || !(seconds >= 0.001) || seconds > 2'000'000) {
      printError(QStringLiteral("--timeout is not a number of seconds above 0"));
      return std::nullopt;
    }
    limits.timeout = std::chrono::milliseconds(qRound64(seconds * 1000));
  }
  return limits;
}

/// Writes what arrives, up to the limits.
class Receiver : public QObject {
 public:
  Receiver(ReplyFolder& folder, const Limits& limits) : folder_(folder), limits_(limits) {}

  /// Any thread. Writing a file may take long, and the receiving thread must not wait.
  void receive(const QVariantMap& reply) {
    const QDateTime arrival = QDateTime::currentDateTime();
    QMetaObject::invokeMethod(
        this, [this, reply, arrival] { base::guarded("a chart that came", [&] { take(reply, arrival); }); },
        Qt::QueuedConnection);
  }

  /// Returns the exit code.
  int run() {
    if (limits_.timeout.count() > 0) {
      QTimer::singleShot(limits_.timeout, this,
                         [this] { base::guarded("the time limit", [this] { end(TimedOut); }); });
    }
    return QCoreApplication::exec();
  }

 private:
  void take(const QVariantMap& reply, const QDateTime& arrival) {
    if (ended_) return;
    const QString number = folder_.nextNumber();
    const base::Result<> written = folder_.write(reply);
    if (!written) {
      printError(written.error());
      end(Failure);
      return;
    }
    printLine(summaryOf(reply, number, arrival));
    if (++taken_ == limits_.count) end(Success);
  }

  void end(ExitCode code) {
    ended_ = true;
    QCoreApplication::exit(code);
  }

  ReplyFolder& folder_;
  Limits limits_;
  int taken_ = 0;
  bool ended_ = false;
};

}  // namespace

int runReceive(const QStringList& arguments) {
  QCommandLineParser parser;
  parser.setApplicationDescription(
      QStringLiteral("Writes every chart that the application with that bundle identifier sends:\n"
                     "0001.jpg as it came, 0001.json with all else that came with it, and one line on\n"
                     "standard output (number, time of arrival, identifier, description, size of the\n"
                     "chart, study, complaints; separated by tabs). Counts on from what is in the\n"
                     "folder. Says \"listening ...\" when nothing can be missed any more."));
  parser.addPositionalArgument(QStringLiteral("receive"), QStringLiteral("This command."));
  parser.addOption({QStringLiteral("application"),
                    QStringLiteral("The application's bundle identifier. Required."),
                    QStringLiteral("bundle-identifier")});
  parser.addOption({QStringLiteral("out"),
                    QStringLiteral("The folder to write into; made if missing. Required."),
                    QStringLiteral("folder")});
  parser.addOption({QStringLiteral("count"), QStringLiteral("End, with status 0, after this many charts."),
                    QStringLiteral("n")});
  parser.addOption({QStringLiteral("timeout"), QStringLiteral("End, with status 3, after this many seconds."),
                    QStringLiteral("seconds")});
  if (const auto end = parse(parser, arguments)) return *end;

  const auto application = applicationOption(parser);
  const auto limits = limitsFrom(parser);
  if (!application || !limits) return WrongUsage;
  if (parser.value(QStringLiteral("out")).isEmpty()) {
    printError(QStringLiteral("--out is missing"));
    return WrongUsage;
  }
  ReplyFolder folder(parser.value(QStringLiteral("out")));
  const base::Result<> opened = folder.open();
  if (!opened) {
    printError(opened.error());
    return Failure;
  }

  Receiver receiver(folder, *limits);
  const QString name = link::notificationName(*application);
  link::BusLink bus(
      QString(), [&](const link::Message& message) { receiver.receive(message.userInfo); },
      [](const QString& line) { printError(line); });
  bus.subscribe(name, link::ReplyObject);
  if (!bus.flush(std::chrono::seconds(20))) {
    printError(QStringLiteral("cannot listen"));
    return Failure;
  }
  printLine(QStringLiteral("listening for %1 charts into %2")
                .arg(*application, parser.value(QStringLiteral("out"))));
  return receiver.run();
}

}  // namespace bridge
