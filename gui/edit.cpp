#include "widget.h"

#include "drawing.h"

namespace
{
constexpr int LongestEdit = 255;

bool isTyped(int key)
{
    return (key >= ' ' && key < GUI_KEY_DELETE) || (key >= 0xA0 && key <= 0xFF);
}

/// A line of text that can be typed over. Draws background, text, cursor, edge. Owns its text.
class Edit final : public Widget
{
public:
    explicit Edit(int maxLength)
        : m_maxLength(std::clamp(maxLength, 1, LongestEdit))
    {
    }

    void paint() override;
    void key(int key, bool pressed) override;
    void focusChanged(bool gained) override;

    void setText(std::string_view text);
    void setFont(const GUI_Font *font);
    void setAlign(int align);
    void setInsertMode(bool insert);
    void setCursor(int position);
    int cursor() const { return m_cursor; }
    void addKey(int key);

protected:
    Rect textArea() const override;
    Point textPlace() const override;

private:
    int length() const { return static_cast<int>(text().size()); }
    /// Where text and cursor can be seen.
    Rect field() const { return seen(inside()); }
    int room() const { return field().x1 - field().x0 + 1; }
    Rect cursorAt(int position) const;
    bool hasFocus() const { return WM_GetFocus() == handle(); }
    Rect cursorRect() const;
    bool edit(int key);
    bool type(char character);
    bool erase(int position);
    template <class Change>
    void withCursor(Change change);

    int m_maxLength;
    int m_cursor = 0;
    bool m_insert = true;
    int m_start = 0; ///< where the text began within the field before the latest change
};

void Edit::paint()
{
    paintBackground(m_look);
    paintText(m_look);
    if (hasFocus()) {
        GUI_InvertRect(cursorRect());
    }
    paintEdge();
}

void Edit::key(int key, bool pressed)
{
    if (pressed) {
        addKey(key);
    }
}

void Edit::focusChanged(bool /*gained*/)
{
    invalidateLocal(cursorRect());
}

/// A text at the left keeps one dot off the edge, for the bar of the cursor, if there is room.
Rect Edit::textArea() const
{
    Rect area = inside();
    const bool isLeft = (m_align & (GUI_ALIGN_HCENTER | GUI_ALIGN_RIGHT)) == 0;
    if (isLeft && widthOfText() < room()) {
        ++area.x0;
    }
    return area;
}

/// A text that does not fit stays where it was, unless the cursor would not be seen whole, or an end of the
/// field would be emptier than the cursor needs it.
Point Edit::textPlace() const
{
    Point place = Widget::textPlace();
    if (widthOfText() > room()) {
        const int last = room() - 1;
        const Rect cursor = cursorAt(m_cursor);
        const int least = std::max(last - cursorAt(length()).x1, -cursor.x0);
        const int most = std::min(-cursorAt(0).x0, last - cursor.x1);
        place.x = field().x0 + std::clamp(m_start, least, std::max(least, most));
    }
    return place;
}

/// The spacing before a character, as a bar; or that and the character, so that it is framed at both sides.
/// Relative to the text. Behind the end there is room for a blank.
Rect Edit::cursorAt(int position) const
{
    const int x = position < length() ? widthTo(position) : widthOfText();
    const auto character = static_cast<unsigned char>(position < length() ? text()[position] : ' ');
    return {x - 1, 0, m_insert ? x - 1 : x + font().glyph(character).width - 1, font().height - 1};
}

/// At the edge of the field if it would be cut off.
Rect Edit::cursorRect() const
{
    const Point place = textPlace();
    const Rect area = field();
    Rect cursor = moved(cursorAt(m_cursor), place.x, place.y);
    cursor.x0 = std::max(std::min(cursor.x0, area.x1), area.x0);
    cursor.x1 = std::max(cursor.x1, cursor.x0);
    return intersection(cursor, area);
}

/// Makes a change and shows the cursor where it is then.
template <class Change>
void Edit::withCursor(Change change)
{
    m_start = textPlace().x - field().x0;
    const Rect before = cursorRect();
    moveText(change);
    const Rect after = cursorRect();
    if (hasFocus() && !(before == after)) {
        invalidateLocal(before);
        invalidateLocal(after);
    }
}

void Edit::addKey(int key)
{
    bool changes = false;
    withCursor([&] { changes = edit(key); });
    if (changes) {
        WM_NotifyParent(handle(), WM_VALUE_CHANGED);
    }
}

/// \return true if the text is another one now
bool Edit::edit(int key)
{
    switch (key) {
    case GUI_KEY_LEFT:
        setCursor(m_cursor - 1);
        return false;
    case GUI_KEY_RIGHT:
        setCursor(m_cursor + 1);
        return false;
    case GUI_KEY_HOME:
        setCursor(0);
        return false;
    case GUI_KEY_END:
        setCursor(length());
        return false;
    case GUI_KEY_INSERT:
        setInsertMode(!m_insert);
        return false;
    case GUI_KEY_DELETE:
        return erase(m_cursor);
    case GUI_KEY_BACKSPACE:
        return erase(m_cursor - 1);
    default:
        return isTyped(key) && type(static_cast<char>(key));
    }
}

bool Edit::type(char character)
{
    const bool replaces = !m_insert && m_cursor < length();
    if (!replaces && length() >= m_maxLength) {
        return false;
    }
    std::string typed = text();
    typed.replace(static_cast<size_t>(m_cursor), replaces ? 1 : 0, 1, character);
    ++m_cursor;
    const bool differs = typed != text();
    Widget::setText(typed);
    return differs;
}

bool Edit::erase(int position)
{
    if (position < 0 || position >= length()) {
        return false;
    }
    std::string rest = text();
    rest.erase(static_cast<size_t>(position), 1);
    m_cursor = position;
    Widget::setText(rest);
    return true;
}

void Edit::setText(std::string_view text)
{
    withCursor([&] {
        Widget::setText(text.substr(0, static_cast<size_t>(m_maxLength)));
        m_cursor = length();
    });
}

void Edit::setFont(const GUI_Font *font)
{
    withCursor([&] { Widget::setFont(font); });
}

void Edit::setAlign(int align)
{
    withCursor([&] { Widget::setAlign(align); });
}

void Edit::setInsertMode(bool insert)
{
    withCursor([&] { m_insert = insert; });
}

void Edit::setCursor(int position)
{
    withCursor([&] { m_cursor = std::clamp(position, 0, length()); });
}
} // namespace

WM_Handle EDIT_CreateEx(int x, int y, int width, int height, WM_Handle parent, int flags, int id,
                        int maxLength)
{
    return addWindow(std::make_unique<Edit>(maxLength), {x, y, width, height}, parent, flags | WM_TAKES_KEYS,
                     id);
}

void EDIT_SetText(WM_Handle edit, const char *text)
{
    apply<Edit>(edit, &Edit::setText, view(text));
}

int EDIT_GetText(WM_Handle edit, char *buffer, int size)
{
    return copyText(find<Edit>(edit), buffer, size);
}

void EDIT_SetFont(WM_Handle edit, const GUI_Font *font)
{
    apply<Edit>(edit, &Edit::setFont, font);
}

void EDIT_SetTextAlign(WM_Handle edit, int align)
{
    apply<Edit>(edit, &Edit::setAlign, align);
}

void EDIT_SetTextColor(WM_Handle edit, GUI_Color color)
{
    apply<Edit>(edit, &Edit::setTextColor, color);
}

void EDIT_SetBkColor(WM_Handle edit, GUI_Color color)
{
    apply<Edit>(edit, &Edit::setBackground, color);
}

void EDIT_SetInsertMode(WM_Handle edit, int insert)
{
    apply<Edit>(edit, &Edit::setInsertMode, insert != 0);
}

void EDIT_SetCursorAtChar(WM_Handle edit, int position)
{
    apply<Edit>(edit, &Edit::setCursor, position);
}

int EDIT_GetCursorCharPos(WM_Handle edit)
{
    const Edit *const found = find<Edit>(edit);
    return found != nullptr ? found->cursor() : 0;
}

void EDIT_AddKey(WM_Handle edit, int key)
{
    apply<Edit>(edit, &Edit::addKey, key);
}
