#include "displayport.h"

#include "framememory.h"
#include "gpio.h"
#include "keypad.h"
#include "lcdframe.h"
#include "mxsite.h"
#include "qmxcomm.h"
#include "uart.h"

#include <cstdio>
#include <fcntl.h>
#include <linux/spi/spidev.h>
#include <pthread.h>
#include <semaphore.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

int fd_keypad_dev = -1;
int fd_iruart_dev = -1;
std::atomic<int> run{1};

namespace
{
constexpr char SpiDevice[] = "/dev/spidev2.0";
constexpr char KeypadDevice[] = "/dev/ttymxc1";
constexpr char InfraredDevice[] = "/dev/ttymxc0";
constexpr int PanelBaud = 115200;

constexpr std::uint32_t speed = 1000000; ///< Hz
constexpr std::uint8_t bits = 8;         ///< per word
constexpr std::uint8_t mode = SPI_CPOL | SPI_CPHA | SPI_CS_HIGH;

/// An instruction takes the controller 72 us.
constexpr unsigned InstructionUs = 100;
constexpr std::uint32_t ResetMs = 10;

constexpr std::uint8_t ExtendedGraphic = 0x36; ///< extended instruction set, graphic display on
constexpr std::uint8_t NoScroll = 0x40;

int fd_spi_dev = -1;

/// Lets the thread that waits for it go on, once for each time that it was raised.
class Signal
{
public:
    Signal() { sem_init(&m_count, 0, 0); }
    void raise() { sem_post(&m_count); }
    void await() { sem_wait(&m_count); }

private:
    sem_t m_count;
};
Signal lcdSignal;

struct Thread {
    pthread_t handle;
    bool isRunning;

    bool start(void *(*entry)(void *))
    {
        isRunning = pthread_create(&handle, nullptr, entry, nullptr) == 0;
        return isRunning;
    }
    void join()
    {
        if (isRunning) {
            pthread_join(handle, nullptr);
        }
        isRunning = false;
    }
};
Thread tid_lcd{};
Thread tid_keypad{};

void closeDevice(int &fd)
{
    if (fd >= 0) {
        ::close(fd);
    }
    fd = -1;
}

bool reopen(int &fd, const char *device, int flags)
{
    closeDevice(fd);
    fd = ::open(MxSite::path(device).constData(), O_RDWR | O_CLOEXEC | flags);
    if (fd < 0) {
        std::printf("can't open file %s\n", device);
        std::fflush(stdout);
    }
    return fd >= 0;
}

bool openDevices()
{
    constexpr int SerialFlags = O_NOCTTY | O_NONBLOCK;
    return reopen(fd_spi_dev, SpiDevice, 0) && reopen(fd_keypad_dev, KeypadDevice, SerialFlags) &&
           reopen(fd_iruart_dev, InfraredDevice, SerialFlags);
}

void configureSpi()
{
    ::ioctl(fd_spi_dev, SPI_IOC_WR_MODE, &mode);
    ::ioctl(fd_spi_dev, SPI_IOC_WR_BITS_PER_WORD, &bits);
    ::ioctl(fd_spi_dev, SPI_IOC_WR_MAX_SPEED_HZ, &speed);
}

void joinThreads()
{
    run = 0;
    lcdSignal.raise();
    tid_lcd.join();
    tid_keypad.join();
}

bool startThread(Thread &thread, void *(*entry)(void *), const char *name)
{
    if (!thread.start(entry)) {
        std::printf("can't open create %s", name);
        std::fflush(stdout);
    }
    return thread.isRunning;
}

template <typename Bytes>
void transfer(const Bytes &bytes)
{
    spi_ioc_transfer segment{};
    segment.tx_buf = reinterpret_cast<std::uintptr_t>(bytes.data());
    segment.len = static_cast<std::uint32_t>(bytes.size());
    segment.speed_hz = speed;
    segment.bits_per_word = bits;
    segment.delay_usecs = InstructionUs;
    ::ioctl(fd_spi_dev, SPI_IOC_MESSAGE(1), &segment);
}

template <typename Bytes>
void instruct(const Bytes &bytes)
{
    transfer(bytes);
    ::usleep(InstructionUs);
}

void resetController()
{
    for (const int level : {0, 1}) {
        g_mxComm->MxGpioWrite(GpioLine::LcdReset, level);
        msleep(ResetMs);
    }
    instruct(LcdFrame::instruction(ExtendedGraphic));
    instruct(LcdFrame::instruction(NoScroll));
}

void setLight(int level)
{
    g_mxComm->MxGpioWrite(GpioLine::PanelLight, level);
    g_mxComm->MxGpioWrite(GpioLine::PanelLight2, level);
}

void *thread_lcd(void *)
{
    resetController();
    lcd_on();
    while (run) {
        // Lowered before the memory is read: what changes meanwhile raises it again.
        if (nLcdBufferChanged.exchange(0, std::memory_order_acquire)) {
            lcd_refresh();
        }
        lcdSignal.await();
    }
    return nullptr;
}
} // namespace

int LCD_GUI_Init()
{
    joinThreads();
    run = 1;
    if (!openDevices()) {
        return -1;
    }
    for (const int fd : {fd_keypad_dev, fd_iruart_dev}) {
        configureUart(fd, IGNPAR, PanelBaud);
    }
    configureSpi();
    const bool isUp = startThread(tid_lcd, thread_lcd, "thread_lcd") &&
                      startThread(tid_keypad, thread_keypad, "thread_keypad");
    return isUp ? 0 : -1;
}

void LCD_GUI_DeInit()
{
    joinThreads();
    closeDevice(fd_spi_dev);
}

void lcd_on()
{
    setLight(1);
}

void lcd_off()
{
    setLight(0);
}

void lcd_refresh()
{
    LcdFrame::Rows rows;
    LcdFrame::pack(pLcdBuffer, rows);
    for (int line = 0; line < LcdFrame::Lines; ++line) {
        instruct(LcdFrame::address(line));
        transfer(LcdFrame::data(rows, line));
    }
}

void lcd_drawn()
{
    if (nLcdBufferChanged) {
        lcdSignal.raise();
    }
}

void msleep(std::uint32_t ms)
{
    ::usleep(1000 * ms);
}
