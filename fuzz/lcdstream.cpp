#include "gpiolines.h"
#include "lcdmodule.h"
#include "pieces.h"

namespace
{
/// What the LCD and the GPIO lines tell of the same bytes in pieces of at most `most` of them. What cannot be
/// a record is dropped with all that came with it: that ends it.
std::string told(Input input, int most)
{
    Told told;
    sim::LcdModule lcd(told.observer());
    sim::GpioLines gpio(told.observer());
    for (qint64 now = 0; !input.isEmpty(); ++now) {
        const int level = input.below(2);
        lcd.setResetLine(level, input.byte());
        const QByteArray bytes = input.bytes();
        feed(lcd, bytes, most, now);
        feed(gpio, bytes, most, now);
        const std::size_t noRecord = told.all.find("an SPI request of ");
        if (noRecord != std::string::npos) {
            return told.all.substr(0, told.all.find('\n', noRecord));
        }
    }
    for (int dot = 0; dot < sim::LcdModule::Width * sim::LcdModule::Height; ++dot) {
        told.all += lcd.isLit(dot % sim::LcdModule::Width, dot / sim::LcdModule::Width) ? '1' : '0';
    }
    return told.all + std::to_string(lcd.frameCount());
}
} // namespace

/// Records of the interposer, with edges of the reset line. However they are cut, they mean the same.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    requireSameInPieces({data, size}, told);
    return 0;
}
