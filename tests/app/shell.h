#pragma once

#include "mainwindow.h"
#include "qmxkeyboard.h"
#include "qmxscene.h"
#include "qmxsetup.h"
#include "qmxstatus.h"
#include "qmxswitch.h"
#include "testunit.h"
#include "touchscreen.h"

#include <QButtonGroup>

/// A running unit, whose recalls take no time, with its window, which has made so many of its pages.
struct Shell {
    explicit Shell(int pages = 0, const TestUnit::Settings &settings = {})
        : unit(8, settings)
    {
        unit.start(false, atOnce);
        window.reset(new MainWindow);
        window->show();
        for (int i = 0; i < pages; ++i) {
            Touchscreen::tick(*window);
        }
    }

    TestUnit unit;
    std::unique_ptr<MainWindow> window;
};

inline QAbstractButton *menu(const MainWindow &window, int id)
{
    return window.findChild<QButtonGroup *>()->button(id);
}

/// Its four pages, null where there is none yet.
inline QList<const QWidget *> pagesOf(const MainWindow &window)
{
    return {window.findChild<QMxSwitch *>(), window.findChild<QMxScene *>(), window.findChild<QMxSetup *>(),
            window.findChild<QMxStatus *>()};
}

/// Which page is visible, 0 to 3; -1 when none is.
inline int shownPage(const MainWindow &window)
{
    int shown = -1;
    for (int i = 0; i < 4; ++i) {
        const QWidget *page = pagesOf(window).at(i);
        if (page != nullptr && page->isVisible()) {
            shown = shown < 0 ? i : 99;
        }
    }
    return shown;
}

/// Types the password on the page of the settings, which is visible. \return whether all keys were there
inline bool unlock(const MainWindow &window)
{
    return Touchscreen::touch(window, QStringLiteral("Unlock")) &&
           Touchscreen::typeOn(*window.findChild<QMxStatus *>()->findChild<QMxKeyboard *>(),
                               Touchscreen::letters(QStringLiteral("40617295")) << QStringLiteral("Enter"));
}
