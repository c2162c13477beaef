#pragma once

#include "framememory.h"
#include "menu.h"
#include "pages.h"
#include "panelrun.h"
#include "testunit.h"

/// The menu on a unit, stepped by hand: no thread, no LCD, no key board.
class PanelUnit : public TestUnit
{
public:
    explicit PanelUnit(int ports = 8, const Settings &settings = {{"system/keypad", "1"}})
        : TestUnit(ports, settings)
    {
        start(false, [](unsigned long) {});
        ::run = 0; // no waiting for the start picture
        restart();
    }

    /// The panel begins anew, on a record in which nothing is switched and input 1 is on every output.
    void restart()
    {
        comm().MxCmdOneToAll(0);
        GUI_Task();
        m_menu.reset(new Menu([this](const std::uint8_t *bytes, int n) {
            m_leds.append(reinterpret_cast<const char *>(bytes), n);
        }));
    }

    /// Words: a key ("left", "right", "save", "load", "menu", "edit", "out4", "in3", or any by its number in
    /// place of the 3), characters of the remote ("ir3X", a cycle each), or cycles without input ("wait500").
    /// A last cycle shows the result.
    void act(const QByteArray &words)
    {
        static const QList<QByteArray> names = {"left", "right", "save", "load", "menu", "edit"};
        for (const QByteArray &word : words.split(' ')) {
            const int named = names.indexOf(word);
            if (word.startsWith("ir")) {
                for (const char character : word.mid(2)) {
                    step(0, character);
                }
            } else if (word.startsWith("wait")) {
                for (int i = word.mid(4).toInt(); i > 0; --i) {
                    step();
                }
            } else if (!word.isEmpty()) {
                step(named >= 0               ? 111 + named
                     : word.startsWith("out") ? 50 + word.mid(3).toInt()
                                              : word.mid(2).toInt());
            }
        }
        step();
    }

    void step(int key = 0, char infrared = '\0')
    {
        WM_Exec();
        m_menu->step(key, infrared);
    }

    /// Title and status line.
    QByteArray header() const { return text(MenuHeader, IdTitle) + "|" + text(MenuHeader, IdStatus); }

    QByteArray text(Page page, int id) const
    {
        char buffer[64] = "";
        BUTTON_GetText(WM_GetDialogItem(hWin[page], id), buffer, sizeof buffer);
        return buffer;
    }

    /// The texts of a page's buttons from the `first` (0-based) on.
    QByteArray texts(Page page, int first, int count) const
    {
        QByteArrayList all;
        for (int i = first; i < first + count; ++i) {
            all.append(text(page, IdButton + i));
        }
        return all.join(',');
    }

    /// An edit field of the SETUP page, from 0 on, and its text.
    static WM_Handle edit(int index) { return WM_GetDialogItem(hWin[SetupPage], IdEdit + index); }

    static QByteArray field(int index)
    {
        char buffer[64] = "";
        EDIT_GetText(edit(index), buffer, sizeof buffer);
        return buffer;
    }

    /// Output numbers that the SWITCH page shows as pressed.
    QByteArray pressed() const
    {
        QByteArrayList all;
        for (int i = 0; i < SwitchButtons; ++i) {
            if (BUTTON_IsPressed(WM_GetDialogItem(hWin[SwitchPage], IdButton + i))) {
                all.append(QByteArray::number(i + 1));
            }
        }
        return all.join(',');
    }

    /// LED bytes since the last call, in hex.
    QByteArray takeLeds() { return std::exchange(m_leds, {}).toHex(); }

private:
    QByteArray m_leds;
    std::unique_ptr<Menu> m_menu;
};
