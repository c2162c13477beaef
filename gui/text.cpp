#include "widget.h"

namespace
{
/// A line of text on a background, without an edge at first. Owns its text.
class Text final : public Widget
{
public:
    Text() { m_edge = WIDGET_Effect_None.width; }
};
} // namespace

WM_Handle TEXT_CreateEx(int x, int y, int width, int height, WM_Handle parent, int flags, int id,
                        const char *text)
{
    auto widget = std::make_unique<Text>();
    widget->setText(view(text));
    return addWindow(std::move(widget), {x, y, width, height}, parent, flags, id);
}

void TEXT_SetText(WM_Handle text, const char *string)
{
    apply<Text>(text, &Text::setText, view(string));
}

int TEXT_GetText(WM_Handle text, char *buffer, int size)
{
    return copyText(find<Text>(text), buffer, size);
}

void TEXT_SetFont(WM_Handle text, const GUI_Font *font)
{
    apply<Text>(text, &Text::setFont, font);
}

void TEXT_SetTextAlign(WM_Handle text, int align)
{
    apply<Text>(text, &Text::setAlign, align);
}

void TEXT_SetTextColor(WM_Handle text, GUI_Color color)
{
    apply<Text>(text, &Text::setTextColor, color);
}

void TEXT_SetBkColor(WM_Handle text, GUI_Color color)
{
    apply<Text>(text, &Text::setBackground, color);
}
