#pragma once

#include "gui.h"

/// Sends a message that says nothing but its id.
void send(WM_Handle window, WM_MessageId id);
