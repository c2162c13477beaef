#pragma once

#include <QByteArray>

/// How an access to a file ended. Callers do not drop it: one that has nothing to decide reports it.
struct [[nodiscard]] FileResult {
    enum Outcome {
        Done,
        Missing, ///< there is no such file; of reading only
        Short,   ///< the file ended before the buffer was full; of reading only
        Failed
    };

    Outcome outcome;
    int count; ///< bytes read or written; negative when the file was not even opened, read or written
    QByteArray failure; ///< what failed, with file and reason; empty for the other outcomes

    /// Says a failure in one line on standard output; nothing for the other outcomes. Any thread.
    void report() const;
};

/// The failure of the call that has just set errno: it could not `what` ("read", "write") the file `path`.
FileResult fileFailure(const char *what, const char *path, int count = -1);
