#pragma once

#include "unitwindow.h"

namespace sim
{
/// A unit with a touchscreen, whose picture comes from a display of its own.
class TouchscreenWindow : public UnitWindow
{
    Q_OBJECT

public:
    /// How large it is, in pixels.
    static constexpr QSize Extent{1400, 704};

    /// `ports` is 2..160.
    explicit TouchscreenWindow(int ports);

    /// The native window of 1024x600 for the touchscreen; the X server has it when this returns.
    quint64 touchscreenId() const;

private:
    QWidget *const m_touchscreen;
};
} // namespace sim
