#include "farend.h"

#include <utility>

namespace sim
{
FarEnd::FarEnd(WireObserver observer)
    : m_observer(std::move(observer))
{
}

void FarEnd::idle(qint64) {}

std::string FarEnd::takeSent()
{
    return std::exchange(m_sent, {});
}

void FarEnd::tell(const WireEvent &event) const
{
    if (m_observer) {
        m_observer(event);
    }
}

void FarEnd::fault(qint64 nowUs, const std::string &text)
{
    const WireFault fault{nowUs, text};
    tell(fault);
    m_faults.add(fault);
}

void FarEnd::send(const std::string &bytes)
{
    m_sent += bytes;
}
} // namespace sim
