#include "fuzz.h"
#include "input.h"
#include "reply.h"

#include <memory>
#include <string>

/// The answer about any map to any result of a command, in a buffer as small as it may be.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Input input(data, size);
    static const auto shm = std::make_unique<MxShm>();
    shm->port = input.number(4);
    const int ports = portCount(*shm);
    require(ports >= 2 && ports <= 160);
    const int result = input.number(1) % 2 == 0 ? input.number(1) : input.number(4);
    const QByteArray map = input.rest();
    const bool isInput = result >= 1 && result <= ports;
    const int shown = isInput ? result - 1 : MxNoInput;
    std::string answer = std::to_string(result) + "x";
    for (int o = 0; o < MxMaxPort; ++o) {
        // Often the input asked for: else the answers would be short.
        const int byte = o < map.size() ? static_cast<unsigned char>(map[o]) : o;
        shm->map[o] = static_cast<quint16>(byte % 2 == 0 ? shown : byte << 8 | byte);
        if (o < ports && shm->map[o] == shown) {
            answer += (answer.back() == 'x' ? "" : "&") + std::to_string(o + 1);
        }
    }
    if (!isInput) {
        answer = result == 0 ? "OK" : "ERR";
    }
    const std::unique_ptr<char[]> reply(new char[MxMaxReply]);
    const int written = writeReply(reply.get(), result, *shm);
    require(std::string(reply.get(), std::size_t(written)) == answer + ".");
    return 0;
}
