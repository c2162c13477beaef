#pragma once

class CommandInterpreter;
class QMxComm;

/// Results of a command besides 1..`port`, which is the input that a query asked for.
enum MxResult {
    MxOk = 0,
    MxError = -1,
    MxTemperature = -2, ///< the temperature is asked for
};

/// Carries out a parsed command, for every wire alike. Blocks the caller when `command.blocks()`. Any thread.
/// \return an `MxResult`, or the input that is asked for
int runCommand(const CommandInterpreter &command, QMxComm &device);
