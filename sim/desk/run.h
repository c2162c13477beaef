#pragma once

#include "result.h"

#include <QObject>
#include <QString>

namespace sim
{
/// What mxsim does from its start to its end. For the thread that makes it.
class Run : public QObject
{
    Q_OBJECT

public:
    /// Brings everything up.
    virtual Result start() = 0;

signals:
    /// It is over before it was ended, with one line that says why, or an empty text when that has been said,
    /// and mxsim's exit code. More may follow from what it has brought down.
    void ended(const QString &reason, int code);
};
} // namespace sim
