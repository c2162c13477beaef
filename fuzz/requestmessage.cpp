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
struct Queue {
    ~Queue() { ::msgctl(id, IPC_RMID, nullptr); }
    bool isEmpty() const
    {
        msqid_ds facts{};
        require(::msgctl(id, IPC_STAT, &facts) == 0);
        return facts.msg_qnum == 0;
    }
    const int id = ::msgget(IPC_PRIVATE, 0600);
};

/// Of 512 bytes at most, as many as the count in front says and as there are.
QByteArray dataOf(const QByteArray &text)
{
    quint32 count = 0;
    std::memcpy(&count, text.constData(), std::size_t(qMin(4, text.size())));
    return text.size() < 4 ? QByteArray() : text.mid(4, int(qMin(count, 512U)));
}

int farEndOf(MatrixLink &board)
{
    int ends[2];
    require(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0, ends) == 0);
    board.adopt(ends[0]);
    return ends[1];
}
} // namespace

/// Messages of another process, of any type, count and length, while the board answers.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static MatrixLink board;
    static const int wire = farEndOf(board);
    static const Queue requests;
    static const Queue replies;
    const QueueRelay relay(board, requests.id, replies.id);
    Input input(data, size);
    QByteArray expected;
    for (bool isSent = true; isSent && !input.isEmpty();) {
        const long type = 1 + input.number(2);
        const QByteArray text = input.bytes(input.number(2) % 700);
        const QByteArray message = QByteArray(reinterpret_cast<const char *>(&type), sizeof type) + text;
        isSent = ::msgsnd(requests.id, message.constData(), std::size_t(text.size()), IPC_NOWAIT) == 0;
        expected += isSent ? dataOf(text) : QByteArray();
    }
    require(::write(wire, data, size) == ssize_t(size));
    QByteArray written;
    do {
        relay.step();
        written += readAll(wire);
    } while (!requests.isEmpty());
    require(written == expected && replies.isEmpty());
    relay.step(); // takes the rest of what the board has answered
    return 0;
}
