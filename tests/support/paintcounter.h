#pragma once

#include <QEvent>
#include <QObject>

/// Counts the paint events of what it is installed on as an event filter.
class PaintCounter : public QObject
{
public:
    int count = 0;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        count += event->type() == QEvent::Paint;
        return false;
    }
};
