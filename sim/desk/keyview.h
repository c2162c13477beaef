#pragma once

#include <QWidget>

namespace sim
{
/// A key of the front panel with the LED behind it.
class KeyView : public QWidget
{
    Q_OBJECT

public:
    /// `code` is what the key panel calls it, `legend` is on the key, `light` is the LED's colour.
    KeyView(int code, const QString &legend, const QColor &light, QWidget *parent);

    int code() const { return m_code; }

    void setLit(bool isLit);

signals:
    void pressed(int code);
    void released(int code);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void setDown(bool isDown);

    const int m_code;
    const QString m_legend;
    const QColor m_light;
    bool m_isLit = false;
    bool m_isDown = false;
};
} // namespace sim
