#pragma once

#include <QStringList>

/// What the command line asks of the program besides running the unit.
namespace CommandLine
{
/// Answers `--version` and `--help` on standard output. Needs no application object, touches nothing.
/// \return whether one of them was given, and the program is to end
bool answered(int argc, char **argv);

/// Names, on standard error, the first argument that neither Qt nor the program knows; `arguments` is what Qt
/// has left, the program's own name first. \return whether there is one
bool isWrong(const QStringList &arguments);
} // namespace CommandLine
