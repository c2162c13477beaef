#pragma once

#include "sharedfield.h"

#include <QtGlobal>
#include <cstddef>

/// Bounds of the matrix and of the scenes.
constexpr int MxMinPort = 2;
constexpr int MxMaxPort = 160;
constexpr int MxMinScene = 10;
constexpr int MxMaxScene = 40;

/// The `sleep` setting with which the screen stays on.
constexpr int MxSleepNever = 4;

/// The input number that means "no input": the output is dark.
constexpr quint16 MxNoInput = 0xFFFF;

/// The device's state, shared with every thread of the program and with other processes on the board.
///
/// The layout is an external format: little-endian, packed to the byte, in a System V segment of 2 MiB. Input
/// and output numbers are 0-based. Texts are NUL-terminated 8-bit text.
struct MxShm {
    SharedInt32 port;      ///<      0  matrix size: number of inputs and of outputs, 2..160
    SharedInt32 scene;     ///<      4  number of scenes offered, 10..40
    SharedInt32 keypad;    ///<      8  above 0: operated from the front panel, if it has keys for the matrix
    SharedInt32 beep;      ///<     12  not 0: the buzzer sounds while a frame goes out
    SharedInt32 backlight; ///<     16  touchscreen backlight, 0..6
    SharedInt32 sleep;     ///<     20  screen-sleep setting
    SharedInt32 baudrate;  ///<     24  of the two control ports; -1: neither opened nor polled
    SharedInt32 uptime;    ///<     28  whole seconds since the control thread started

    SharedText<512> images;       ///<     32  folder of the picture theme
    SharedText<512> language;     ///<    544  language code of the user interfaces
    unsigned char reserved1[393]; ///<   1056

    SharedText<32> eth0Address;   ///<   1449  dotted IPv4 text, as the five that follow
    SharedText<32> eth0Netmask;   ///<   1481
    SharedText<32> eth0Gateway;   ///<   1513
    SharedText<32> eth1Address;   ///<   1545
    SharedText<32> eth1Netmask;   ///<   1577
    SharedText<32> eth1Gateway;   ///<   1609
    unsigned char reserved2[320]; ///<   1641

    SharedText<32> inputCaption[1024];  ///<   1961  of input i
    SharedText<32> outputCaption[1024]; ///<  34729  of output o
    SharedText<32> sceneCaption[64];    ///<  67497  of scene n at index n - 1

    union {
        SharedUInt16 sceneMap[64][1024]; ///<  69545  slot n: the map of scene n; slot 0 is the live map
        SharedUInt16 map[1024];          ///<  69545  the live map: the input that output o shows, or 0xFFFF
    };

    SharedFlag splicePending;      ///< 200617  raised when spliceData waits to be sent
    SharedUInt32 spliceData[1024]; ///< 200618  one video-wall word per output
};

static_assert(offsetof(MxShm, port) == 0, "");
static_assert(offsetof(MxShm, scene) == 4, "");
static_assert(offsetof(MxShm, keypad) == 8, "");
static_assert(offsetof(MxShm, beep) == 12, "");
static_assert(offsetof(MxShm, backlight) == 16, "");
static_assert(offsetof(MxShm, sleep) == 20, "");
static_assert(offsetof(MxShm, baudrate) == 24, "");
static_assert(offsetof(MxShm, uptime) == 28, "");
static_assert(offsetof(MxShm, images) == 32, "");
static_assert(offsetof(MxShm, language) == 544, "");
static_assert(offsetof(MxShm, reserved1) == 1056, "");
static_assert(offsetof(MxShm, eth0Address) == 1449, "");
static_assert(offsetof(MxShm, eth0Netmask) == 1481, "");
static_assert(offsetof(MxShm, eth0Gateway) == 1513, "");
static_assert(offsetof(MxShm, eth1Address) == 1545, "");
static_assert(offsetof(MxShm, eth1Netmask) == 1577, "");
static_assert(offsetof(MxShm, eth1Gateway) == 1609, "");
static_assert(offsetof(MxShm, reserved2) == 1641, "");
static_assert(offsetof(MxShm, inputCaption) == 1961, "");
static_assert(offsetof(MxShm, outputCaption) == 34729, "");
static_assert(offsetof(MxShm, sceneCaption) == 67497, "");
static_assert(offsetof(MxShm, sceneMap) == 69545, "");
static_assert(offsetof(MxShm, map) == 69545, "");
static_assert(offsetof(MxShm, splicePending) == 200617, "");
static_assert(offsetof(MxShm, spliceData) == 200618, "");
static_assert(sizeof(MxShm) == 204714 && alignof(MxShm) == 1, "");

/// `port` and `scene` for whoever loops or indexes with them: any process may write the record, so they are
/// bounded at each reading and not only where the settings are loaded.
inline int portCount(const MxShm &shm)
{
    return qBound<int>(MxMinPort, shm.port, MxMaxPort);
}
inline int sceneCount(const MxShm &shm)
{
    return qBound<int>(MxMinScene, shm.scene, MxMaxScene);
}

/// The shared record of this process; null until the control object has attached it, or when it could not.
extern MxShm *g_mxConfig;
