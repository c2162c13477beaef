#include "fuzzunit.h"
#include "keypad.h"
#include "panel.h"
#include "repaint.h"

#include <unistd.h>

namespace
{
bool isRouted(const MxShm &record, int ports)
{
    bool holds = true;
    for (int output = 0; output < MxMaxPort; ++output) {
        const int input = record.map[output];
        holds = holds && (output < ports ? input < ports || input == MxNoInput : input == 0);
    }
    return holds;
}
} // namespace

/// What came over both wires before each cycle, in pairs of a byte of the key board and one of the remote.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const FuzzUnit unit;
    static const int wires[] = {fd_keypad_dev = unit.pipe("/dev/keys"),
                                fd_iruart_dev = unit.pipe("/dev/remote")};
    Input input(data, size);
    const int ports = MxMinPort + input.below(PanelMaxPort - MxMinPort + 1);
    MxShm &record = newRecord(ports, MxMinScene + input.below(MxMaxScene - MxMinScene + 1));
    record.keypad = input.below(3);
    Panel panel;
    while (!input.isEmpty()) {
        for (const int wire : wires) {
            require(::write(wire, input.bytes(1).append('\0').constData(), 1) == 1);
        }
        const int key = readKey();
        panel.step(key, readInfrared());
        require(key >= 0 && key <= 127 && isRouted(record, ports) && panel.keys.faults().empty());
    }
    requireWholePicture();
    return 0;
}
