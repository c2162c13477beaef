#pragma once

#include "font.h"

#include <cstdint>

/// The embedded graphics library: windows, widgets, fonts and drawing on a small display.
///
/// Call all operations from one thread, and none before `GUI_Init`. Coordinates count dots, x to the right
/// and y down. Drawing operations take them relative to the window that is being painted or, outside of
/// painting, relative to the display. A rectangle includes its last column and row. A handle is ignored if it
/// is 0, or of a deleted window, or of another kind of widget: setters do nothing, getters return 0, null or
/// an empty text.
///
/// An operation that changes nothing visible draws nothing: setters compare, store, and invalidate what has
/// changed; only `WM_Exec` paints.

// Display ---------------------------------------------------------------------------------------------------

/// Size of the display in dots, which `GUI_Init` asks the port for; 0 before that, and if the display did not
/// start.
int LCD_GetXSize();
int LCD_GetYSize();

/// 0xRRGGBB.
using GUI_Color = std::uint32_t;
constexpr GUI_Color GUI_BLACK = 0x000000;
constexpr GUI_Color GUI_WHITE = 0xFFFFFF;

/// Conversions of a display with one bit per dot: index 0 is black, 1 is white. A colour gets the index of
/// the nearer one by its luminance; an index counts by its lowest bit.
int LCD_Color2Index_1(GUI_Color color);
GUI_Color LCD_Index2Color_1(int index);
int LCD_GetIndexMask_1();

// Start and time --------------------------------------------------------------------------------------------

/// Starts the library and the display. There are no windows then but the desktop, all defaults are set, and
/// the display is white. It may be called again: all windows are deleted first, and hear `WM_DELETE`. \return
/// 0, or what `LCD_L0_Init` returned if that is not 0; the display has no dots then
int GUI_Init();

/// Milliseconds by the port's clock.
std::uint32_t GUI_GetTime();
/// Waits by the port's clock, painting what becomes invalid meanwhile.
void GUI_Delay(std::uint32_t ms);
/// `WM_Exec`, and the port's idle hook when there was nothing to do. \return as `WM_Exec`
int GUI_Exec();

// Drawing ---------------------------------------------------------------------------------------------------

/// What is drawn with; `GUI_Init` and each painting begin with black on white and `GUI_Font6x8`, solid text.
/// A font that is null or has a width or height out of range is ignored, here and by widgets.
void GUI_SetColor(GUI_Color color);
void GUI_SetBkColor(GUI_Color color);
GUI_Color GUI_GetColor();
GUI_Color GUI_GetBkColor();
void GUI_SetFont(const GUI_Font *font);
const GUI_Font *GUI_GetFont();

enum GUI_TextMode {
    GUI_TEXT_SOLID,       ///< dots in the colour on a cell in the background colour
    GUI_TEXT_TRANSPARENT, ///< dots in the colour only
    GUI_TEXT_XOR          ///< dots inverted
};
void GUI_SetTextMode(GUI_TextMode mode);

/// A rectangle from (x0, y0) to (x1, y1), both included; empty when x1 < x0 or y1 < y0. Coordinates of
/// drawing are bounded to ±16777215.
struct GUI_Rect {
    int x0, y0, x1, y1;
};

/// Limits drawing further, within what the window manager allows; null: no further limit.
void GUI_SetClipRect(const GUI_Rect *rect);

/// Fills the window, or the display, with the background colour.
void GUI_Clear();
void GUI_DrawPoint(int x, int y);
void GUI_DrawHLine(int y, int x0, int x1);
void GUI_DrawVLine(int x, int y0, int y1);
void GUI_DrawLine(int x0, int y0, int x1, int y1);
void GUI_DrawRect(const GUI_Rect &rect);
void GUI_FillRect(const GUI_Rect &rect);
void GUI_ClearRect(const GUI_Rect &rect);
void GUI_InvertRect(const GUI_Rect &rect);

/// A picture of `width` x `height` dots, rows `bytesPerLine` apart. With 1 bit per dot the leftmost dot is in
/// bit 7. A dot's value is the number of a colour in the palette; values beyond it count as 0. A bitmap of
/// another depth, without data or palette, or with rows that overlap is not drawn.
struct GUI_Bitmap {
    std::uint16_t width;
    std::uint16_t height;
    std::uint16_t bytesPerLine;
    std::uint16_t bitsPerPixel; ///< 1 or 8
    const std::uint8_t *data;
    const GUI_Color *palette;
    int paletteSize; ///< number of colours, 1..256
};
void GUI_DrawBitmap(const GUI_Bitmap &bitmap, int x, int y);

/// Alignment: one of each direction.
enum GUI_Align {
    GUI_ALIGN_LEFT = 0,
    GUI_ALIGN_HCENTER = 1,
    GUI_ALIGN_RIGHT = 2,
    GUI_ALIGN_TOP = 0,
    GUI_ALIGN_VCENTER = 4,
    GUI_ALIGN_BOTTOM = 8
};

/// Texts are Latin-1, NUL-terminated, of one line; null counts as empty. The cell of the first character has
/// its upper left corner at the place.
void GUI_DispStringAt(const char *text, int x, int y);
/// Within the rectangle, clipped by it; `align` is a sum of `GUI_Align`. A text that is wider than the
/// rectangle begins at its left edge, whatever the alignment.
void GUI_DispStringInRect(const char *text, const GUI_Rect &rect, int align);
/// Width in dots, in the current font. Characters from number 1048576 on do not count.
int GUI_GetStringWidth(const char *text);

// Windows ---------------------------------------------------------------------------------------------------

/// A window; 0 is none. Handles of deleted windows stay dead.
using WM_Handle = int;

/// What a window is told.
enum WM_MessageId {
    WM_PAINT = 1,     ///< draw yourself, all of it; clipped to what needs it
    WM_KEY,           ///< `key` was pressed (`pressed` 1) or released (0) while the window has the focus
    WM_SET_FOCUS,     ///< it has got the focus
    WM_KILL_FOCUS,    ///< it has lost the focus that it was told of
    WM_NOTIFY_PARENT, ///< the child `source` has something to tell: `value` is a `WM_Notification`
    WM_DELETE,        ///< it is about to be deleted and is to free what it owns; its children are gone
    WM_USER = 0x400   ///< from here on: the application's own
};

enum WM_Notification {
    WM_CLICKED = 1,  ///< a button went down by key
    WM_RELEASED,     ///< a button went up by key; not sent when it went up because it lost the focus
    WM_VALUE_CHANGED ///< an edit field's text, or another widget's value, was changed by key
};

struct WM_Message {
    int id = 0;
    WM_Handle window = 0; ///< to whom
    WM_Handle source = 0; ///< from whom; 0 when that is no window
    int key = 0;
    int pressed = 0;
    std::intptr_t value = 0; ///< a notification, or the application's
};

/// Hears a window's messages. It hands those that it does not handle on to `WM_DefaultProc`.
using WM_Callback = void (*)(WM_Message &message);

/// Flags of creation, to be combined. Buttons and edit fields take keys in any case.
enum WM_Flags {
    WM_HIDDEN = 0,
    WM_VISIBLE = 1,
    WM_TAKES_KEYS = 2 ///< the focus may be handed on to it
};

/// The window behind all others. It shows the desktop colour, at first the background colour of `GUI_Init`.
WM_Handle WM_GetDesktopWindow();
void WM_SetDesktopColor(GUI_Color color);

/// Creates a window on top of its siblings in the client area of `parent` (0: the desktop). It has no look of
/// its own: the callback paints all of it. Sizes below 0 count as 0, sizes and places are bounded to ±16383.
/// A window is opaque: what lies below it is not painted. \return its handle; 0 when the parent is dead or
/// about to be deleted, or when there are 4095 windows
WM_Handle WM_CreateWindow(int x, int y, int width, int height, WM_Handle parent, int flags,
                          WM_Callback callback);
/// Hides the window, then deletes it and all of its children. The desktop cannot be deleted, hidden,
/// disabled, moved or sized. A window that is deleted by its own callback goes at once; the callback must not
/// touch it after that.
void WM_DeleteWindow(WM_Handle window);
int WM_IsWindow(WM_Handle window);

/// Sets who hears the window's messages first; null: only the widget itself hears them.
void WM_SetCallback(WM_Handle window, WM_Callback callback);
/// Does what the widget itself does upon a message; a plain window does nothing.
void WM_DefaultProc(WM_Message &message);
/// Delivers the message at once.
void WM_SendMessage(WM_Handle window, WM_Message message);
/// Sends `WM_NOTIFY_PARENT` to the parent at once.
void WM_NotifyParent(WM_Handle window, WM_Notification what);

void WM_ShowWindow(WM_Handle window);
void WM_HideWindow(WM_Handle window);
int WM_IsVisible(WM_Handle window); ///< 1 when it is shown, and so are all windows that it lies in

/// A window that is disabled, or lies in one that is, looks as before but cannot have the focus, so that no
/// key reaches it. Windows are enabled at first.
void WM_EnableWindow(WM_Handle window);
void WM_DisableWindow(WM_Handle window);
int WM_IsEnabled(WM_Handle window); ///< 1 when it is enabled, and so are all windows that it lies in

/// Places are relative to the parent's client area.
void WM_MoveTo(WM_Handle window, int x, int y);
void WM_MoveBy(WM_Handle window, int dx, int dy);
void WM_SetSize(WM_Handle window, int width, int height);

/// Changes the order among siblings.
void WM_BringToTop(WM_Handle window);
void WM_BringToBottom(WM_Handle window);

WM_Handle WM_GetParent(WM_Handle window);
/// Looks for the first descendant with this id, parents before their children. It walks the tree: whoever
/// needs a window in every cycle keeps its handle. \return 0 when there is none
WM_Handle WM_GetDialogItem(WM_Handle window, int id);
/// 0 for a window that was created without an id.
int WM_GetId(WM_Handle window);
void WM_SetId(WM_Handle window, int id);
/// A value for whoever uses the window; null at first. The library does nothing with it.
void *WM_GetUserData(WM_Handle window);
void WM_SetUserData(WM_Handle window, void *data);
/// The window's place on the display.
GUI_Rect WM_GetWindowRect(WM_Handle window);
/// All of the window in the coordinates that its painting and `WM_InvalidateRect` use: from (0, 0) on.
GUI_Rect WM_GetBounds(WM_Handle window);

/// The next `WM_Exec` paints all of the window, or the rectangle, anew, but not its children. Nothing happens
/// while the window is not visible.
void WM_InvalidateWindow(WM_Handle window);
void WM_InvalidateRect(WM_Handle window, const GUI_Rect &rect);

/// Paints what has become invalid, from back to front, and no dot for two windows. A window hears `WM_PAINT`
/// once for each of its visible rectangles that is to be painted. What callbacks change meanwhile is painted
/// by this call or by the next one. A call while painting does nothing. \return 1 if anything was painted
int WM_Exec();

// Focus and keys --------------------------------------------------------------------------------------------

enum GUI_Key {
    GUI_KEY_BACKSPACE = 8,
    GUI_KEY_TAB = 9,
    GUI_KEY_ENTER = 13,
    GUI_KEY_DELETE = 127,
    GUI_KEY_LEFT = 0x110,
    GUI_KEY_RIGHT,
    GUI_KEY_UP,
    GUI_KEY_DOWN,
    GUI_KEY_HOME,
    GUI_KEY_END,
    GUI_KEY_INSERT
};

/// Gives the focus to a window, or takes it away (0). Any window that is visible and enabled may have it;
/// others are ignored.
///
/// When the window with the focus, or one that it lies in, is hidden, disabled or deleted, the focus is
/// handed on to the next window in the same parent that takes keys and is visible and enabled. The order is
/// that from back to front, which is the order of creation unless it was changed; the first one follows the
/// last. If there is none, the parent gets the focus if it takes keys, else the next one in the parent's
/// parent, and so on up to the desktop. If nobody is found, no window has the focus.
void WM_SetFocus(WM_Handle window);
WM_Handle WM_GetFocus();
/// Sends a character (Latin-1) or a `GUI_Key`, pressed (1) or released (0), to the window with the focus.
/// \return 1 when there was one
int GUI_SendKeyMsg(int key, int pressed);

// Widgets of one's own --------------------------------------------------------------------------------------

/// Does what the widget itself does upon a message, and nothing upon those that it does not know.
/// `WM_DefaultProc` calls it.
using WM_WidgetProc = void (*)(WM_Message &message, void *state);

/// Creates a widget that is written outside of the library, such as `examples/meter.h`. It is a window like
/// any other: callback and user data are free for whoever uses it. `state` is the widget's own, and `proc`
/// frees it at `WM_DELETE`. \return as `WM_CreateWindow`, and 0 when `proc` is null; the state stays the
/// caller's then
WM_Handle WM_CreateWidget(int x, int y, int width, int height, WM_Handle parent, int flags, int id,
                          WM_WidgetProc proc, void *state);
/// \return the state of a widget that was created with this `proc`; null for any other handle, and once the
/// widget has heard `WM_DELETE`
void *WM_GetWidgetState(WM_Handle widget, WM_WidgetProc proc);

// The library's widgets: what all of them have --------------------------------------------------------------

// A text is aligned in its widget. Where the widget reaches beyond the display and the text would lose dots
// there, it moves as little as keeps them; one that is too long for that begins where the display does.

/// The look of an edge: nothing, or a line one dot wide in the widget's text colour when it is released.
struct WIDGET_Effect {
    int width; ///< what contents keep off, in dots, 0..32; the line is at its outside
};
extern const WIDGET_Effect WIDGET_Effect_None;
extern const WIDGET_Effect WIDGET_Effect_Simple;

/// For buttons and edit fields that are created from then on; `GUI_Init` begins with the simple effect. Texts
/// begin without one, and a frame window has its border instead.
void WIDGET_SetDefaultEffect_None();
void WIDGET_SetDefaultEffect_Simple();
void WIDGET_SetEffect(WM_Handle widget, const WIDGET_Effect *effect); ///< null is ignored

// TEXT_: a line of text -------------------------------------------------------------------------------------

/// Black on white, at the left and vertically centred at first.
WM_Handle TEXT_CreateEx(int x, int y, int width, int height, WM_Handle parent, int flags, int id,
                        const char *text);
void TEXT_SetText(WM_Handle text, const char *string);
/// Copies at most `size` - 1 characters and a NUL. \return the length of the whole text
int TEXT_GetText(WM_Handle text, char *buffer, int size);
void TEXT_SetFont(WM_Handle text, const GUI_Font *font);
void TEXT_SetTextAlign(WM_Handle text, int align);
void TEXT_SetTextColor(WM_Handle text, GUI_Color color);
void TEXT_SetBkColor(WM_Handle text, GUI_Color color);

// BUTTON_: a box with one line of text or a picture, released or pressed ------------------------------------

enum BUTTON_State { BUTTON_RELEASED = 0, BUTTON_PRESSED = 1 };

/// The text is centred at first.
WM_Handle BUTTON_CreateEx(int x, int y, int width, int height, WM_Handle parent, int flags, int id);
void BUTTON_SetText(WM_Handle button, const char *text);
int BUTTON_GetText(WM_Handle button, char *buffer, int size); ///< as `TEXT_GetText`
/// Shown in this state instead of the text, at the upper left corner within the edge; null: none. The bitmap
/// stays the caller's and must live as long as the button; if its dots change, invalidate the button.
void BUTTON_SetBitmap(WM_Handle button, BUTTON_State state, const GUI_Bitmap *bitmap);
void BUTTON_SetFont(WM_Handle button, const GUI_Font *font);
void BUTTON_SetTextAlign(WM_Handle button, int align);
void BUTTON_SetBkColor(WM_Handle button, BUTTON_State state, GUI_Color color);
void BUTTON_SetTextColor(WM_Handle button, BUTTON_State state, GUI_Color color);
void BUTTON_SetPressed(WM_Handle button, int pressed);
int BUTTON_IsPressed(WM_Handle button);
/// For buttons that are created from then on. `GUI_Init` begins with black on white, inverted when pressed.
void BUTTON_SetDefaultBkColor(BUTTON_State state, GUI_Color color);
void BUTTON_SetDefaultTextColor(BUTTON_State state, GUI_Color color);

// EDIT_: a line of text that can be typed over --------------------------------------------------------------

/// Shows the cursor while it has the focus: in insert mode a bar before a character, else the character
/// inverted; never beyond the edge. A text that is wider than the field scrolls with the cursor, which is
/// always seen whole, and only when it must; another one stands as it is aligned. Black on white, at the left
/// and vertically centred at first; a text at the left keeps one dot off the edge if there is room.
/// `maxLength` 1..255 characters; others are bounded to that.
WM_Handle EDIT_CreateEx(int x, int y, int width, int height, WM_Handle parent, int flags, int id,
                        int maxLength);
/// Cuts the text to the maximum length; the cursor goes behind its end.
void EDIT_SetText(WM_Handle edit, const char *text);
int EDIT_GetText(WM_Handle edit, char *buffer, int size); ///< as `TEXT_GetText`
void EDIT_SetFont(WM_Handle edit, const GUI_Font *font);
void EDIT_SetTextAlign(WM_Handle edit, int align);
void EDIT_SetTextColor(WM_Handle edit, GUI_Color color);
void EDIT_SetBkColor(WM_Handle edit, GUI_Color color);
/// Insert (1, the state at creation) or overwrite (0).
void EDIT_SetInsertMode(WM_Handle edit, int insert);
/// Bounded to the text: 0 is before the first character, the length behind the last.
void EDIT_SetCursorAtChar(WM_Handle edit, int position);
int EDIT_GetCursorCharPos(WM_Handle edit);
/// What a pressed key does: characters are typed (overwrite mode replaces the one at the cursor), and the
/// cursor moves on; backspace and delete, the arrows, home, end and insert do what they say.
void EDIT_AddKey(WM_Handle edit, int key);

// FRAMEWIN_: a window with border and title, a client area within -------------------------------------------

/// Children lie in the client area. A new one has a title bar and the default border.
WM_Handle FRAMEWIN_Create(const char *title, WM_Callback callback, int flags, int x, int y, int width,
                          int height);
void FRAMEWIN_SetText(WM_Handle frame, const char *title);
void FRAMEWIN_SetTitleVis(WM_Handle frame, int visible);
void FRAMEWIN_SetBorderSize(WM_Handle frame, int size); ///< dots, 0..32
void FRAMEWIN_SetClientColor(WM_Handle frame, GUI_Color color);
void FRAMEWIN_SetFont(WM_Handle frame, const GUI_Font *font); ///< of the title
/// For frame windows that are created from then on. `GUI_Init` begins with 1 and white.
void FRAMEWIN_SetDefaultBorderSize(int size);
void FRAMEWIN_SetDefaultClientColor(GUI_Color color);
