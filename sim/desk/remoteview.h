#pragma once

#include <QWidget>

namespace sim
{
/// The infrared remote control.
class RemoteView : public QWidget
{
    Q_OBJECT

public:
    static constexpr QSize Extent{216, 336};

    explicit RemoteView(QWidget *parent);

    /// Presses and releases the key that stands for this character, as a finger would. One that is not there
    /// does nothing; releasing lifts whatever is down.
    void press(char key);
    void release();

signals:
    /// The remote has sent this key: "0".."9", "N", "R", "S" or "X".
    void sent(char key);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    char m_down = 0; ///< the key that is held; 0 is none
};
} // namespace sim
