#pragma once

#include <QFile>
#include <QString>

/// A file of /proc, whole; empty when there is none.
inline QByteArray procFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// A size out of the process's status, such as "VmRSS:", in MiB; 0 when it is missing.
inline double memoryOf(qint64 processId, const char *name)
{
    const QByteArray status = procFile(QStringLiteral("/proc/%1/status").arg(processId));
    const int at = status.indexOf(name);
    return at < 0 ? 0 : status.mid(at + int(qstrlen(name)), 40).trimmed().split(' ').at(0).toDouble() / 1024;
}
