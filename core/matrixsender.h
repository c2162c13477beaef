#pragma once

#include "mxshm.h"

class Gpio;
class MatrixLink;

/// Brings the live map and pending splice words to the switching board. One instance, on the control thread,
/// whose `step` is called on every pass. It compares the live map with what was last sent and sends the whole
/// map when they differ, so changes made during a hold-off leave as one frame.
class MatrixSender
{
public:
    /// Time between two switch frames is at least this and one more, in ms.
    static constexpr quint32 SwitchHoldOff = 549;
    /// Time from any frame to a splice frame is at least this, in ms.
    static constexpr quint32 SpliceHoldOff = 1000;

    MatrixSender(MxShm &shm, const MatrixLink &link, const Gpio &gpio);

    /// Nothing is sent, nor stored, until the live map changes: the stored routing could not be read, and the
    /// board may still show it. Before the first `step`.
    void keepBoard();

    /// `now` in milliseconds, of a counter that may wrap.
    void step(quint32 now);

private:
    bool deliverSplice(quint32 now);
    void deliverMap(quint32 now);
    bool takeChangedMap(int ports);
    void sendMap(int ports);
    void sendSplice();

    MxShm &m_shm;
    const MatrixLink &m_link;
    const Gpio &m_gpio;
    quint16 m_sentMap[1024] = {MxNoInput}; ///< as last sent; so a loaded map of all zero is sent at start
    quint16 m_newMap[1024] = {MxNoInput};  ///< one consistent copy of the live map
    quint32 m_lastFrame = 0;
    quint32 m_lastComparison = 0;
    bool m_idle = false; ///< false during the hold-off after a switch frame
};
