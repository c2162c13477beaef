#pragma once

#include "display.h"
#include "handles.h"
#include "windowmanager.h"

#include <string>
#include <string_view>

struct Look {
    GUI_Color background;
    GUI_Color text;
};

/// A window that looks like something by itself: a background, one line of text, an edge, drawn in that
/// order. Rectangles are relative to the window. Setters bound, compare, store, and invalidate what looks
/// different.
class Widget : public Window
{
public:
    Widget();

    void paint() override;

    const std::string &text() const { return m_text; }
    void setText(std::string_view text);
    void setFont(const GUI_Font *font); ///< null is ignored
    void setAlign(int align);
    void setBackground(GUI_Color color);
    void setTextColor(GUI_Color color);
    virtual void setEdge(int width);

protected:
    Rect bounds() const;
    Rect inside() const { return shrunk(bounds(), m_edge); }
    /// The text is aligned in it and cut off by it: what is inside, as far as it is on the display, so that a
    /// text is not cut in half as long as there is room for all of it.
    virtual Rect textArea() const
    {
        return intersection(inside(), moved(Display::rect(), -rect().x0, -rect().y0));
    }
    virtual bool showsText() const { return true; }
    /// The characters from `first` up to, not including, `last`.
    Rect cells(int first, int last) const;
    /// The same, all of them, as far as they are visible.
    Rect textCells() const;
    const GUI_Font &font() const { return *m_font; }
    void invalidateText() { invalidateLocal(textCells()); }
    void invalidateEdge();

    void paintBackground(const Look &look) const;
    void paintText(const Look &look) const;
    void paintEdge() const;

    Look m_look{GUI_WHITE, GUI_BLACK};
    int m_align = GUI_ALIGN_LEFT | GUI_ALIGN_VCENTER;
    int m_edge; ///< its width

private:
    Point textPlace() const;

    std::string m_text;
    const GUI_Font *m_font = &GUI_Font6x8;
};

/// Calls a setter if the handle is one of this kind of widget.
template <class Kind, class Base, class... Parameters, class... Arguments>
void apply(WM_Handle handle, void (Base::*setter)(Parameters...), Arguments... arguments)
{
    if (Kind *const widget = find<Kind>(handle)) {
        (widget->*setter)(arguments...);
    }
}

/// A text of the application, where null counts as empty.
inline std::string_view view(const char *text)
{
    return text != nullptr ? text : "";
}

/// As `TEXT_GetText`. `widget` may be null.
int copyText(const Widget *widget, char *buffer, int size);
