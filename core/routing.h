#pragma once

#include <QtGlobal>

struct MxShm;

/// The operations that change the live map; every user interface and every command ends here. Inputs and
/// outputs are 0-based; `MxNoInput` as an input darkens the output. Inputs above the matrix are stored as
/// given, outputs outside it are ignored. Nothing is sent from here: the sender sees the change on its next
/// pass. Any thread; no lock.
namespace Routing
{
void oneToOne(MxShm &shm, quint16 input, quint16 output);
/// Routes `input` to each of the `count` outputs; nothing when `count` is 0 or below.
void oneToSome(MxShm &shm, quint16 input, const quint16 *outputs, int count);
/// Copies one input per output from `inputs`, which holds `port` entries.
void setMap(MxShm &shm, const quint16 *inputs);
void oneToAll(MxShm &shm, quint16 input);
/// Input i to output i.
void allToAll(MxShm &shm);
void allToNone(MxShm &shm);
/// Darkens every output that shows `input`.
void oneToNone(MxShm &shm, quint16 input);

/// Reads: copies the map of a slot (0: the live map) to `inputs`, which has room for `room` outputs; those
/// beyond the matrix and a slot that there is not leave it as it is.
void copyMap(const MxShm &shm, int slot, quint16 *inputs, int room);
} // namespace Routing
