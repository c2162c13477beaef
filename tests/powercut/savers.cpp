#include "captionstore.h"
#include "devicefiles.h"
#include "mxshm.h"
#include "mxsite.h"
#include "scenestore.h"
#include "settingsstore.h"

#include <QFile>
#include <QSettings>
#include <map>
#include <memory>

namespace
{
constexpr int Scene = 3;
constexpr char Captions[] = "/home/app/config/caption.ini";

void fill(MxShm &shm, char round)
{
    shm.port = MxMaxPort;
    shm.scene = MxMinScene;
    shm.beep = shm.backlight = shm.sleep = round;
    for (int i = 0; i < MxMaxPort; ++i) {
        shm.map[i] = static_cast<quint16>(round);
        shm.spliceData[i] = static_cast<quint32>(round);
        shm.inputCaption[i].set(QByteArray("caption ") + char('0' + round));
        shm.outputCaption[i].set(QByteArray("caption ") + char('0' + round));
    }
    for (auto *address : {&shm.eth0Address, &shm.eth0Netmask, &shm.eth1Address, &shm.eth1Gateway}) {
        address->set(QByteArray("10.0.0.") + char('0' + round));
    }
}

/// As the web side leaves it.
void layoutText(const char *path, char round)
{
    DeviceFiles::makeFolder("/home/www/splice").report();
    const QByteArray text(3000, char('0' + round));
    DeviceFiles::write(path, reinterpret_cast<const unsigned char *>(text.constData()), text.size()).report();
}

/// For comparison: what is commonly written in place of a saver.
void settingsAlone(const MxShm &shm)
{
    QSettings file(QFile::decodeName(MxSite::path(Captions)), QSettings::IniFormat);
    for (int i = 0; i < MxMaxPort; ++i) {
        file.setValue(QStringLiteral("caption/input%1").arg(i + 1),
                      QString::fromLatin1(shm.inputCaption[i].get()));
    }
    file.sync();
}

void truncateAndWrite(const MxShm &shm)
{
    QFile file(QFile::decodeName(MxSite::path(Captions)));
    file.open(QIODevice::WriteOnly | QIODevice::Truncate);
    file.write("[caption]\n");
    for (int i = 0; i < MxMaxPort; ++i) {
        file.write("input" + QByteArray::number(i + 1) + "=" + QByteArray(shm.inputCaption[i].get()) + "\n");
    }
}
} // namespace

/// Saves once, as the program does: which saver, and the number that is everywhere in what it saves.
int main(int argc, char **argv)
{
    const auto record = std::make_unique<MxShm>();
    MxShm &shm = *record;
    const char round = argc == 3 ? char(argv[2][0] - '0') : '\0';
    fill(shm, round);
    const std::map<QByteArray, std::function<void()>> savers = {
        {"settings", [&] { SettingsStore::save(shm); }},
        {"captions", [&] { CaptionStore::save(shm); }},
        {"live", [&] { SceneStore::save(shm, 0); }},
        {"scene", [&] { SceneStore::save(shm, Scene); }},
        {"layout",
         [&] {
             layoutText("/home/www/splice/splice.txt", round);
             SceneStore::save(shm, Scene);
         }},
        {"recall",
         [&] {
             layoutText("/home/www/splice/splice3.txt", round);
             SceneStore::recall(shm, Scene, [](unsigned long) {});
         }},
        {"qsettings", [&] { settingsAlone(shm); }},
        {"truncate", [&] { truncateAndWrite(shm); }},
    };
    const auto saver = savers.find(argc == 3 ? argv[1] : "");
    if (saver == savers.end()) {
        return 2;
    }
    saver->second();
    return 0;
}
