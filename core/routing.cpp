#include "routing.h"

#include "mxshm.h"

void Routing::oneToOne(MxShm &shm, quint16 input, quint16 output)
{
    oneToSome(shm, input, &output, 1);
}

void Routing::oneToSome(MxShm &shm, quint16 input, const quint16 *outputs, int count)
{
    const int ports = portCount(shm);
    for (int i = 0; i < count; ++i) {
        if (outputs[i] < ports) {
            shm.map[outputs[i]] = input;
        }
    }
}

void Routing::setMap(MxShm &shm, const quint16 *inputs)
{
    for (int o = 0; o < portCount(shm); ++o) {
        shm.map[o] = inputs[o];
    }
}

void Routing::oneToAll(MxShm &shm, quint16 input)
{
    for (int o = 0; o < portCount(shm); ++o) {
        shm.map[o] = input;
    }
}

void Routing::allToAll(MxShm &shm)
{
    for (int o = 0; o < portCount(shm); ++o) {
        shm.map[o] = static_cast<quint16>(o);
    }
}

void Routing::allToNone(MxShm &shm)
{
    oneToAll(shm, MxNoInput);
}

void Routing::oneToNone(MxShm &shm, quint16 input)
{
    for (int o = 0; o < portCount(shm); ++o) {
        if (shm.map[o] == input) {
            shm.map[o] = MxNoInput;
        }
    }
}

void Routing::copyMap(const MxShm &shm, int slot, quint16 *inputs, int room)
{
    if (slot < 0 || slot > MxMaxScene) {
        return;
    }
    const int count = qMin(portCount(shm), room);
    for (int o = 0; o < count; ++o) {
        inputs[o] = shm.sceneMap[slot][o];
    }
}
