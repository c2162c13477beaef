#include "bareunit.h"
#include "keypad.h"
#include "panel.h"
#include "repaint.h"

#include <fcntl.h>
#include <unistd.h>

namespace
{
/// A wire to the panel's reader.
struct Wire {
    explicit Wire(int &reader)
    {
        int ends[2];
        require(::pipe2(ends, O_NONBLOCK | O_CLOEXEC) == 0);
        reader = ends[0];
        m_writer = ends[1];
    }
    void put(int byte) const
    {
        const auto sent = static_cast<char>(byte);
        require(::write(m_writer, &sent, 1) == 1);
    }

private:
    int m_writer = -1;
};

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
    static const Wire keyBoard(fd_keypad_dev);
    static const Wire remote(fd_iruart_dev);
    Input input(data, size);
    const int ports = MxMinPort + input.below(PanelMaxPort - MxMinPort + 1);
    MxShm &record = newRecord(ports, MxMinScene + input.below(MxMaxScene - MxMinScene + 1));
    record.keypad = input.below(3);
    Panel panel;
    while (!input.isEmpty()) {
        keyBoard.put(input.byte());
        remote.put(input.byte());
        const int key = readKey();
        panel.step(key, readInfrared());
        require(key >= 0 && key <= 127 && isRouted(record, ports) && panel.keys.faults().empty());
    }
    requireWholePicture();
    for (int field = 0; field < SetupFields; ++field) {
        char text[64];
        require(EDIT_GetText(setupField(field), text, sizeof text) <= SetupFieldChars);
    }
    return 0;
}
