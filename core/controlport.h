#pragma once

#include "filedescriptor.h"
#include "framedecoder.h"
#include "lineassembler.h"

#include <functional>
#include <sys/types.h>

class MatrixLink;
struct MxShm;

/// One serial control port: text commands and, on the same bytes, binary frames for the board. Used on the
/// control thread, except for `open`, which comes before.
class ControlPort
{
public:
    /// Carries out one command line; its result is the one of `MxOnUartCommand`.
    using Interpreter = std::function<int(char *line, quint16 length)>;

    ControlPort(const MxShm &shm, const MatrixLink &matrix, Interpreter interpreter);

    /// Opens the device `path` at `baud`; a port that does not open stays silent.
    void open(const char *path, int baud);

    /// Reads at most 4096 bytes, unless some of those read before still wait. Never waits.
    void receive();
    /// Feeds what was received, each byte first as text and then as part of a frame, up to the end of one
    /// line; what is behind it waits for the next call. \return whether a line was carried out
    bool runLine();

    /// Feeds one byte of text; a complete line is carried out and answered on this port. \return whether it
    /// was complete
    bool feedText(char byte);
    /// Feeds one byte of a binary frame; a good one goes to the board and is acknowledged on this port.
    void feedFrame(quint8 byte);

private:
    void send(const void *bytes, int size) const;

    const MxShm &m_shm;
    const MatrixLink &m_matrix;
    const Interpreter m_interpreter;
    FileDescriptor m_port;
    LineAssembler m_lines;
    FrameDecoder m_frames;
    char m_bytes[4096];
    ssize_t m_received = 0; ///< how many of `m_bytes`
    ssize_t m_next = 0;     ///< the first that was not fed
};
