#include "startbitmap.h"

#include "filedescriptor.h"
#include "lcdsize.h"
#include "mxsite.h"

#include <algorithm>
#include <fcntl.h>
#include <vector>

namespace
{
constexpr size_t FrameWidth = 1024; ///< of the touchscreen, 16 bits a dot

constexpr GUI_Color Palette[] = {GUI_WHITE, GUI_BLACK};
std::uint8_t dots[LCD_YSIZE][LCD_XSIZE];

/// The frame's upper rows; white where it cannot be read.
std::vector<std::uint16_t> readFrame()
{
    std::vector<std::uint16_t> frame(FrameWidth * LCD_YSIZE, 0xFFFF);
    const FileDescriptor device(::open(MxSite::path("/dev/fb0").constData(), O_RDONLY | O_CLOEXEC));
    if (device.get() >= 0 && ::read(device.get(), frame.data(), frame.size() * sizeof frame[0]) < 0) {
        std::fill(frame.begin(), frame.end(), std::uint16_t(0xFFFF));
    }
    return frame;
}
} // namespace

const GUI_Bitmap bmbmp_startup = {LCD_XSIZE, LCD_YSIZE, LCD_XSIZE, 8, dots[0], Palette, 2};

void loadStartBitmap()
{
    const std::vector<std::uint16_t> frame = readFrame();
    for (size_t y = 0; y < bmbmp_startup.height; ++y) {
        for (size_t x = 0; x < bmbmp_startup.width; ++x) {
            dots[y][x] = frame[y * FrameWidth + x] == 0 ? 1 : 0;
        }
    }
}
