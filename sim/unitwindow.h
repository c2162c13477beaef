#pragma once

#include "boardrouting.h"
#include "boardview.h"
#include "keyview.h"
#include "lcdview.h"
#include "remoteview.h"
#include "virtualunit.h"

#include <QPixmap>
#include <QTimer>

/// The unit as a person sees it from the front: touchscreen or front panel, the remote control beside it, and
/// the crosspoints of its board. It shows what the unit does and has it feel what the person does.
class UnitWindow : public QWidget
{
    Q_OBJECT

public:
    /// How large it is, in pixels.
    static QSize extent(bool isFrontPanel);

    /// `ports` is 2..160, and 2..40 with a front panel.
    UnitWindow(sim::VirtualUnit *unit, int ports, bool isFrontPanel);

    /// The native window that the touchscreen belongs into, made on the X server on return; 0 when there is
    /// none.
    quint64 touchscreenId() const;

    /// The board has switched.
    void showRouting(const BoardRouting &routing);

signals:
    /// The person has closed the window.
    void closed();

protected:
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void addTouchscreen();
    void addFrontPanel();
    int keyHeight() const;
    void addKeys(const QString &title, int firstCode, const QColor &light, int top);
    void addFunctionKeys();
    void addKey(int code, const QString &legend, const QColor &light, const QRect &place);
    void addRemote();
    void drawFace();
    void look();

    sim::VirtualUnit *const m_unit;
    const int m_ports;
    const bool m_isFrontPanel;
    QPixmap m_face; ///< all that never changes
    QWidget *m_touchscreen = nullptr;
    LcdView *m_lcd = nullptr;
    std::vector<KeyView *> m_keys;
    RemoteView *m_remote = nullptr;
    BoardView *m_board = nullptr;
    QTimer m_timer;
};
