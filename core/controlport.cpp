#include "controlport.h"

#include "matrixlink.h"
#include "mxresult.h"
#include "reply.h"
#include "uart.h"

#include <utility>

namespace
{
constexpr quint8 Acknowledgement[] = {0xEB, 0x90, 0x00, 0x07, 0x00, 0x00, 0x00};
}

ControlPort::ControlPort(const MxShm &shm, const MatrixLink &matrix, Interpreter interpreter)
    : m_shm(shm)
    , m_matrix(matrix)
    , m_interpreter(std::move(interpreter))
{
}

void ControlPort::open(const char *path, int baud)
{
    m_port.reset(openUart(path, baud));
}

void ControlPort::receive()
{
    if (m_next >= m_received) {
        m_next = 0;
        m_received = ::read(m_port.get(), m_bytes, sizeof m_bytes);
    }
}

bool ControlPort::runLine()
{
    while (m_next < m_received) {
        const char byte = m_bytes[m_next++];
        const bool ran = feedText(byte);
        feedFrame(static_cast<quint8>(byte));
        if (ran) {
            return true;
        }
    }
    return false;
}

bool ControlPort::feedText(char byte)
{
    if (!m_lines.feed(byte)) {
        return false;
    }
    const int result = m_interpreter(m_lines.line(), m_lines.length());
    char reply[MxMaxReply];
    send(reply, result == MxTemperature ? writeTemperatureReply(reply) : writeReply(reply, result, m_shm));
    return true;
}

void ControlPort::feedFrame(quint8 byte)
{
    if (m_frames.feed(byte)) {
        m_matrix.writeFlushed(m_frames.frame(), m_frames.frameSize());
        send(Acknowledgement, sizeof Acknowledgement);
    }
}

void ControlPort::send(const void *bytes, int size) const
{
    writeUart(m_port.get(), bytes, size);
    ::fsync(m_port.get());
}
