#pragma once

#include "lcdmodule.h"

#include <QImage>
#include <QWidget>

namespace sim
{
/// The LCD in its frame, as the module shows it.
class LcdView : public QWidget
{
    Q_OBJECT

public:
    static constexpr int DotSize = 4; ///< pixels, the gap to the next dot included
    static constexpr int Border = 28; ///< frame and glass around the dots
    static constexpr QSize Extent{LcdModule::Width * DotSize + 2 * Border,
                                  LcdModule::Height *DotSize + 2 * Border};

    explicit LcdView(QWidget *parent);

    /// What is to be seen from now on.
    void showPicture(const LcdModule &lcd, bool light);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QImage m_dots; ///< a pixel per dot; 1 is dark
    bool m_light = false;
};
} // namespace sim
