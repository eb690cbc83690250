// SPDX-License-Identifier: LGPL-3.0-or-later
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <array>
#include <cstdio>

#include "base/log/Escape.h"
#include "bridge/cli/Commands.h"
#include "bridge/spool/Spool.h"

using namespace velmora;

namespace bridge {
namespace {

/// How many of each kind are shown unless all are asked for: the newest of those stored, and of the others
/// the oldest, which have waited longest.
constexpr qsizetype MostShown = 50;

struct Kind {
  SpoolState state;
  const char* title;
  const char* key;  ///< in JSON
};

constexpr std::array<Kind, 3> Kinds{{{SpoolState::Waiting, "waiting", "waiting"},
                                     {SpoolState::Stored, "stored", "stored"},
                                     {SpoolState::Aside, "set aside", "setAside"}}};

struct Selection {
  QList<SpoolItem> items;
  qsizetype leftOut = 0;
};

Selection select(const QList<SpoolItem>& all, SpoolState state, bool everything) {
  Selection selection;
  std::copy_if(all.begin(), all.end(), std::back_inserter(selection.items),
               [&](const SpoolItem& item) { return item.state == state; });
  if (everything || selection.items.size() <= MostShown) return selection;
  selection.leftOut = selection.items.size() - MostShown;
  selection.items =
      state == SpoolState::Stored ? selection.items.last(MostShown) : selection.items.first(MostShown);
  return selection;
}

QString shown(const QDateTime& time) {
  return time.isValid() ? time.toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"))
                        : QStringLiteral("an unknown time");
}

QString triesOf(int tries) {
  return tries == 1 ? QStringLiteral("tried once") : QStringLiteral("tried %1 times").arg(tries);
}

/// The lines about one reply, below its name.
QStringList detailsOf(const SpoolItem& item) {
  QStringList lines;
  if (!item.identifier.isEmpty()) lines.append(QStringLiteral("patient ") + item.identifier);
  if (!item.application.isEmpty()) lines.append(QStringLiteral("from ") + item.application);
  switch (item.state) {
    case SpoolState::Waiting:
      if (item.tries > 0) {
        lines.append(
            QStringLiteral("%1, last %2: %3").arg(triesOf(item.tries), shown(item.changed), item.reason));
      } else if (!item.reason.isEmpty()) {
        lines.append(item.reason);
      }
      break;
    case SpoolState::Stored:
      lines.append(QStringLiteral("stored %1 as %2").arg(shown(item.changed), item.sopInstanceUID));
      lines.append(QStringLiteral("in study ") + item.studyInstanceUID);
      break;
    case SpoolState::Aside:
      lines.append(QStringLiteral("set aside %1: %2").arg(shown(item.changed), item.reason));
      break;
  }
  return lines;
}

void print(const QList<SpoolItem>& items, bool served, bool everything) {
  printLine(served ? QStringLiteral("velmora-link serve is running")
                   : QStringLiteral("velmora-link serve is not running"));
  for (const Kind& kind : Kinds) {
    const Selection selection = select(items, kind.state, everything);
    printLine(QStringLiteral("%1: %2")
                  .arg(QLatin1String(kind.title))
                  .arg(selection.items.size() + selection.leftOut));
    for (const SpoolItem& item : selection.items) {
      printLine(QStringLiteral("  %1  arrived %2").arg(item.name, shown(item.arrival)));
      // What an application or an archive wrote can neither end the line nor command the terminal.
      const QStringList lines = detailsOf(item);
      for (const QString& line : lines) printLine(QStringLiteral("    ") + base::escaped(line));
    }
    if (selection.leftOut > 0) {
      printLine(QStringLiteral("  and %1 more; --all shows them").arg(selection.leftOut));
    }
  }
}

QJsonValue json(const QDateTime& time) {
  return time.isValid() ? QJsonValue(time.toUTC().toString(Qt::ISODateWithMs)) : QJsonValue();
}

QJsonObject json(const SpoolItem& item) {
  return {{QStringLiteral("name"), item.name},
          {QStringLiteral("arrived"), json(item.arrival)},
          {QStringLiteral("changed"), json(item.changed)},
          {QStringLiteral("application"), item.application},
          {QStringLiteral("identifier"), item.identifier},
          {QStringLiteral("sopInstanceUID"), item.sopInstanceUID},
          {QStringLiteral("studyInstanceUID"), item.studyInstanceUID},
          {QStringLiteral("tries"), item.tries},
          {QStringLiteral("reason"), item.reason}};
}

void printJson(const QList<SpoolItem>& items, bool served, bool everything) {
  QJsonObject all{{QStringLiteral("serving"), served}};
  for (const Kind& kind : Kinds) {
    const Selection selection = select(items, kind.state, everything);
    QJsonArray shownItems;
    for (const SpoolItem& item : selection.items) shownItems.append(json(item));
    all.insert(QLatin1String(kind.key),
               QJsonObject{{QStringLiteral("count"), selection.items.size() + selection.leftOut},
                           {QStringLiteral("items"), shownItems}});
  }
  // JSON is UTF-8, whatever the terminal's character set.
  std::fputs(QJsonDocument(all).toJson().constData(), stdout);
  std::fflush(stdout);
}

}  // namespace

int runStatus(const QStringList& arguments) {
  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral(
      "Lists the charts that wait for the archive, those that are stored in it, and those that\n"
      "are set aside because they can never be stored as they are."));
  parser.addPositionalArgument(QStringLiteral("status"), QStringLiteral("This command."));
  addConfigOption(parser);
  parser.addOption({QStringLiteral("json"), QStringLiteral("Print JSON, for other programs.")});
  parser.addOption({QStringLiteral("all"),
                    QStringLiteral("Everything; otherwise %1 of each kind at most.").arg(MostShown)});
  if (const auto end = parse(parser, arguments)) return *end;
  const auto config = configOption(parser);
  if (!config) return WrongUsage;

  const auto items = Spool::list(config->spoolFolder);
  if (!items) {
    printError(items.error());
    return Failure;
  }
  const bool served = Spool::isServed(config->spoolFolder);
  const bool everything = parser.isSet(QStringLiteral("all"));
  if (parser.isSet(QStringLiteral("json"))) {
    printJson(*items, served, everything);
  } else {
    print(*items, served, everything);
  }
  return Success;
}

}  // namespace bridge
