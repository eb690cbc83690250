// SPDX-License-Identifier: LGPL-3.0-or-later
#include <algorithm>

#include "bridge/cli/Commands.h"
#include "bridge/spool/Spool.h"

using namespace velmora;

namespace bridge {
namespace {

QStringList namesOfAside(const QList<SpoolItem>& items) {
  QStringList names;
  for (const SpoolItem& item : items) {
    if (item.state == SpoolState::Aside) names.append(item.name);
  }
  return names;
}

/// The charts set aside that can be sent; damaged ones cannot.
QStringList sendableOf(const QList<SpoolItem>& items) {
  QStringList names;
  for (const SpoolItem& item : items) {
    if (item.state == SpoolState::Aside && !item.sopInstanceUID.isEmpty()) names.append(item.name);
  }
  return names;
}

/// Returns whether a retry could be requested for each name; prints what could not.
bool requestRetries(const QString& folder, const QStringList& names, const QStringList& aside) {
  bool all = true;
  for (const QString& name : names) {
    const base::Result<> put = aside.contains(name)
                                   ? Spool::requestRetry(folder, name)
                                   : base::Failure{QStringLiteral("nothing of that name is set aside")};
    if (put) {
      printLine(name + QStringLiteral(" waits again"));
    } else {
      printError(QStringLiteral("%1: %2").arg(name, put.error()));
      all = false;
    }
  }
  return all;
}

}  // namespace

int runRetry(const QStringList& arguments) {
  constexpr int MostNames = 10000;
  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral(
      "Lets charts wait again that were set aside; \"velmora-link status\" shows their names."));
  parser.addPositionalArgument(QStringLiteral("retry"), QStringLiteral("This command."));
  parser.addPositionalArgument(QStringLiteral("names"), QStringLiteral("Which ones."),
                               QStringLiteral("[name...]"));
  addConfigOption(parser);
  parser.addOption({QStringLiteral("all"), QStringLiteral("All that are set aside.")});
  if (const auto end = parse(parser, arguments, MostNames)) return *end;
  const QStringList named = parser.positionalArguments().mid(1);
  if (named.isEmpty() != parser.isSet(QStringLiteral("all"))) {
    printError(QStringLiteral("give either names or --all"));
    return WrongUsage;
  }
  const auto config = configOption(parser);
  if (!config) return WrongUsage;

  const auto items = Spool::list(config->spoolFolder);
  if (!items) {
    printError(items.error());
    return Failure;
  }
  const QStringList aside = namesOfAside(*items);
  const QStringList all = sendableOf(*items);
  if (named.isEmpty() && aside.isEmpty()) printLine(QStringLiteral("nothing is set aside"));
  if (named.isEmpty() && all.size() < aside.size()) {
    printLine(QStringLiteral("%1 damaged, left set aside").arg(aside.size() - all.size()));
  }
  if (!requestRetries(config->spoolFolder, named.isEmpty() ? all : named, aside)) return Failure;
  if (!Spool::isServed(config->spoolFolder)) {
    printLine(QStringLiteral("velmora-link serve is not running; what waits is stored when it does"));
  }
  return Success;
}

}  // namespace bridge
