#pragma once

#include <QString>

namespace sim
{
/// What mxsim starts and lends to it. A build folder keeps these parts elsewhere than an installation does.
struct Parts {
    QString program;    ///< the control program
    QString interposer; ///< the library that stands in for its devices
    QString fonts;      ///< the configuration of its fonts
};

/// The parts that belong to the mxsim in this folder. An installation may be moved as a whole.
Parts partsOf(const QString &folder);

/// Where the control program at this path is to be started, since it looks for its pictures from there.
QString picturesFolder(const QString &program);
} // namespace sim
