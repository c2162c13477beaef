#include "widget.h"

#include "color.h"
#include "drawing.h"

const WIDGET_Effect WIDGET_Effect_None = {0};
const WIDGET_Effect WIDGET_Effect_Simple = {1};

namespace
{
constexpr int WidestEdge = 32;

int s_defaultEdge = 1;
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
    GUI_DispStringInRect(m_text.c_str(), textArea(), m_align);
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
    const Rect before = textCells();
    const Point placeBefore = textPlace();
    const auto common = std::min({text.size(), m_text.size(), size_t{LongestText}});
    const auto differing = std::mismatch(text.begin(), text.begin() + common, m_text.begin());
    const auto unchanged = static_cast<int>(differing.first - text.begin());
    m_text.assign(text);
    const Rect after = textCells();
    Rect changed = united(before, after);
    if (placeBefore == textPlace()) {
        changed.x0 = std::max(changed.x0, cells(unchanged, unchanged).x0);
    }
    invalidateLocal(changed);
}

void Widget::setFont(const GUI_Font *font)
{
    if (font == nullptr || font == m_font) {
        return;
    }
    invalidateText();
    m_font = font;
    invalidateText();
}

void Widget::setAlign(int align)
{
    const Rect before = textCells();
    const Point placeBefore = textPlace();
    m_align = align;
    if (!(placeBefore == textPlace())) {
        invalidateLocal(before);
        invalidateText();
    }
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
    return alignedText(textArea(), textLength(m_text.c_str()), *m_font, m_align);
}

Rect Widget::cells(int first, int last) const
{
    const Point place = textPlace();
    return {place.x + first * m_font->width, place.y, place.x + last * m_font->width - 1,
            place.y + m_font->height - 1};
}

Rect Widget::textCells() const
{
    return showsText() ? intersection(cells(0, textLength(m_text.c_str())), textArea()) : NoRect;
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
