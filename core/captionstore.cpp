#include "captionstore.h"

#include "devicefiles.h"
#include "inifile.h"
#include "mxshm.h"

namespace
{
constexpr char CaptionFile[] = "/home/app/config/caption.ini";

QString keyOf(const char *kind, int number)
{
    return QLatin1String(kind) + QString::number(number);
}

void loadOne(const QSettings &file, const char *kind, int number, SharedText<32> &caption)
{
    const QString key = QStringLiteral("caption/") + keyOf(kind, number);
    const QByteArray value = file.value(key).toString().toLatin1();
    // One that begins with NUL, as in a file with a hole in it, would be empty in the record.
    caption.set(qstrlen(value) == 0 ? QByteArray::number(number) : value);
}

void saveOne(QSettings &file, const char *kind, int number, const SharedText<32> &caption)
{
    file.setValue(keyOf(kind, number), QString::fromUtf8(caption.get()));
}
} // namespace

void CaptionStore::load(MxShm &shm)
{
    IniFile file(CaptionFile);
    for (int i = 0; i < portCount(shm); ++i) {
        loadOne(file, "input", i + 1, shm.inputCaption[i]);
        loadOne(file, "output", i + 1, shm.outputCaption[i]);
    }
    for (int i = 0; i < sceneCount(shm); ++i) {
        loadOne(file, "scene", i + 1, shm.sceneCaption[i]);
    }
    file.loaded().report();
}

void CaptionStore::save(const MxShm &shm)
{
    DeviceFiles::removeLeftovers(CaptionFile);
    {
        IniUpdate file(CaptionFile);
        file.beginGroup(QStringLiteral("caption"));
        for (int i = 0; i < portCount(shm); ++i) {
            saveOne(file, "input", i + 1, shm.inputCaption[i]);
            saveOne(file, "output", i + 1, shm.outputCaption[i]);
        }
        for (int i = 0; i < sceneCount(shm); ++i) {
            saveOne(file, "scene", i + 1, shm.sceneCaption[i]);
        }
        file.endGroup();
        file.saved().report();
    }
    DeviceFiles::syncToFlash();
}
