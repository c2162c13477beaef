#pragma once

/// Results of a command besides 1..`port`, which is the input that a query asked for.
enum MxResult {
    MxOk = 0,
    MxError = -1,
    MxTemperature = -2, ///< the temperature is asked for
};
