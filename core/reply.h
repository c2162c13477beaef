#pragma once

#include "mxshm.h"

/// Bytes of the longest reply: the answer to a query with every output of the largest matrix on one input.
constexpr int MxMaxReply = 8 + 4 * MxMaxPort;

/// Writes the answer to one command to `to`, which has room for `MxMaxReply` bytes: "OK.", "ERR." or, for an
/// input number, the outputs that it feeds ("3x1&4."); no line end and no NUL. `result` is the one of
/// `runCommand`. Any thread; allocates nothing. \return bytes written
int writeReply(char *to, int result, const MxShm &shm);

/// The same for the temperature: "temp=45.", in whole degrees Celsius from the sensor's millidegrees; nothing
/// behind "=" when it cannot be read.
int writeTemperatureReply(char *to);
