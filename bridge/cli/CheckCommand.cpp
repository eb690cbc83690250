// SPDX-License-Identifier: LGPL-3.0-or-later
#include <algorithm>

#include "bridge/cli/Checks.h"
#include "bridge/cli/Commands.h"
#include "bridge/spool/Spool.h"

namespace bridge {
namespace {

/// Prints the answers as they come, and tells whether all were good.
class Answers {
 public:
  void give(const char* question, const CheckAnswer& answer) {
    printLine(QStringLiteral("%1  %2  %3")
                  .arg(answer.ok() ? QStringLiteral("ok   ") : QStringLiteral("wrong"))
                  .arg(QLatin1String(question), -13)
                  .arg(answer.ok() ? *answer : answer.error()));
    good_ = good_ && answer.ok();
  }
  int exitCode() const { return good_ ? Success : Failure; }

 private:
  bool good_ = true;
};

CheckAnswer checkServer(const QString& spool) {
  if (Spool::isServed(spool)) return QStringLiteral("velmora-link serve is running");
  return velmora::base::Failure{
      QStringLiteral("velmora-link serve is not running: charts that are sent now are lost")};
}

CheckAnswer checkCharts(const QString& spool) {
  const auto listing = Spool::list(spool);
  if (!listing) return listing.failure();
  const auto count = [&](SpoolState state) {
    return std::count_if(listing->begin(), listing->end(),
                         [&](const SpoolItem& item) { return item.state == state; });
  };
  const QString text = QStringLiteral("%1 waiting, %2 set aside")
                           .arg(count(SpoolState::Waiting))
                           .arg(count(SpoolState::Aside));
  if (count(SpoolState::Aside) == 0) return text;
  return velmora::base::Failure{text + QStringLiteral("; \"velmora-link status\" tells why")};
}

}  // namespace

int runCheck(const QStringList& arguments) {
  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral(
      "Asks one after the other what has to be in order, and says \"ok\" or \"wrong\". Changes\n"
      "nothing, and stores nothing in the archive. Ends with 0 when all is in order."));
  parser.addPositionalArgument(QStringLiteral("check"), QStringLiteral("This command."));
  addConfigOption(parser);
  if (const auto end = parse(parser, arguments)) return *end;

  Answers answers;
  const QString path = configPathOption(parser);
  const auto config = readConfig(path);
  if (!config.ok()) {
    const QStringList errors = config.error().split(QLatin1Char('\n'));
    for (const QString& error : errors) answers.give("configuration", velmora::base::Failure{error});
    return WrongUsage;
  }
  answers.give("configuration", path);
  answers.give("spool", checkSpoolFolder(config->spoolFolder));
  answers.give("charts", checkCharts(config->spoolFolder));
  answers.give("session bus", checkSessionBus());
  answers.give("server", checkServer(config->spoolFolder));
  answers.give("archive", checkArchive(config->pacs));
  return answers.exitCode();
}

}  // namespace bridge
