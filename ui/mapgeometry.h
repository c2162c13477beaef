#pragma once

#include <QLine>
#include <QRect>
#include <QSize>

/// Where everything of a map view is, in pixels of the view: a column of numbered inputs at the left, one of
/// outputs at the right, and lines between them. Rows are 0-based.
class MapGeometry
{
public:
    /// For `ports` (at least 2) rows in a view of this size. More rows make all of it smaller.
    MapGeometry(int ports, QSize view);

    int fontSize() const { return m_dot; } ///< in points
    int penWidth() const { return m_penWidth; }

    QRect inputLabel(int row) const { return {0, top(row), LabelWidth, m_labelHeight}; }
    QRect outputLabel(int row) const
    {
        return {m_right - LabelWidth + 1, top(row), LabelWidth, m_labelHeight};
    }
    QRect inputDot(int row) const { return {LabelWidth, top(row) + m_margin, m_dot, m_dot}; }
    QRect outputDot(int row) const
    {
        return {m_right - LabelWidth + 1 - m_dot, top(row) + m_margin, m_dot, m_dot};
    }
    /// From beside the input's dot to beside the output's, level with their centres.
    QLine line(int input, int output) const;

private:
    static constexpr int LabelWidth = 24;
    int top(int row) const { return row * m_pitch; }

    int m_right; ///< the last column of pixels
    int m_pitch;
    int m_margin; ///< above a dot, within its row
    int m_dot;
    int m_labelHeight;
    int m_penWidth;
};
