#include "stylesheet.h"

#include <QApplication>
#include <QFont>

namespace
{
// The rules whose selectors begin with an underscore match nothing: an alternative look of the scroll bar,
// switched off.
constexpr char styleSheet[] =
    "QPushButton {border: solid 0; border-radius:5px; background-color: #888888; color:#ffffff;}"
    "QPushButton:checked {background-color: #01AFF4; color:#000000;}"
    "QPushButton:pressed {background-color: #01AFF4; color:#000000;}"
    "QPushButton:disabled {color:#cccccc;}"
    "MainWindow {background-color:#eeeeee;}"
    "QScrollArea {border: solid 0;}"
    "QScrollBar:vertical { border: 0 solid grey; border-radius:5px; background: none; "
    "background-color: #ffffff; width: 40px; margin: 42px 0 42px 0; }"
    "QScrollBar::handle:vertical { border: 0 solid grey; border-radius:5px; background-color: #aaaaaa; "
    "min-height: 40px; }"
    "QScrollBar::add-line:vertical { border: 0 solid grey; border-radius:5px; background-color: #cccccc; "
    "height: 40px; subcontrol-position: bottom; subcontrol-origin: margin; }"
    "QScrollBar::sub-line:vertical { border: 0 solid grey; border-radius:5px; background-color: #cccccc; "
    "height: 40px; subcontrol-position: top; subcontrol-origin: margin; }"
    "QScrollBar:up-arrow:vertical, QScrollBar::down-arrow:vertical { border: 0 solid grey; "
    "border-radius:5px; width: 32px; height: 32px; background-color: #dddddd; }"
    "_QScrollBar:vertical {border: solid 0; background-color: #cccccc; color:#000000; width: 40px; }"
    "_QScrollBar:handle:vertical {background-color: #aaaaaa; color:#000000; margin: 41px 0px 41px 0px;}";
} // namespace

void setTouchscreenStyle()
{
    qApp->setStyleSheet(QLatin1String(styleSheet));
    QApplication::setFont(QFont(QStringLiteral("Ubuntu"), 12, QFont::Bold));
}
