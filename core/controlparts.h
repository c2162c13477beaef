#pragma once

#include "controlport.h"
#include "matrixsender.h"
#include "queuerelay.h"

#include <deque>

/// The control ports, in the order of their numbers: the code counts them from 0, the documents and the
/// unit's labels from 1. All run at the `baudrate` setting.
constexpr const char *ControlDevices[] = {"/dev/ttymxc3", "/dev/ttymxc4"};

/// What the control thread works with, made once the record is there.
struct ControlParts {
    MatrixSender sender;
    QueueRelay relay;
    std::deque<ControlPort> ports; ///< one per control device; filled once, since they cannot be moved
};
