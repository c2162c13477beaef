#include "mapgeometry.h"

namespace
{
struct Scale {
    int upToPorts;
    int reserve; ///< height that the last row keeps
    int margin;
    int penWidth;
};

/// With exactly 20 ports the lines are as broad as with fewer, though the rows are already small.
constexpr Scale Scales[] = {{19, 17, 6, 2}, {20, 11, 4, 2}, {39, 11, 4, 1},
                            {60, 8, 3, 1},  {80, 5, 2, 1},  {0, 2, 1, 1}};

const Scale &scaleFor(int ports)
{
    const Scale *scale = Scales;
    while (scale->upToPorts != 0 && ports > scale->upToPorts) {
        ++scale;
    }
    return *scale;
}
} // namespace

MapGeometry::MapGeometry(int ports, QSize view)
{
    const Scale &scale = scaleFor(ports);
    m_right = view.width() - 1;
    m_pitch = (view.height() - 1 - scale.reserve) / (ports - 1);
    m_margin = scale.margin;
    m_dot = 2 * scale.margin;
    m_labelHeight = 4 * scale.margin;
    m_penWidth = scale.penWidth;
}

QLine MapGeometry::line(int input, int output) const
{
    constexpr int Gap = 4;
    const int middle = 2 * m_margin;
    return {LabelWidth + m_dot + Gap, top(input) + middle, m_right - LabelWidth + 1 - m_dot - Gap,
            top(output) + middle};
}
