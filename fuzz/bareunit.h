#pragma once

#include "input.h"
#include "mxshm.h"

/// The control object without a unit: no devices, no files, no other threads, no time to wait. What the
/// target prints is lost. \return its record, anew with each call: ports and scenes, all else zero
MxShm &newRecord(int ports, int scenes);

/// Writes as a process does that respects nothing: any bytes over any field, or across several.
void disturb(MxShm &record, Input &input);
