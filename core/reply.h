#pragma once

#include "mxshm.h"

/// Results of `MxOnUartCommand` besides 1..`port`, which is the input that a query asked for.
enum MxResult {
    MxOk = 0,
    MxError = -1,
    MxTemperature = -2,
};

/// The answer to one command, as it goes on the wire: no line end and no NUL.
struct Reply {
    /// The longest is the answer to a query with every output of the largest matrix on one input.
    char text[8 + 4 * MxMaxPort];
    int size;
};

/// "OK.", "ERR." or, for an input number, the outputs that it feeds ("3x1&4."). Any thread; allocates
/// nothing.
Reply replyTo(int result, const MxShm &shm);

/// "temp=45.": whole degrees Celsius, from the sensor's millidegrees; nothing behind "=" when it cannot be
/// read.
Reply temperatureReply();
