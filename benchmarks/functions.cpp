// Nanoseconds of the functions that every byte and every command goes through, and the allocations that they
// make.

#include "allocations.h"
#include "commandinterpreter.h"
#include "commandtext.h"
#include "framedecoder.h"
#include "lineassembler.h"
#include "matrixframes.h"
#include "reply.h"
#include "routing.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace
{
/// Runs `work` in the benchmark's loop and reports its allocations.
template <typename Work>
void measure(benchmark::State &state, Work work)
{
    const unsigned long before = allocationCount();
    for (auto _ : state) {
        work();
    }
    const unsigned long made = allocationCount() - before;
    state.counters["allocations"] = static_cast<double>(made) / static_cast<double>(state.iterations());
}

void interpreterLine(benchmark::State &state, const char *text)
{
    const int length = static_cast<int>(std::strlen(text));
    measure(state, [&] {
        benchmark::DoNotOptimize(text);
        const CommandInterpreter command(text, text + length);
        benchmark::DoNotOptimize(command.command());
    });
}

/// A block of commands as the network wires carry it out, but for the sockets.
void blockOfRoutes(benchmark::State &state)
{
    constexpr int Commands = 1000;
    std::string text;
    for (int i = 0; i < Commands; ++i) {
        text += "3x1&4.";
    }
    const auto shm = std::make_unique<MxShm>();
    shm->port = 16;
    std::vector<char> replies(3 * Commands + MxMaxReply);
    measure(state, [&] {
        int used = 0;
        const char *const end = text.data() + text.size();
        for (const char *at = text.data(); at != end; ++at) {
            const CommandInterpreter command(at, end, CommandText::NetworkEnd);
            at = command.end();
            Routing::oneToSome(*shm, command.input(), command.outputs(), command.outputCount());
            used += writeReply(replies.data() + used, 0, *shm);
        }
        benchmark::DoNotOptimize(replies.data());
    });
    state.SetItemsProcessed(state.iterations() * Commands);
}

/// One byte of a stream that is fed round and round.
template <typename Decoder>
void feedBytes(benchmark::State &state, Decoder &decoder, const char *stream, size_t size)
{
    size_t next = 0;
    measure(state, [&] {
        benchmark::DoNotOptimize(decoder.feed(stream[next]));
        next = next + 1 < size ? next + 1 : 0;
    });
}

void assemblerByte(benchmark::State &state, const char *stream, size_t size)
{
    LineAssembler assembler;
    feedBytes(state, assembler, stream, size);
}

void decoderByte(benchmark::State &state, const char *stream, size_t size)
{
    struct {
        FrameDecoder frames;
        bool feed(char byte) { return frames.feed(static_cast<quint8>(byte)); }
    } decoder;
    feedBytes(state, decoder, stream, size);
}

void switchFrame(benchmark::State &state)
{
    quint16 inputs[MxMaxPort];
    for (int o = 0; o < MxMaxPort; ++o) {
        inputs[o] = static_cast<quint16>(o * 411);
    }
    measure(state, [&] {
        const SwitchFrame frame(inputs, MxMaxPort);
        benchmark::DoNotOptimize(frame.bytes()[0]);
        benchmark::ClobberMemory();
    });
}

/// The same frame by the C library, as the peer.
void switchFrameByPrintf(benchmark::State &state)
{
    char text[700];
    measure(state, [&] {
        int size = std::snprintf(text, sizeof text, "F00C0000");
        for (unsigned o = 0; o < MxMaxPort; ++o) {
            size += std::snprintf(text + size, sizeof text - static_cast<size_t>(size), "%04X",
                                  (o * 411) & 0xFFFF);
        }
        std::snprintf(text + size, sizeof text - static_cast<size_t>(size), "\r\n");
        benchmark::ClobberMemory();
    });
}

void longestReply(benchmark::State &state)
{
    const auto shm = std::make_unique<MxShm>();
    shm->port = MxMaxPort;
    char reply[MxMaxReply];
    measure(state, [&] {
        benchmark::DoNotOptimize(writeReply(reply, 1, *shm));
        benchmark::ClobberMemory();
    });
}

constexpr char Text[] = "3x1&4.12x7&8&9.7all.2?.save3.";
constexpr char Frame[] = "\xEB\x90\x00\x10"
                         "ABCDEFGHIJK";

BENCHMARK_CAPTURE(interpreterLine, route, "3x1&4");
BENCHMARK_CAPTURE(interpreterLine, route_eight_outputs, "12x1&2&3&4&5&6&7&8");
BENCHMARK_CAPTURE(interpreterLine, query, "12?");
BENCHMARK(blockOfRoutes);
BENCHMARK_CAPTURE(assemblerByte, text, Text, sizeof Text - 1);
BENCHMARK_CAPTURE(decoderByte, frames, Frame, sizeof Frame);
BENCHMARK_CAPTURE(decoderByte, text, Text, sizeof Text - 1);
BENCHMARK(switchFrame);
BENCHMARK(switchFrameByPrintf);
BENCHMARK(longestReply);
} // namespace

BENCHMARK_MAIN();
