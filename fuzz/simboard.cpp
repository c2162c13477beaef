#include "keypanel.h"
#include "pieces.h"
#include "switchingboard.h"

namespace
{
/// What the board and the panel of keys tell of the same bytes in pieces of at most `most` of them.
std::string told(Input input, int most)
{
    Told told;
    const int ports = 2 + input.below(159);
    sim::SwitchingBoard board(ports, told.observer());
    sim::KeyPanel keys(told.observer());
    for (qint64 now = 0; !input.isEmpty(); now += 1000 * input.word()) {
        board.idle(now);
        const QByteArray bytes = input.bytes();
        feed(board, bytes, most, now);
        feed(keys, bytes, most, now);
        require(board.routing().size() == std::size_t(ports));
    }
    for (int key = 0; key < 128; ++key) {
        told.all += keys.isLit(key) ? '1' : '0';
    }
    return told.all;
}
} // namespace

/// Bytes of the switching board's wire, with pauses. However they are cut, they mean the same.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    requireSameInPieces({data, size}, told);
    return 0;
}
