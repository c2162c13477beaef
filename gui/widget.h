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
    void setFont(const GUI_Font *font); ///< one that is not usable is ignored
    void setAlign(int align);
    void setBackground(GUI_Color color);
    void setTextColor(GUI_Color color);
    virtual void setEdge(int width);

protected:
    Rect bounds() const;
    Rect inside() const { return shrunk(bounds(), m_edge); }
    /// What the display shows of an area.
    Rect seen(const Rect &area) const
    {
        return intersection(area, moved(Display::rect(), -rect().x0, -rect().y0));
    }
    /// The text is aligned in it and cut off by it.
    virtual Rect textArea() const { return inside(); }
    /// Where the first cell of the text is: aligned, or moved as little as is needed to keep the dots that
    /// the area shows on the display.
    virtual Point textPlace() const;
    virtual bool showsText() const { return true; }
    const GUI_Font &font() const { return *m_font; }
    int widthOfText() const { return m_textWidth; } ///< of all cells
    int widthTo(size_t position) const;             ///< of the cells before a character
    void invalidateText() { invalidateLocal(textCells(textPlace())); }
    void invalidateEdge();
    /// Makes a change and has the text painted where it was and is if it moves by that.
    template <class Change>
    void moveText(Change change);

    void paintBackground(const Look &look) const;
    void paintText(const Look &look) const;
    void paintEdge() const;

    Look m_look{GUI_WHITE, GUI_BLACK};
    int m_align = GUI_ALIGN_LEFT | GUI_ALIGN_VCENTER;
    int m_edge; ///< its width

private:
    /// What is visible of the text when it is at `place`.
    Rect textCells(Point place) const;

    std::string m_text;
    const GUI_Font *m_font = &GUI_Font6x8;
    int m_textWidth = 0; ///< of all cells
};

template <class Change>
void Widget::moveText(Change change)
{
    const Point before = textPlace();
    const Rect cells = textCells(before);
    change();
    if (!(before == textPlace())) {
        invalidateLocal(cells);
        invalidateText();
    }
}

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
