#include "lcd.h"

#include "framememory.h"
#include "gpio.h"
#include "lcdframe.h"
#include "paneldevice.h"
#include "panelrun.h"
#include "qmxcomm.h"

#include <initializer_list>
#include <linux/spi/spidev.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace
{
constexpr char SpiDevice[] = "/dev/spidev2.0";

constexpr std::uint32_t speed = 1000000; ///< Hz
constexpr std::uint8_t bits = 8;         ///< per word
constexpr std::uint8_t mode = SPI_CPOL | SPI_CPHA | SPI_CS_HIGH;

/// An instruction takes the controller 72 us.
constexpr unsigned InstructionUs = 100;
constexpr std::uint32_t ResetMs = 10;

constexpr std::uint8_t ExtendedGraphic = 0x36; ///< extended instruction set, graphic display on
constexpr std::uint8_t NoScroll = 0x40;

int fd_spi_dev = -1;

template <typename Bytes>
bool transfer(const Bytes &bytes)
{
    spi_ioc_transfer segment{};
    segment.tx_buf = reinterpret_cast<std::uintptr_t>(bytes.data());
    segment.len = static_cast<std::uint32_t>(bytes.size());
    segment.speed_hz = speed;
    segment.bits_per_word = bits;
    segment.delay_usecs = InstructionUs;
    return ::ioctl(fd_spi_dev, SPI_IOC_MESSAGE(1), &segment) >= 0;
}

template <typename Bytes>
bool instruct(const Bytes &bytes)
{
    const bool done = transfer(bytes);
    ::usleep(InstructionUs);
    return done;
}

void setLight(int level)
{
    g_mxComm->MxGpioWrite(GpioLine::PanelLight, level);
    g_mxComm->MxGpioWrite(GpioLine::PanelLight2, level);
}
} // namespace

bool lcd_open()
{
    return reopenDevice(fd_spi_dev, SpiDevice, 0);
}

void lcd_configure()
{
    ::ioctl(fd_spi_dev, SPI_IOC_WR_MODE, &mode);
    ::ioctl(fd_spi_dev, SPI_IOC_WR_BITS_PER_WORD, &bits);
    ::ioctl(fd_spi_dev, SPI_IOC_WR_MAX_SPEED_HZ, &speed);
}

void lcd_close()
{
    closeDevice(fd_spi_dev);
}

void lcd_setUp()
{
    for (const int level : {0, 1}) {
        g_mxComm->MxGpioWrite(GpioLine::LcdReset, level);
        msleep(ResetMs);
    }
    instruct(LcdFrame::instruction(ExtendedGraphic));
    instruct(LcdFrame::instruction(NoScroll));
}

bool lcd_refresh()
{
    LcdFrame::Rows rows;
    LcdFrame::pack(pLcdBuffer, rows);
    for (int line = 0; line < LcdFrame::Lines; ++line) {
        if (!instruct(LcdFrame::address(line)) || !transfer(LcdFrame::data(rows, line))) {
            return false;
        }
    }
    return true;
}

void lcd_on()
{
    setLight(1);
}

void lcd_off()
{
    setLight(0);
}
