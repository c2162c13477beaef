#pragma once

class CommandInterpreter;
class QMxComm;

/// Carries out a parsed command, for every wire alike. Blocks the caller when `command.blocks()`. Any thread.
/// \return an `MxResult`, or the input that is asked for
int runCommand(const CommandInterpreter &command, QMxComm &device);
