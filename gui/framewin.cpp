#include "color.h"
#include "widget.h"

namespace
{
constexpr int WidestBorder = 32;

struct Defaults {
    int border;
    GUI_Color clientColor;
};
Defaults s_defaults; ///< as `GUI_Init` sets them

/// A window with border, title bar and client area, drawn in that order, without an effect. Owns its title.
class FrameWin final : public Widget
{
public:
    FrameWin();

    Rect clientRect() const override { return moved(client(), rect().x0, rect().y0); }
    void paint() override;

    void setFont(const GUI_Font *font);
    void setEdge(int /*width*/) override {}
    void setTitleVisible(bool visible);
    void setBorder(int size);
    void setClientColor(GUI_Color color);

protected:
    Rect textArea() const override;
    bool showsText() const override { return m_titleVisible; }

private:
    int titleHeight() const { return m_titleVisible ? font().height + 2 : 0; }
    Rect client() const;
    template <class Change>
    void rearrange(Change change);

    bool m_titleVisible = true;
    int m_border = s_defaults.border;
    GUI_Color m_clientColor = s_defaults.clientColor;
};

FrameWin::FrameWin()
{
    m_look = {GUI_BLACK, GUI_WHITE};
    m_edge = 0;
}

void FrameWin::paint()
{
    GUI_SetColor(m_look.background);
    for (const Rect &side : Remainder(bounds(), client())) {
        GUI_FillRect(side);
    }
    GUI_SetBkColor(m_clientColor);
    GUI_ClearRect(client());
    if (m_titleVisible) {
        paintText(m_look);
    }
}

Rect FrameWin::client() const
{
    Rect area = shrunk(bounds(), m_border);
    area.y0 += titleHeight();
    return area;
}

/// One dot off the border at the left, and above and below the text.
Rect FrameWin::textArea() const
{
    const Rect area = shrunk(bounds(), m_border);
    return {area.x0 + 1, area.y0, area.x1, std::min(area.y1, area.y0 + titleHeight() - 1)};
}

template <class Change>
void FrameWin::rearrange(Change change)
{
    const Rect before = clientRect();
    change();
    if (!(before == clientRect())) {
        clientRectChanged(before);
    }
}

void FrameWin::setFont(const GUI_Font *font)
{
    rearrange([&] { Widget::setFont(font); });
}

void FrameWin::setTitleVisible(bool visible)
{
    rearrange([&] { m_titleVisible = visible; });
}

void FrameWin::setBorder(int size)
{
    rearrange([&] { m_border = std::clamp(size, 0, WidestBorder); });
}

void FrameWin::setClientColor(GUI_Color color)
{
    if (changeColor(m_clientColor, color)) {
        invalidateLocal(client());
    }
}
} // namespace

WM_Handle FRAMEWIN_Create(const char *title, WM_Callback callback, int flags, int x, int y, int width,
                          int height)
{
    auto frame = std::make_unique<FrameWin>();
    frame->setText(view(title));
    frame->callback = callback;
    return addWindow(std::move(frame), {x, y, width, height}, 0, flags);
}

void FRAMEWIN_SetText(WM_Handle frame, const char *title)
{
    apply<FrameWin>(frame, &FrameWin::setText, view(title));
}

void FRAMEWIN_SetTitleVis(WM_Handle frame, int visible)
{
    apply<FrameWin>(frame, &FrameWin::setTitleVisible, visible != 0);
}

void FRAMEWIN_SetBorderSize(WM_Handle frame, int size)
{
    apply<FrameWin>(frame, &FrameWin::setBorder, size);
}

void FRAMEWIN_SetClientColor(WM_Handle frame, GUI_Color color)
{
    apply<FrameWin>(frame, &FrameWin::setClientColor, color);
}

void FRAMEWIN_SetFont(WM_Handle frame, const GUI_Font *font)
{
    apply<FrameWin>(frame, &FrameWin::setFont, font);
}

void FRAMEWIN_SetDefaultBorderSize(int size)
{
    s_defaults.border = std::clamp(size, 0, WidestBorder);
}

void FRAMEWIN_SetDefaultClientColor(GUI_Color color)
{
    s_defaults.clientColor = color;
}
