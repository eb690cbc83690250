// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QCommandLineParser>
#include <QString>
#include <QStringList>
#include <optional>

#include "bridge/config/Config.h"

namespace bridge {

/// The program's exit codes.
enum ExitCode : int { Success = 0, Failure = 1, WrongUsage = 2, TimedOut = 3 };

// The commands. `arguments` begin with the program and the command. Each returns the exit code.

/// `velmora-link study`: finds a study and sends the link request for it.
int runStudy(const QStringList& arguments);
/// `velmora-link open`: the same for a velmora-link: address, as the desktop hands it over.
int runOpen(const QStringList& arguments);
/// `velmora-link serve`: stores the charts that come back, until it is told to end.
int runServe(const QStringList& arguments);
/// `velmora-link status`: lists what is waiting, stored and set aside.
int runStatus(const QStringList& arguments);
/// `velmora-link retry`: lets charts wait again that were set aside.
int runRetry(const QStringList& arguments);
/// `velmora-link check`: says what is wrong, in plain words.
int runCheck(const QStringList& arguments);
/// `velmora-link request`: sends one link request.
int runRequest(const QStringList& arguments);
/// `velmora-link receive`: writes the link replies that arrive into a folder.
int runReceive(const QStringList& arguments);

/// Writes one line to standard output and flushes it.
void printLine(const QString& line);
/// Writes "velmora-link: ..." to standard error.
void printError(const QString& message);

/// Parses the arguments of a command that takes at most `mostOperands` operands. Returns the exit code when
/// the program is to end here: after printing the help, or what is wrong with the arguments.
std::optional<int> parse(QCommandLineParser& parser, const QStringList& arguments, int mostOperands = 0);

/// The value of --application. When it is missing or wrong, says so and returns nothing.
std::optional<QString> applicationOption(const QCommandLineParser& parser);

/// Adds --config to the options of a command.
void addConfigOption(QCommandLineParser& parser);
/// The configuration that --config names, or the user's own. When it cannot be used, says why, line by line,
/// and returns nothing.
std::optional<Config> configOption(const QCommandLineParser& parser);
/// The path that --config names, or that of the user's own configuration.
QString configPathOption(const QCommandLineParser& parser);

}  // namespace bridge
