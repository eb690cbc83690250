// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QCommandLineParser>
#include <QString>
#include <QStringList>
#include <optional>

namespace bridge {

/// What the program ends with.
enum ExitCode : int { Success = 0, Failure = 1, WrongUsage = 2, TimedOut = 3 };

/// `velmora-link request`: sends one link request. `arguments` begin with the program and the subcommand.
int runRequest(const QStringList& arguments);
/// `velmora-link receive`: writes the link replies that arrive into a folder.
int runReceive(const QStringList& arguments);

/// Writes one line and makes sure that it has left the program.
void printLine(const QString& line);
/// Writes "velmora-link: ..." on standard error.
void printError(const QString& message);

/// Reads the arguments of a subcommand. When the program is to end here (help was asked for, or the arguments
/// are wrong and that has been said), answers with what.
std::optional<int> parse(QCommandLineParser& parser, const QStringList& arguments);

/// The value of a bundle identifier option; nothing when it is missing or wrong, which has then been said.
std::optional<QString> applicationOption(const QCommandLineParser& parser);

}  // namespace bridge
