// SPDX-License-Identifier: LGPL-3.0-or-later
//
// velmora-link: the viewer's end of the link with the applications.

#include <QCoreApplication>
#include <array>
#include <cstdio>

#include "bridge/cli/Commands.h"
#include "link/protocol/BundleIdentifier.h"

namespace bridge {

void printLine(const QString& line) {
  std::fputs((line + QLatin1Char('\n')).toLocal8Bit().constData(), stdout);
  std::fflush(stdout);
}

void printError(const QString& message) {
  std::fputs((QStringLiteral("velmora-link: ") + message + QLatin1Char('\n')).toLocal8Bit().constData(),
             stderr);
}

std::optional<int> parse(QCommandLineParser& parser, const QStringList& arguments, int mostOperands) {
  const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                QStringLiteral("Shows this help."));
  parser.addOption(help);
  if (!parser.parse(arguments)) {
    printError(parser.errorText());
    return WrongUsage;
  }
  if (parser.isSet(help)) {
    // The command comes first; Qt, which does not know commands, would put the options before it.
    const QString command = arguments.value(1);
    const QString text = parser.helpText().replace(QStringLiteral(" [options] ") + command,
                                                   QLatin1Char(' ') + command + QStringLiteral(" [options]"));
    std::fputs(text.toLocal8Bit().constData(), stdout);
    return Success;
  }
  if (parser.positionalArguments().size() > 1 + mostOperands) {
    printError(QStringLiteral("unexpected argument: ") + parser.positionalArguments().at(1 + mostOperands));
    return WrongUsage;
  }
  return std::nullopt;
}

std::optional<QString> applicationOption(const QCommandLineParser& parser) {
  const QString application = parser.value(QStringLiteral("application"));
  if (velmora::link::isBundleIdentifier(application)) return application;
  printError(application.isEmpty()
                 ? QStringLiteral("--application is missing")
                 : QStringLiteral("--application: \"%1\" is not a bundle identifier").arg(application));
  return std::nullopt;
}

void addConfigOption(QCommandLineParser& parser) {
  parser.addOption(
      {QStringLiteral("config"),
       QStringLiteral(
           "The configuration file. Otherwise velmora-link/velmora-link.conf in $XDG_CONFIG_HOME."),
       QStringLiteral("file")});
}

QString configPathOption(const QCommandLineParser& parser) {
  return parser.isSet(QStringLiteral("config")) ? parser.value(QStringLiteral("config")) : configPath();
}

std::optional<Config> configOption(const QCommandLineParser& parser) {
  const auto config = readConfig(configPathOption(parser));
  if (config.ok()) return *config;
  const QStringList errors = config.error().split(QLatin1Char('\n'));
  for (const QString& error : errors) printError(error);
  return std::nullopt;
}

}  // namespace bridge

namespace {

const char* const Usage =
    "Usage: velmora-link <command> [options]\n"
    "\n"
    "The viewer's end of the link: hands a study to a measurement application, and\n"
    "stores the charts that come back in the archive that the study is in.\n"
    "\n"
    "Commands:\n"
    "  study     find a study in the archive or in a file, and send it to an application\n"
    "  open      the same for a velmora-link: address\n"
    "  serve     store the charts that come back, for as long as it runs\n"
    "  status    list what is waiting, stored and set aside\n"
    "  retry     try again what was set aside\n"
    "  check     find out what is wrong\n"
    "  request   send a study, described by hand, to an application\n"
    "  receive   write the charts that an application sends into a folder\n"
    "\n"
    "\"velmora-link <command> --help\" tells the options of a command.\n"
    "\n"
    "Exit status: 0 done, 1 it failed, 2 the arguments or the configuration are\n"
    "wrong, 3 time ran out.\n";

struct Command {
  const char* name;
  int (*run)(const QStringList&);
};

constexpr std::array<Command, 8> Commands{{{"study", bridge::runStudy},
                                           {"open", bridge::runOpen},
                                           {"serve", bridge::runServe},
                                           {"status", bridge::runStatus},
                                           {"retry", bridge::runRetry},
                                           {"check", bridge::runCheck},
                                           {"request", bridge::runRequest},
                                           {"receive", bridge::runReceive}}};

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  QCoreApplication::setApplicationName(QStringLiteral("velmora-link"));
  const QStringList arguments = QCoreApplication::arguments();
  const QString command = arguments.value(1);
  for (const Command& each : Commands) {
    if (command == QLatin1String(each.name)) return each.run(arguments);
  }
  if (command == QLatin1String("--help") || command == QLatin1String("-h")) {
    std::fputs(Usage, stdout);
    return bridge::Success;
  }
  bridge::printError(command.isEmpty() ? QStringLiteral("no command")
                                       : QStringLiteral("unknown command: ") + command);
  std::fputs(Usage, stderr);
  return bridge::WrongUsage;
}
