#include "controlport.h"
#include "fuzz.h"
#include "fuzzunit.h"
#include "input.h"
#include "matrixlink.h"
#include "mxresult.h"
#include "mxshm.h"
#include "uart.h"

#include <cstring>
#include <map>
#include <memory>
#include <unistd.h>

namespace
{
constexpr char Device[] = "/dev/ttymxc3";
constexpr char Board[] = "/dev/ttymxc2";

/// What comes of a stream of bytes.
struct Outcome {
    QByteArray lines;
    QByteArray board;
    QByteArray replies;

    bool operator==(const Outcome &other) const
    {
        return lines == other.lines && board == other.board && replies == other.replies;
    }
};

/// Any rule that lets the replies tell which line it was.
int resultOf(const QByteArray &line)
{
    return line.size() % 2 == 0 ? MxOk : MxError;
}

/// Looks at the whole stream at once, first for lines and then for frames.
Outcome naively(const QByteArray &bytes)
{
    Outcome outcome;
    std::map<int, QByteArray> replies; // by their places
    int begin = 0;
    for (int at = 0; at < bytes.size(); ++at) {
        if (std::strchr("!.$%\r", bytes[at]) != nullptr && bytes[at] != '\0') {
            const QByteArray line = bytes.mid(begin, at - begin).right((at - begin) % 4096);
            outcome.lines += line + '\n';
            replies[at] = resultOf(line) == MxOk ? "OK." : "ERR.";
            begin = at + 1;
        }
    }
    int at = 0;
    while ((at = bytes.indexOf('\xEB', at)) >= 0 && at + 3 < bytes.size()) {
        const auto byte = [&](int offset) { return static_cast<unsigned char>(bytes[at + offset]); };
        const int length = byte(2) << 8 | byte(3);
        const int taken = byte(1) != 0x90 ? 2 : length > 4096 ? 4 : qMax(5, length);
        if (taken >= 5 && at + taken <= bytes.size() && length > 0 && byte(length - 1) == 0) {
            outcome.board += bytes.mid(at, length);
            replies[at + taken - 1] += QByteArray::fromHex("EB900007000000");
        }
        at += taken;
    }
    for (const auto &reply : replies) {
        outcome.replies += reply.second;
    }
    return outcome;
}

/// A control port with pipes on its far ends.
class Wire
{
public:
    Wire()
        : m_device(m_unit.pipe(Device))
        , m_boardEnd(m_unit.pipe(Board))
    {
        m_matrix.adopt(openUart(Board, 115200));
    }

    /// The stream as the port reads it, in pieces of so many bytes each; 0: byte by byte without reading.
    Outcome feed(const QByteArray &bytes, int piece)
    {
        Outcome outcome;
        ControlPort port(*m_shm, m_matrix, [&](char *line, quint16 length) {
            require(line[length] == '\0');
            outcome.lines += QByteArray(line, length) + '\n';
            return resultOf(QByteArray(line, length));
        });
        port.open(Device, 115200);
        const auto take = [&] {
            outcome.replies += readAll(m_device);
            outcome.board += readAll(m_boardEnd);
        };
        for (int at = 0; piece > 0 && at < bytes.size(); at += piece) {
            require(::write(m_device, bytes.constData() + at, size_t(qMin(piece, bytes.size() - at))) > 0);
            port.receive();
            while (port.runLine()) {
                take();
            }
            take();
        }
        for (int at = 0; piece == 0 && at < bytes.size(); ++at) {
            port.feedText(bytes[at]);
            port.feedFrame(static_cast<quint8>(bytes[at]));
        }
        take();
        return outcome;
    }

private:
    FuzzUnit m_unit;
    const std::unique_ptr<MxShm> m_shm = std::make_unique<MxShm>();
    const int m_device;
    const int m_boardEnd;
    MatrixLink m_matrix;
};
} // namespace

/// Text and frames on a serial control port: the same comes of them however they are cut.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static Wire wire;
    Input input(data, size);
    const int piece = 1 + input.number(1) * 16;
    const QByteArray bytes = input.bytes(12000); // the pipes hold what comes of them
    const Outcome expected = naively(bytes);
    require(wire.feed(bytes, 0) == expected);
    require(wire.feed(bytes, 4096) == expected);
    require(wire.feed(bytes, qMax(piece, bytes.size() / 16)) == expected);
    return 0;
}
