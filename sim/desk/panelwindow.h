#pragma once

#include "unitwindow.h"

#include <QTimer>
#include <vector>

namespace sim
{
class VirtualUnit;
class KeyView;
class LcdView;
class RemoteView;

/// A unit with a front panel, and the remote control beside it: LCD and LEDs as the unit has them, and keys
/// that it feels. The keyboard is the remote.
class PanelWindow : public UnitWindow
{
    Q_OBJECT

public:
    /// How large it is, in pixels.
    static constexpr QSize Extent{1400, 860};

    /// `ports` is 2..40.
    PanelWindow(VirtualUnit *unit, int ports);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;

private:
    void addKeys(int ports);
    void addKeyBlock(const QString &title, int ports, int firstCode, const QColor &light, int top);
    void addFunctionKeys();
    void addKey(int code, const QString &legend, const QColor &light, const QRect &place);
    void addRemote();
    void drawReceiver();
    void look();

    VirtualUnit *const m_unit;
    LcdView *const m_lcd;
    RemoteView *const m_remote;
    std::vector<KeyView *> m_keys;
    QTimer m_timer;
};
} // namespace sim
