#pragma once

#include "mxshm.h"

#include <QString>

/// A style sheet, or a path, with the present theme in it: `%1` is its folder and `%2` the number of a
/// picture.
inline QString themed(const char *text, int number = 0)
{
    return QString::fromLatin1(text).arg(QString::fromLatin1(g_mxConfig->images.get()),
                                         QString::number(number));
}
