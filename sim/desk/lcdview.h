#pragma once

#include "lcdmodule.h"

#include <QImage>
#include <QWidget>

/// The LCD in its frame, as the module shows it.
class LcdView : public QWidget
{
    Q_OBJECT

public:
    static constexpr int dotSize = 4; ///< pixels, the gap to the next dot included
    static constexpr int border = 28; ///< frame and glass around the dots
    static constexpr QSize extent{sim::LcdModule::width * dotSize + 2 * border,
                                  sim::LcdModule::height *dotSize + 2 * border};

    explicit LcdView(QWidget *parent);

    /// What is to be seen from now on.
    void showPicture(const sim::LcdModule &lcd, bool light);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QImage m_dots; ///< a pixel per dot; 1 is dark
    bool m_light = false;
};
