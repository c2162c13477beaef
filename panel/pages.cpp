#include "pages.h"

#include "lcdsize.h"
#include "panelrun.h"
#include "startbitmap.h"

#include <cstdio>
#include <iterator>

WM_Handle hWin[PageCount];

namespace
{
constexpr int HeaderHeight = 12;
constexpr int PageHeight = LCD_YSIZE - HeaderHeight;
constexpr int GridTop = 2; ///< of the first row of a page
constexpr int StartMs = 2000;
constexpr int StartStepMs = 10;
constexpr int Centred = GUI_ALIGN_HCENTER | GUI_ALIGN_VCENTER;
constexpr int LeftCentred = GUI_ALIGN_LEFT | GUI_ALIGN_VCENTER;

struct Grid {
    int columns;
    int rows;
    int columnWidth; ///< from one button to the next
    int left;        ///< of the first button
    int buttonWidth;
};
constexpr int GridRowHeight = 10;
constexpr Grid MapGrid = {4, 5, 33, 0, 32};
constexpr Grid SwitchGrid = {8, 5, 16, 1, 16};
static_assert(MapGrid.columns * MapGrid.rows == MapButtons, "");
static_assert(SwitchGrid.columns * SwitchGrid.rows == SwitchButtons, "");

/// The widgets that change, so that nobody has to look for them by their ids.
WM_Handle headerTitle;
WM_Handle headerStatus;
WM_Handle buttons[PageCount][SwitchButtons];
WM_Handle setupFields[SetupFields];

constexpr int SetupRowHeight = 8;
constexpr int SetupGap = 2; ///< between the interfaces
constexpr int LabelWidth = 32;
constexpr char Labels[SetupFields][8] = {"I P1:", "MSK1:", "G W1:", "I P2:", "MSK2:", "G W2:"};

WM_Handle createFrame(int y, int height, GUI_Color color)
{
    const WM_Handle frame = FRAMEWIN_Create("", nullptr, WM_VISIBLE, 0, y, LCD_XSIZE, height);
    FRAMEWIN_SetTitleVis(frame, 0);
    FRAMEWIN_SetBorderSize(frame, 0);
    FRAMEWIN_SetClientColor(frame, color);
    return frame;
}

WM_Handle createPage()
{
    return createFrame(HeaderHeight, PageHeight, GUI_WHITE);
}

WM_Handle createButton(WM_Handle page, const GUI_Rect &place, int id, int align, const WIDGET_Effect &effect)
{
    const WM_Handle button = BUTTON_CreateEx(place.x0, place.y0, place.x1 - place.x0 + 1,
                                             place.y1 - place.y0 + 1, page, WM_VISIBLE, id);
    BUTTON_SetFont(button, &GUI_Font6x8);
    BUTTON_SetTextAlign(button, align);
    WIDGET_SetEffect(button, &effect);
    return button;
}

GUI_Rect area(int x, int y, int width, int height)
{
    return {x, y, x + width - 1, y + height - 1};
}

WM_Handle createGridPage(Page name, const Grid &grid)
{
    const WM_Handle page = createPage();
    for (int i = 0; i < grid.columns * grid.rows; ++i) {
        const int x = grid.left + i % grid.columns * grid.columnWidth;
        const int y = GridTop + i / grid.columns * GridRowHeight;
        buttons[name][i] = createButton(page, area(x, y, grid.buttonWidth, GridRowHeight), IdButton + i,
                                        Centred, WIDGET_Effect_None);
    }
    return page;
}

void createSetupRow(WM_Handle page, int row)
{
    const int y = GridTop + row * SetupRowHeight + (row < SetupFields / 2 ? 0 : SetupGap);
    const WM_Handle label = createButton(page, area(0, y, LabelWidth, SetupRowHeight), IdButton + row,
                                         LeftCentred, WIDGET_Effect_None);
    BUTTON_SetText(label, Labels[row]);
    const WM_Handle edit = EDIT_CreateEx(LabelWidth, y, LCD_XSIZE - LabelWidth, SetupRowHeight, page,
                                         WM_VISIBLE, IdEdit + row, SetupFieldChars);
    WIDGET_SetEffect(edit, &WIDGET_Effect_None);
    EDIT_SetFont(edit, &GUI_Font6x8);
    EDIT_SetTextAlign(edit, LeftCentred);
    EDIT_SetInsertMode(edit, 0);
    setupFields[row] = edit;
}

void setDefaults()
{
    WIDGET_SetDefaultEffect_None();
    BUTTON_SetDefaultBkColor(BUTTON_RELEASED, GUI_WHITE);
    BUTTON_SetDefaultBkColor(BUTTON_PRESSED, GUI_BLACK);
    BUTTON_SetDefaultTextColor(BUTTON_RELEASED, GUI_BLACK);
    BUTTON_SetDefaultTextColor(BUTTON_PRESSED, GUI_WHITE);
    FRAMEWIN_SetDefaultBorderSize(0);
    FRAMEWIN_SetDefaultClientColor(GUI_WHITE);
}

/// By `Page`.
constexpr WM_Handle (*Creators[])() = {StartPageCreate, ViewPageCreate,  SwitchPageCreate,
                                       ScenePageCreate, SetupPageCreate, MenuPageCreate};
static_assert(std::size(Creators) == PageCount, "");

void createPages()
{
    for (int page = 0; page < PageCount; ++page) {
        hWin[page] = Creators[page]();
    }
}
} // namespace

int GUI_Task()
{
    GUI_Init();
    GUI_SetBkColor(GUI_WHITE);
    GUI_SetColor(GUI_BLACK);
    GUI_Clear();
    setDefaults();
    createPages();
    WM_BringToTop(hWin[StartPage]);
    WM_Exec();
    lcd_drawn();
    for (int ms = 0; ms < StartMs && run; ms += StartStepMs) {
        msleep(StartStepMs);
    }
    WM_BringToTop(hWin[MenuHeader]);
    WM_BringToTop(hWin[ViewPage]);
    const int painted = WM_Exec();
    lcd_drawn();
    return painted;
}

WM_Handle StartPageCreate()
{
    const WM_Handle page = createFrame(0, LCD_YSIZE, GUI_WHITE);
    const WM_Handle button =
        createButton(page, area(0, 0, LCD_XSIZE, LCD_YSIZE), 0, Centred, WIDGET_Effect_None);
    BUTTON_SetBitmap(button, BUTTON_RELEASED, &bmbmp_startup);
    return page;
}

WM_Handle MenuPageCreate()
{
    constexpr int TitleWidth = 48;
    const WM_Handle page = createFrame(0, HeaderHeight, GUI_BLACK);
    headerTitle =
        createButton(page, area(0, 0, TitleWidth, HeaderHeight), IdTitle, Centred, WIDGET_Effect_Simple);
    BUTTON_SetPressed(headerTitle, 1);
    headerStatus = createButton(page, area(TitleWidth, 0, LCD_XSIZE - TitleWidth, HeaderHeight), IdStatus,
                                Centred, WIDGET_Effect_Simple);
    return page;
}

WM_Handle ViewPageCreate()
{
    return createGridPage(ViewPage, MapGrid);
}

WM_Handle SwitchPageCreate()
{
    return createGridPage(SwitchPage, SwitchGrid);
}

WM_Handle ScenePageCreate()
{
    return createGridPage(ScenePage, MapGrid);
}

WM_Handle SetupPageCreate()
{
    const WM_Handle page = createPage();
    for (int row = 0; row < SetupFields; ++row) {
        createSetupRow(page, row);
    }
    return page;
}

void setButtonText(Page page, int button, const char *text)
{
    BUTTON_SetText(buttons[page][button], text);
}

void setButtonPressed(Page page, int button, bool isPressed)
{
    BUTTON_SetPressed(buttons[page][button], isPressed ? 1 : 0);
}

void labelButtons(Page page, int count)
{
    char text[16];
    for (int i = 0; i < count; ++i) {
        std::snprintf(text, sizeof text, "%02d", i + 1);
        setButtonText(page, i, text);
    }
}

WM_Handle setupField(int field)
{
    return setupFields[field];
}

void setHeader(const char *title, const char *status)
{
    BUTTON_SetText(headerTitle, title);
    BUTTON_SetText(headerStatus, status);
}

void bringToFront(Page page)
{
    WM_BringToTop(hWin[page]);
    WM_BringToTop(hWin[MenuHeader]);
}
