#include "clientsession.h"
#include "commandinterpreter.h"
#include "commandrunner.h"
#include "fuzz.h"
#include "fuzzunit.h"
#include "input.h"
#include "qmxcomm.h"
#include "reply.h"

#include <QCoreApplication>
#include <algorithm>
#include <cstddef>

namespace
{
/// A client without a network.
class Session : public ClientSession
{
public:
    using ClientSession::ClientSession;

    void take(const QByteArray &block, bool last)
    {
        receive(block.constData(), block.size(), last ? Final : Open);
        settle();
        require(queuedBytes() <= block.size() + MaxBlock);
    }
    bool rests() const { return isResting(); }
    QByteArray replies;

protected:
    void sendReplies(const char *bytes, int size) override
    {
        require(size > 0 && size <= ClientTurns::ReplyRoom && bytes[size - 1] == '.');
        replies.append(bytes, size);
    }
    void sendBlock(const char *bytes, int size) override { replies.append(bytes, size); }
    void onSettled() override {}
};

class Unit
{
public:
    Unit()
        : m_board(m_unit.pipe("/dev/ttymxc2"))
    {
        m_unit.write("/home/app/config/setup.ini",
                     "[system]\nport=24\n"); // beyond: the record stays as it is
        g_mxComm = new QMxComm(true, [](unsigned long) {});
        g_mxComm->MxShmRemove(); // it goes with this process, however that ends
        m_before = QByteArray(recordBytes(), sizeof(MxShm));
        m_turns.start();
    }

    /// The replies to a text, and the live map behind it.
    template <typename Talk>
    QByteArray outcome(const Talk &talk)
    {
        std::copy(m_before.cbegin(), m_before.cend(), recordBytes());
        const QByteArray replies = talk();
        const int beyond = offsetof(MxShm, map) + 48;
        require(QByteArray(recordBytes() + beyond, 2000) == m_before.mid(beyond, 2000));
        return replies + QByteArray(reinterpret_cast<const char *>(g_mxConfig->map), 48);
    }

    /// The text in blocks of so many bytes, each a text of its own when `last`.
    QByteArray inBlocks(const QByteArray &text, int size, bool last)
    {
        Session session(m_turns);
        for (int at = 0; at < text.size(); at += size) {
            session.take(text.mid(at, size), last);
            finish(session);
        }
        session.take({}, true);
        finish(session);
        return session.replies;
    }

    QByteArray board() const { return readAll(m_board); }

private:
    static char *recordBytes() { return reinterpret_cast<char *>(g_mxConfig); }

    void finish(const Session &session)
    {
        QTimerEvent round(0);
        for (int rounds = 0; !session.rests(); ++rounds) {
            require(rounds < 100000);
            QCoreApplication::sendEvent(&m_turns, &round);
        }
    }

    FuzzUnit m_unit;
    const int m_board;
    QByteArray m_before; ///< the record
    ClientTurns m_turns;
};

/// Line by line, as the text is one block.
QByteArray naively(QByteArray text)
{
    QByteArray replies;
    for (const char end : {'!', '$', '%', '\r', '\n'}) {
        text.replace(end, '.');
    }
    for (const QByteArray &line : text.split('.')) {
        if (!line.isEmpty()) {
            char reply[MxMaxReply];
            const CommandInterpreter command(line.constData(), line.constData() + line.size());
            replies.append(reply, writeReply(reply, runCommand(command, *g_mxComm), *g_mxConfig));
        }
    }
    return replies;
}
} // namespace

/// A block of TCP, in one piece and in others, or the same bytes as datagrams.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static int argc = 0;
    static const QCoreApplication application(argc, nullptr);
    static Unit unit;
    Input input(data, size);
    const int piece = 1 + input.number(1);
    const QByteArray text = input.rest();
    const QByteArray whole = unit.outcome([&] { return unit.inBlocks(text, qMax(1, text.size()), true); });
    if (text.startsWith("\xEB\x90")) {
        require(unit.board() == text && whole == unit.outcome([&] { return QByteArray(text); }));
        return 0;
    }
    require(whole == unit.outcome([&] { return naively(text); }));
    require(whole == unit.outcome([&] { return unit.inBlocks(text, 1, false); }));
    if (!text.contains('\xEB')) { // else a cut might make a block for the board
        require(whole == unit.outcome([&] { return unit.inBlocks(text, piece, false); }));
        const auto datagrams = [&] {
            QByteArray replies;
            for (int at = 0; at < text.size(); at += piece) {
                replies += naively(text.mid(at, piece));
            }
            return replies;
        };
        require(unit.outcome([&] { return unit.inBlocks(text, piece, true); }) == unit.outcome(datagrams));
    }
    return 0;
}
