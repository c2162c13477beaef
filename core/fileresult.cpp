#include "fileresult.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

void FileResult::report() const
{
    if (outcome == Failed) {
        std::printf("%s\n", failure.constData());
    }
}

FileResult fileFailure(const char *what, const char *path, int count)
{
    const char *reason = std::strerror(errno);
    return {FileResult::Failed, count, QByteArray("can't ") + what + ' ' + path + ": " + reason};
}
