#pragma once

#include <QString>

namespace sim
{
/// How something ended that can fail. It is not dropped.
struct [[nodiscard]] Result {
    QString failure; ///< one line that says what failed; empty when all is well

    bool isDone() const { return failure.isEmpty(); }

    /// Takes the next step, unless this one failed. \return how that ended, or this failure
    template <class Step>
    Result then(Step step) const
    {
        return isDone() ? step() : *this;
    }
};

/// The failure of the call that has just set errno: `what` could not be done.
Result systemFailure(const QString &what);
} // namespace sim
