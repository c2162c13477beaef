#pragma once

#include "controlport.h"
#include "matrixsender.h"
#include "queuerelay.h"

/// What the control thread works with, made once the record is there.
struct ControlParts {
    MatrixSender sender;
    ControlPort port0;
    ControlPort port1;
    QueueRelay relay;
};
