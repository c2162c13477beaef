#pragma once

#include "descriptor.h"

/// A multi-touch screen of 1024 x 600 dots, as the kernel's input layer has it. It is there as long as the
/// object.
class TouchPanel
{
public:
    TouchPanel();

    /// A finger goes down there, and up again.
    void touch(int x, int y);

private:
    void tell(int type, int code, int value);

    sim::Descriptor m_device;
    int m_finger = 0;
};
