#pragma once

#include "gui.h"

/// The LCD's windows, built with the graphics library on the keypad thread.

enum Page { StartPage, ViewPage, SwitchPage, ScenePage, SetupPage, MenuHeader, PageCount };

/// All windows by `Page`; filled by `GUI_Task`.
extern WM_Handle hWin[PageCount];

/// Ids of the widgets. A page's buttons count on from the first one.
constexpr int IdTitle = 1000;  ///< of the header
constexpr int IdStatus = 1001; ///< of the header
constexpr int IdButton = 2000; ///< the first button of a page
constexpr int IdEdit = 3000;   ///< the first edit field of the SETUP page

constexpr int MapButtons = 20;    ///< on the VIEW and SCENE pages
constexpr int SwitchButtons = 40; ///< on the SWITCH page
constexpr int SetupFields = 6;    ///< on the SETUP page
constexpr int SetupFieldChars = 15;

/// Makes all windows, shows the start page for 2 s, or until the panel is to end, and then the header and the
/// VIEW page. \return the result of the last `WM_Exec`
int GUI_Task();

WM_Handle StartPageCreate();
WM_Handle MenuPageCreate();
WM_Handle ViewPageCreate();
WM_Handle SwitchPageCreate();
WM_Handle ScenePageCreate();
WM_Handle SetupPageCreate();

/// A button of the VIEW, SWITCH or SCENE page, from 0 on; texts of a button that the page does not have are
/// ignored.
void setButtonText(Page page, int button, const char *text);
void setButtonPressed(Page page, int button, bool isPressed);
/// Numbers the first `count` buttons of a page from "01" on.
void labelButtons(Page page, int count);

/// An edit field of the SETUP page, from 0 on.
WM_Handle setupField(int field);

/// Title and status line of the header.
void setHeader(const char *title, const char *status);

/// Brings a page and the header to the front.
void bringToFront(Page page);
