#include "fuzzunit.h"
#include "panel.h"
#include "repaint.h"

/// Another process writes the record while the front panel shows it and keys act on it.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Input input(data, size);
    MxShm &record = newRecord(2 + input.byte(), 10);
    record.keypad = 1;
    disturb(record, input);
    Panel panel;
    for (int action = 0; action < 50 && !input.isEmpty(); ++action) {
        switch (input.below(3)) {
        case 0:
            disturb(record, input);
            break;
        case 1: {
            const int key = input.below(128);
            panel.step(key, static_cast<char>(input.byte()));
            break;
        }
        case 2:
            for (int cycles = 2 * input.byte(); cycles >= 0; --cycles) {
                panel.step(0, '\0');
            }
        }
    }
    requireWholePicture();
    return 0;
}
