#include "fuzz.h"
#include "fuzzunit.h"
#include "input.h"
#include "matrixlink.h"
#include "queuerelay.h"

#include <cstring>
#include <sys/msg.h>
#include <sys/socket.h>
#include <unistd.h>

namespace
{
class Queue
{
public:
    ~Queue() { ::msgctl(m_id, IPC_RMID, nullptr); }
    int id() const { return m_id; }
    int messages() const
    {
        msqid_ds facts{};
        require(::msgctl(m_id, IPC_STAT, &facts) == 0);
        return int(facts.msg_qnum);
    }
    bool send(long type, const QByteArray &text) const
    {
        const QByteArray message = QByteArray(reinterpret_cast<const char *>(&type), sizeof type) + text;
        return ::msgsnd(m_id, message.constData(), std::size_t(text.size()), IPC_NOWAIT) == 0;
    }

private:
    const int m_id = ::msgget(IPC_PRIVATE, 0600);
};

/// Of 512 bytes at most, as many as the count in front says and as there are.
QByteArray dataOf(const QByteArray &text)
{
    quint32 count = 0;
    std::memcpy(&count, text.constData(), std::size_t(qMin(4, text.size())));
    return text.size() < 4 ? QByteArray() : text.mid(4, int(qMin(count, 512U)));
}

struct Board {
    Board()
    {
        int ends[2];
        require(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0, ends) == 0);
        link.adopt(ends[0]);
        end = ends[1];
    }
    MatrixLink link;
    int end = -1;
};
} // namespace

/// Messages of another process, of any type, count and length, while the board answers.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const Board board;
    static const Queue requests;
    static const Queue replies;
    const QueueRelay relay(board.link, requests.id(), replies.id());
    Input input(data, size);
    QByteArray expected;
    int sent = 0;
    for (; !input.isEmpty(); ++sent) {
        const long type = 1 + input.number(2);
        const QByteArray text = input.bytes(input.number(2) % 700);
        if (!requests.send(type, text)) {
            break;
        }
        expected += dataOf(text);
    }
    require(::write(board.end, data, size) == ssize_t(size));
    QByteArray written;
    for (int left = sent; left > 0; left -= QueueRelay::MostPerStep) {
        require(requests.messages() == left);
        relay.step();
        written += readAll(board.end);
    }
    require(requests.messages() == 0 && replies.messages() == 0);
    require(written == expected);
    relay.step(); // takes the rest of what the board has answered
    return 0;
}
