#include "matrixlink.h"

#include "uart.h"

int MatrixLink::writeFlushed(const unsigned char *buf, int len) const
{
    if (!isOpen()) {
        return m_port.get();
    }
    const int written = writeUart(m_port.get(), buf, len);
    ::fsync(m_port.get());
    return written;
}

void MatrixLink::write(const void *buf, int len) const
{
    if (isOpen()) {
        writeUart(m_port.get(), buf, len);
    }
}

int MatrixLink::read(void *buf, int len) const
{
    return static_cast<int>(::read(m_port.get(), buf, static_cast<size_t>(len)));
}
