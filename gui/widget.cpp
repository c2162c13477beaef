#include "widget.h"

#include "color.h"
#include "drawing.h"

const WIDGET_Effect WIDGET_Effect_None = {0};
const WIDGET_Effect WIDGET_Effect_Simple = {1};

namespace
{
constexpr int WidestEdge = 32;

int s_defaultEdge = 1;

/// By how much a span moves so that it lies between two dots; if it is too long, so that it begins there.
int shiftInto(int from, int to, int first, int last)
{
    return std::max(from - first, std::min(to - last, 0));
}
} // namespace

Widget::Widget()
    : m_edge(s_defaultEdge)
{
}

void Widget::paint()
{
    paintBackground(m_look);
    paintText(m_look);
    paintEdge();
}

void Widget::paintBackground(const Look &look) const
{
    GUI_SetBkColor(look.background);
    GUI_ClearRect(bounds());
}

void Widget::paintText(const Look &look) const
{
    GUI_SetColor(look.text);
    GUI_SetBkColor(look.background);
    GUI_SetFont(m_font);
    GUI_SetTextMode(GUI_TEXT_SOLID);
    drawText(m_text.c_str(), textPlace(), textArea());
}

void Widget::paintEdge() const
{
    if (m_edge > 0) {
        GUI_SetColor(m_look.text);
        GUI_DrawRect(bounds());
    }
}

void Widget::setText(std::string_view text)
{
    if (text == m_text) {
        return;
    }
    const Point before = textPlace();
    Rect changed = textCells(before);
    const auto differing = std::mismatch(text.begin(), text.end(), m_text.begin(), m_text.end());
    const auto unchanged = static_cast<size_t>(differing.first - text.begin());
    m_text.assign(text);
    m_textWidth = textWidth(*m_font, m_text);
    const Point after = textPlace();
    changed = united(changed, textCells(after));
    if (before == after) {
        changed.x0 = std::max(changed.x0, after.x + widthTo(unchanged));
    }
    invalidateLocal(changed);
}

void Widget::setFont(const GUI_Font *font)
{
    if (!isUsable(font) || font == m_font) {
        return;
    }
    invalidateText();
    m_font = font;
    m_textWidth = textWidth(*m_font, m_text);
    invalidateText();
}

void Widget::setAlign(int align)
{
    moveText([&] { m_align = align; });
}

void Widget::setBackground(GUI_Color color)
{
    if (changeColor(m_look.background, color)) {
        invalidateLocal(bounds());
    }
}

void Widget::setTextColor(GUI_Color color)
{
    if (changeColor(m_look.text, color)) {
        invalidateText();
        invalidateEdge();
    }
}

void Widget::setEdge(int width)
{
    const int edge = std::clamp(width, 0, WidestEdge);
    if (edge != m_edge) {
        m_edge = edge;
        invalidateLocal(bounds());
    }
}

Rect Widget::bounds() const
{
    return moved(rect(), -rect().x0, -rect().y0);
}

Point Widget::textPlace() const
{
    const Rect area = textArea();
    const Rect limits = seen(area);
    const Point place = alignedText(area, m_textWidth, *m_font, m_align);
    const Rect cells = textCells(place);
    if (intersection(cells, limits) == cells) {
        return place;
    }
    const Rect dots = intersection(moved(textDots(*m_font, m_text), place.x, place.y), area);
    return {place.x + shiftInto(limits.x0, limits.x1, dots.x0, dots.x1),
            place.y + shiftInto(limits.y0, limits.y1, dots.y0, dots.y1)};
}

int Widget::widthTo(size_t position) const
{
    return textWidth(*m_font, std::string_view(m_text).substr(0, position));
}

Rect Widget::textCells(Point place) const
{
    const Rect cells = {place.x, place.y, place.x + m_textWidth - 1, place.y + m_font->height - 1};
    return showsText() ? intersection(cells, textArea()) : NoRect;
}

void Widget::invalidateEdge()
{
    if (m_edge > 0) {
        invalidateLocal(bounds());
    }
}

void WIDGET_SetDefaultEffect_None()
{
    s_defaultEdge = WIDGET_Effect_None.width;
}

void WIDGET_SetDefaultEffect_Simple()
{
    s_defaultEdge = WIDGET_Effect_Simple.width;
}

void WIDGET_SetEffect(WM_Handle widget, const WIDGET_Effect *effect)
{
    if (effect != nullptr) {
        apply<Widget>(widget, &Widget::setEdge, effect->width);
    }
}

int copyText(const Widget *widget, char *buffer, int size)
{
    const std::string_view text = widget != nullptr ? std::string_view(widget->text()) : std::string_view();
    if (buffer != nullptr && size > 0) {
        buffer[text.copy(buffer, static_cast<size_t>(size) - 1)] = '\0';
    }
    return static_cast<int>(text.size());
}
