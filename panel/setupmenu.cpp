#include "setupmenu.h"

#include "addressfields.h"
#include "keys.h"

namespace
{
constexpr int PositionsPerField = 16;
constexpr int LastPosition = PositionsPerField * SetupFields - 2; ///< the last digit of the last field

/// Characters 3, 7 and 11 of a field are dots, and 15 is behind its end.
bool isDigitPlace(int position)
{
    return position % 4 != 3;
}

void say(const char *status)
{
    setHeader("SETUP", status);
}
} // namespace

SetupMenu::SetupMenu()
    : MenuPage(SetupPage)
{
    loadAddressFields();
}

void SetupMenu::show()
{
    say("");
}

void SetupMenu::press(int key)
{
    switch (key) {
    case KeyLeft:
        moveLeft();
        break;
    case KeyRight:
        moveRight();
        break;
    case KeySave:
        saveAddressFields();
        say("ip saved");
        m_position = -1;
        break;
    case KeyLoad:
        loadAddressFields();
        say("ip loaded");
        m_position = -1;
        break;
    case KeyEdit:
        m_position = isEditing() ? -1 : 0;
        break;
    default:
        if (isEditing()) {
            edit(key);
        }
    }
    placeCursor();
}

/// Keys 1 to 9 and ten are digits; any other one leaves the digit as it is.
void SetupMenu::edit(int key)
{
    if (key <= KeyTen) {
        type(static_cast<char>('0' + key % 10));
    }
    moveRight();
}

void SetupMenu::type(char digit)
{
    GUI_SendKeyMsg(digit, 1);
    GUI_SendKeyMsg(digit, 0);
}

void SetupMenu::moveRight()
{
    if (m_position < LastPosition) {
        ++m_position;
    }
    if (!isDigitPlace(m_position)) {
        ++m_position;
    }
}

void SetupMenu::moveLeft()
{
    if (m_position > 0) {
        --m_position;
    }
    if (!isDigitPlace(m_position)) {
        --m_position;
    }
}

void SetupMenu::placeCursor() const
{
    if (!isEditing()) {
        WM_SetFocus(hWin[StartPage]);
        return;
    }
    const WM_Handle field = setupField(m_position / PositionsPerField);
    EDIT_SetCursorAtChar(field, m_position % PositionsPerField);
    WM_SetFocus(field);
}
