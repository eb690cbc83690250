// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QCommandLineParser>
#include <QString>
#include <QStringList>
#include <optional>

#include "bridge/config/Config.h"

namespace bridge {

/// What the program ends with.
enum ExitCode : int { Success = 0, Failure = 1, WrongUsage = 2, TimedOut = 3 };

// The commands. `arguments` begin with the program and the command; each returns what the program ends with.

/// `velmora-link study`: finds a study and sends the link request for it.
int runStudy(const QStringList& arguments);
/// `velmora-link open`: the same for a velmora-link: address, as the desktop hands it over.
int runOpen(const QStringList& arguments);
/// `velmora-link serve`: stores the charts that come back, until it is told to end.
int runServe(const QStringList& arguments);
/// `velmora-link status`: what is waiting, stored and set aside.
int runStatus(const QStringList& arguments);
/// `velmora-link retry`: what was set aside waits again.
int runRetry(const QStringList& arguments);
/// `velmora-link check`: what is wrong, in plain words.
int runCheck(const QStringList& arguments);
/// `velmora-link request`: sends one link request.
int runRequest(const QStringList& arguments);
/// `velmora-link receive`: writes the link replies that arrive into a folder.
int runReceive(const QStringList& arguments);

/// Writes one line and makes sure that it has left the program.
void printLine(const QString& line);
/// Writes "velmora-link: ..." on standard error.
void printError(const QString& message);

/// Reads the arguments of a command, which may be followed by at most so many operands. When the program is
/// to end here (help was asked for, or the arguments are wrong and that has been said), answers with what.
std::optional<int> parse(QCommandLineParser& parser, const QStringList& arguments, int mostOperands = 0);

/// The value of a bundle identifier option; nothing when it is missing or wrong, which has then been said.
std::optional<QString> applicationOption(const QCommandLineParser& parser);

/// Adds --config to the options of a command.
void addConfigOption(QCommandLineParser& parser);
/// The configuration that --config names, or the user's own; nothing when it cannot be used, which has then
/// been said line by line.
std::optional<Config> configOption(const QCommandLineParser& parser);
/// The path of the configuration that --config names, or of the user's own.
QString configPathOption(const QCommandLineParser& parser);

}  // namespace bridge
