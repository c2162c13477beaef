#include "matrixsender.h"

#include "gpio.h"
#include "matrixframes.h"
#include "matrixlink.h"
#include "scenestore.h"
#include "tickcount.h"

#include <algorithm>

namespace
{
/// Sounds the buzzer for its lifetime when the setting asks for it. The setting is read once: a user who
/// switches it off meanwhile must not leave the buzzer on.
class Buzzer
{
public:
    Buzzer(const MxShm &shm, const Gpio &gpio)
        : m_gpio(gpio)
        , m_audible(shm.beep != 0)
    {
        set(1);
    }
    ~Buzzer() { set(0); }
    Buzzer(const Buzzer &) = delete;
    Buzzer &operator=(const Buzzer &) = delete;

private:
    void set(int level) const
    {
        if (m_audible) {
            m_gpio.write(GpioLine::Buzzer, level);
        }
    }

    const Gpio &m_gpio;
    const bool m_audible;
};
} // namespace

MatrixSender::MatrixSender(MxShm &shm, const MatrixLink &link, const Gpio &gpio)
    : m_shm(shm)
    , m_link(link)
    , m_gpio(gpio)
{
}

void MatrixSender::keepBoard()
{
    for (int o = 0; o < portCount(m_shm); ++o) {
        m_sentMap[o] = m_shm.map[o];
    }
}

void MatrixSender::step(quint32 now)
{
    if (deliverSplice(now)) {
        deliverMap(now);
    }
}

/// False while a pending splice waits for its time; it holds back switch frames until it has gone out.
bool MatrixSender::deliverSplice(quint32 now)
{
    if (!m_shm.splicePending.raised()) {
        return true;
    }
    if (ticksBetween(m_lastFrame, now) < SpliceHoldOff) {
        return false;
    }
    if (m_shm.splicePending.take()) {
        m_lastFrame = now;
        const Buzzer buzzer(m_shm, m_gpio);
        sendSplice();
    }
    return true;
}

void MatrixSender::deliverMap(quint32 now)
{
    if (!m_idle && ticksBetween(m_lastComparison, now) <= SwitchHoldOff) {
        return;
    }
    m_lastComparison = now;
    m_idle = true;
    const int ports = portCount(m_shm);
    if (!takeChangedMap(ports)) {
        return;
    }
    m_lastFrame = now;
    m_idle = false;
    {
        const Buzzer buzzer(m_shm, m_gpio);
        m_gpio.write(GpioLine::Switching, 1);
        sendMap(ports);
        SceneStore::save(m_shm, 0);
    }
    m_gpio.write(GpioLine::Switching, 0);
}

/// Reads the live map once; true when it differs from the one last sent.
bool MatrixSender::takeChangedMap(int ports)
{
    for (int o = 0; o < ports; ++o) {
        m_newMap[o] = m_shm.map[o];
    }
    return !std::equal(m_newMap, m_newMap + ports, m_sentMap);
}

/// The board always receives a switch frame twice, back to back.
void MatrixSender::sendMap(int ports)
{
    const SwitchFrame frame(m_newMap, ports);
    m_link.writeFlushed(frame.bytes(), frame.size());
    m_link.write(frame.bytes(), frame.size());
    std::copy(m_newMap, m_newMap + ports, m_sentMap);
}

void MatrixSender::sendSplice()
{
    const SpliceFrame frame(m_shm);
    m_link.writeFlushed(frame.bytes(), frame.size());
}
