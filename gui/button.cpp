#include "color.h"
#include "widget.h"

namespace
{
Look s_defaults[2]; ///< by state, as `GUI_Init` sets them

int indexOf(BUTTON_State state)
{
    return state == BUTTON_RELEASED ? 0 : 1;
}

/// A box with one line of text or a picture, released or pressed. Draws background, text or picture, edge.
/// Owns its text, not its pictures.
class Button final : public Widget
{
public:
    Button();

    void paint() override;
    void key(int key, bool pressed) override;
    void focusChanged(bool gained) override;

    bool isPressed() const { return m_pressed; }
    void setPressed(bool pressed);
    void setBitmap(BUTTON_State state, const GUI_Bitmap *bitmap);
    void setStateBackground(BUTTON_State state, GUI_Color color);
    void setStateTextColor(BUTTON_State state, GUI_Color color);

protected:
    bool showsText() const override { return bitmap() == nullptr; }

private:
    const Look &look() const { return m_pressed ? m_pressedLook : m_look; }
    const GUI_Bitmap *bitmap() const { return m_bitmaps[m_pressed ? 1 : 0]; }

    Look m_pressedLook = s_defaults[1];
    const GUI_Bitmap *m_bitmaps[2] = {nullptr, nullptr}; ///< by state
    bool m_pressed = false;
    int m_heldBy = 0; ///< the key that holds it down, 0 for none
};

Button::Button()
{
    m_look = s_defaults[0];
    m_align = GUI_ALIGN_HCENTER | GUI_ALIGN_VCENTER;
}

void Button::paint()
{
    paintBackground(look());
    if (bitmap() != nullptr) {
        const Rect area = inside();
        GUI_SetClipRect(&area);
        GUI_DrawBitmap(*bitmap(), area.x0, area.y0);
        GUI_SetClipRect(nullptr);
    } else {
        paintText(look());
    }
    paintEdge();
}

void Button::key(int key, bool pressed)
{
    if (pressed && m_heldBy == 0 && (key == GUI_KEY_ENTER || key == ' ')) {
        m_heldBy = key;
        setPressed(true);
        WM_NotifyParent(handle(), WM_CLICKED);
    } else if (!pressed && m_heldBy != 0 && key == m_heldBy) {
        m_heldBy = 0;
        setPressed(false);
        WM_NotifyParent(handle(), WM_RELEASED);
    }
}

void Button::focusChanged(bool gained)
{
    if (!gained && m_heldBy != 0) {
        m_heldBy = 0;
        setPressed(false);
    }
}

void Button::setPressed(bool pressed)
{
    if (pressed == m_pressed) {
        return;
    }
    m_pressed = pressed;
    if (m_bitmaps[0] != m_bitmaps[1] || !looksSame(m_look.background, m_pressedLook.background) ||
        !looksSame(m_look.text, m_pressedLook.text)) {
        invalidateLocal(bounds());
    }
}

void Button::setBitmap(BUTTON_State state, const GUI_Bitmap *bitmap)
{
    const GUI_Bitmap *&stored = m_bitmaps[indexOf(state)];
    if (bitmap != stored) {
        stored = bitmap;
        if (indexOf(state) == (m_pressed ? 1 : 0)) {
            invalidateLocal(inside());
        }
    }
}

void Button::setStateBackground(BUTTON_State state, GUI_Color color)
{
    Look &changed = state == BUTTON_RELEASED ? m_look : m_pressedLook;
    if (changeColor(changed.background, color) && &changed == &look()) {
        invalidateLocal(bounds());
    }
}

void Button::setStateTextColor(BUTTON_State state, GUI_Color color)
{
    Look &changed = state == BUTTON_RELEASED ? m_look : m_pressedLook;
    if (!changeColor(changed.text, color)) {
        return;
    }
    if (&changed == &look()) {
        invalidateText();
    }
    if (&changed == &m_look) {
        invalidateEdge();
    }
}
} // namespace

WM_Handle BUTTON_CreateEx(int x, int y, int width, int height, WM_Handle parent, int flags, int id)
{
    return addWindow(std::make_unique<Button>(), {x, y, width, height}, parent, flags | WM_TAKES_KEYS, id);
}

void BUTTON_SetText(WM_Handle button, const char *text)
{
    apply<Button>(button, &Button::setText, view(text));
}

int BUTTON_GetText(WM_Handle button, char *buffer, int size)
{
    return copyText(find<Button>(button), buffer, size);
}

void BUTTON_SetBitmap(WM_Handle button, BUTTON_State state, const GUI_Bitmap *bitmap)
{
    apply<Button>(button, &Button::setBitmap, state, bitmap);
}

void BUTTON_SetFont(WM_Handle button, const GUI_Font *font)
{
    apply<Button>(button, &Button::setFont, font);
}

void BUTTON_SetTextAlign(WM_Handle button, int align)
{
    apply<Button>(button, &Button::setAlign, align);
}

void BUTTON_SetBkColor(WM_Handle button, BUTTON_State state, GUI_Color color)
{
    apply<Button>(button, &Button::setStateBackground, state, color);
}

void BUTTON_SetTextColor(WM_Handle button, BUTTON_State state, GUI_Color color)
{
    apply<Button>(button, &Button::setStateTextColor, state, color);
}

void BUTTON_SetPressed(WM_Handle button, int pressed)
{
    apply<Button>(button, &Button::setPressed, pressed != 0);
}

int BUTTON_IsPressed(WM_Handle button)
{
    const Button *const found = find<Button>(button);
    return found != nullptr && found->isPressed() ? 1 : 0;
}

void BUTTON_SetDefaultBkColor(BUTTON_State state, GUI_Color color)
{
    s_defaults[indexOf(state)].background = color;
}

void BUTTON_SetDefaultTextColor(BUTTON_State state, GUI_Color color)
{
    s_defaults[indexOf(state)].text = color;
}
