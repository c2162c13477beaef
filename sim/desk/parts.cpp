#include "parts.h"

#include <QDir>
#include <QFileInfo>

namespace sim
{
Parts partsOf(const QString &folder)
{
    const QDir own(folder);
    const auto at = [&](const char *path) { return QDir::cleanPath(own.filePath(path)); };
    if (own.exists(INSTALLED_LIBRARIES)) {
        return {at(INSTALLED_PROGRAM), at(INSTALLED_LIBRARIES "/libmxioctl.so"), at(INSTALLED_FONTS)};
    }
    return {at("mxcontrol"), at("../lib/libmxioctl.so"), at("../lib/fonts.conf")};
}

QString picturesFolder(const QString &program)
{
    const QDir own = QFileInfo(program).dir();
    return QDir::cleanPath(own.filePath(own.exists(INSTALLED_PICTURES) ? INSTALLED_PICTURES : ".."));
}
} // namespace sim
