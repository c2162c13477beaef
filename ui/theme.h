#pragma once

#include "mxshm.h"

#include <QString>

/// A style sheet, or a path, with the folder of the present theme for `%1`.
inline QString themed(const char *text)
{
    return QString::fromLatin1(text).arg(QString::fromLatin1(g_mxConfig->images.get()));
}

/// The same, with the number of a picture for `%2`.
inline QString themed(const char *text, int number)
{
    return QString::fromLatin1(text).arg(QString::fromLatin1(g_mxConfig->images.get()),
                                         QString::number(number));
}
