// SPDX-License-Identifier: LGPL-3.0-or-later
//
// velmora-link: the viewer's end of the link with the applications.

#include <QCoreApplication>
#include <cstdio>

#include "bridge/Commands.h"
#include "bridge/LinkRequest.h"

namespace bridge {

void printLine(const QString& line) {
  std::fputs((line + QLatin1Char('\n')).toLocal8Bit().constData(), stdout);
  std::fflush(stdout);
}

void printError(const QString& message) {
  std::fputs((QStringLiteral("velmora-link: ") + message + QLatin1Char('\n')).toLocal8Bit().constData(),
             stderr);
}

std::optional<int> parse(QCommandLineParser& parser, const QStringList& arguments) {
  const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                QStringLiteral("Shows this help."));
  parser.addOption(help);
  if (!parser.parse(arguments)) {
    printError(parser.errorText());
    return WrongUsage;
  }
  if (parser.isSet(help)) {
    std::fputs(parser.helpText().toLocal8Bit().constData(), stdout);
    return Success;
  }
  if (parser.positionalArguments().size() > 1) {
    printError(QStringLiteral("unexpected argument: ") + parser.positionalArguments().at(1));
    return WrongUsage;
  }
  return std::nullopt;
}

std::optional<QString> applicationOption(const QCommandLineParser& parser) {
  const QString application = parser.value(QStringLiteral("application"));
  if (isBundleIdentifier(application)) return application;
  printError(application.isEmpty()
                 ? QStringLiteral("--application is missing")
                 : QStringLiteral("--application: \"%1\" is not a bundle identifier").arg(application));
  return std::nullopt;
}

}  // namespace bridge

namespace {

const char* const Usage =
    "Usage: velmora-link <command> [options]\n"
    "\n"
    "The viewer's end of the link: hands a study to a measurement application, and\n"
    "receives the charts that the application sends back.\n"
    "\n"
    "Commands:\n"
    "  request   send a study to an application\n"
    "  receive   write the charts that an application sends into a folder\n"
    "\n"
    "\"velmora-link <command> --help\" tells the options of a command.\n"
    "\n"
    "Exit status: 0 done, 1 it failed, 2 the arguments are wrong, 3 time ran out.\n";

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  QCoreApplication::setApplicationName(QStringLiteral("velmora-link"));
  const QStringList arguments = QCoreApplication::arguments();
  const QString command = arguments.value(1);
  if (command == QLatin1String("request")) return bridge::runRequest(arguments);
  if (command == QLatin1String("receive")) return bridge::runReceive(arguments);
  if (command == QLatin1String("--help") || command == QLatin1String("-h")) {
    std::fputs(Usage, stdout);
    return bridge::Success;
  }
  bridge::printError(command.isEmpty() ? QStringLiteral("no command")
                                       : QStringLiteral("unknown command: ") + command);
  std::fputs(Usage, stderr);
  return bridge::WrongUsage;
}
