#pragma once

#include "history.h"
#include "wireevents.h"

#include <QtGlobal>
#include <cstddef>
#include <string>
#include <vector>

namespace sim
{
/// The hardware at the far end of a wire: it takes what the program writes there, and tells as events what
/// that means. Not for several threads at once. A copy is a snapshot: it is fed no further.
class FarEnd
{
public:
    virtual ~FarEnd() = default;

    /// Takes bytes off the wire, read at `nowUs`, in pieces of any size.
    virtual void feed(const quint8 *bytes, std::size_t size, qint64 nowUs) = 0;

    /// To be called regularly with a time at which everything that had arrived has been fed.
    virtual void idle(qint64 nowUs);

    /// What it has sent to the program since the last call.
    virtual std::string takeSent();

    /// The last 1000, oldest first.
    std::vector<WireFault> faults() const { return m_faults.items(); }

protected:
    /// The observer hears of each event at once, on the thread that feeds the far end.
    explicit FarEnd(WireObserver observer = {});
    FarEnd(const FarEnd &) = default;
    FarEnd &operator=(const FarEnd &) = default;

    void tell(const WireEvent &event) const;
    void fault(qint64 nowUs, const std::string &text);
    void send(const std::string &bytes);

private:
    WireObserver m_observer;
    History<WireFault> m_faults;
    std::string m_sent;
};
} // namespace sim
