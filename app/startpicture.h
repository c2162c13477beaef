#pragma once

#include <QSplashScreen>

/// The picture that is shown at the start. Unlike Qt's it does not go away when it is touched.
class StartPicture : public QSplashScreen
{
public:
    using QSplashScreen::QSplashScreen;

protected:
    void mousePressEvent(QMouseEvent *) override {}
};
