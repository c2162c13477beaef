#include "matrixlink.h"

#include <QtGlobal>

int MatrixLink::writeFlushed(const unsigned char *buf, int len) const
{
    if (m_port.get() <= 0) {
        return m_port.get();
    }
    const auto written = ::write(m_port.get(), buf, static_cast<size_t>(len));
    ::fsync(m_port.get());
    return static_cast<int>(written);
}

void MatrixLink::write(const void *buf, int len) const
{
    if (m_port.get() > 0) {
        const auto ignored = ::write(m_port.get(), buf, static_cast<size_t>(len));
        Q_UNUSED(ignored)
    }
}

int MatrixLink::read(void *buf, int len) const
{
    return static_cast<int>(::read(m_port.get(), buf, static_cast<size_t>(len)));
}
