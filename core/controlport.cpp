#include "controlport.h"

#include "commandrunner.h"
#include "matrixlink.h"
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

void ControlPort::poll()
{
    char bytes[4096];
    const auto count = ::read(m_port.get(), bytes, sizeof bytes);
    for (ssize_t i = 0; i < count; ++i) {
        feedText(bytes[i]);
        feedFrame(static_cast<quint8>(bytes[i]));
    }
}

void ControlPort::feedText(char byte)
{
    if (!m_lines.feed(byte)) {
        return;
    }
    const int result = m_interpreter(m_lines.line(), m_lines.length());
    char reply[MxMaxReply];
    send(reply, result == MxTemperature ? writeTemperatureReply(reply) : writeReply(reply, result, m_shm));
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
    const auto ignored = ::write(m_port.get(), bytes, static_cast<size_t>(size));
    Q_UNUSED(ignored)
    ::fsync(m_port.get());
}
