#include "devicefiles.h"
#include "limit.h"
#include "scenestore.h"
#include "testregistry.h"
#include "testunit.h"

#include <QFile>
#include <QTest>
#include <csignal>
#include <fcntl.h>
#include <memory>
#include <sys/fsuid.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
constexpr char LayoutText[] = "/home/www/splice/splice.txt";
constexpr uid_t Nobody = 65534;

/// Takes from this thread what root may do with files that are not its own.
class AsNobody
{
public:
    AsNobody() { ::setfsuid(Nobody); }
    ~AsNobody() { ::setfsuid(::geteuid()); }
};

QByteArray failure(const FileResult &result)
{
    return result.outcome == FileResult::Failed ? result.failure
                                                : "outcome " + QByteArray::number(result.outcome);
}
} // namespace

/// Files that are missing, short, out of reach or on a full disk.
class TestFiles : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_unit.reset(new TestUnit);
        m_shm = std::make_unique<MxShm>();
        m_shm->port = 8;
        m_shm->scene = 10;
    }
    void cleanup() { m_unit.reset(); }

    void failuresNameFileAndReason()
    {
        m_unit->makeFolder("/home/www/splice");
        QFile::link(QStringLiteral("/dev/full"), m_unit->path("/home/full"));
        m_unit->writeFile(LayoutText, QByteArray(3000, 'L'));
        const unsigned char bytes[8] = {};
        QCOMPARE(failure(DeviceFiles::write("/home/full", bytes, 8)),
                 QByteArray("can't write /home/full: No space left on device"));
        QCOMPARE(failure(DeviceFiles::write("/none/file", bytes, 8)),
                 QByteArray("can't write /none/file: No such file or directory"));
        QCOMPARE(failure(DeviceFiles::copy(LayoutText, "/home/full", false)),
                 QByteArray("can't write /home/full: No space left on device"));
        // A part of what was to be written is no success.
        std::signal(SIGXFSZ, SIG_IGN);
        const Limit limit(RLIMIT_FSIZE, 2500);
        QCOMPARE(failure(DeviceFiles::copy(LayoutText, "/home/copy", true)),
                 QByteArray("can't write /home/copy: File too large"));
        QCOMPARE(m_unit->fileContent("/home/copy").size(), 2500);
    }

    /// The mode of a saved layout text lets its owner only read it, as it does root without its capabilities.
    /// The owner writes it again all the same; nobody else does.
    void layoutTextsOfAUserThatIsNotRoot()
    {
        m_unit->makeFolder("/home/www/splice");
        m_unit->writeFile(LayoutText, "first");
        m_unit->writeFile("/home/www/splice/splice4.txt", "root's");
        QFile(m_unit->root()).setPermissions(QFile::Permissions(0x7711));
        for (const char *file : {"/home/app/data", "/home/www/splice", LayoutText}) {
            QVERIFY(::geteuid() != 0 || ::chown(qPrintable(m_unit->path(file)), Nobody, Nobody) == 0);
        }
        const AsNobody user;
        SceneStore::saveSplice(*m_shm, 3);
        SceneStore::loadSplice(*m_shm, 3);
        QCOMPARE(m_unit->fileContent(LayoutText), QByteArray("first"));
        m_unit->writeFile(LayoutText, "second");
        // A date beyond the seconds of 32 bits.
        const timespec in2040[2] = {{2208988800, 0}, {2208988800, 0}};
        QCOMPARE(::utimensat(AT_FDCWD, qPrintable(m_unit->path("/home/www/splice/splice3.txt")), in2040, 0),
                 0);
        SceneStore::saveSplice(*m_shm, 3);
        m_unit->writeFile(LayoutText, "");
        SceneStore::loadSplice(*m_shm, 3);
        QCOMPARE(m_unit->fileContent(LayoutText), QByteArray("second"));
        struct stat text {
        };
        QCOMPARE(::stat(qPrintable(m_unit->path("/home/www/splice/splice3.txt")), &text), 0);
        QCOMPARE(int(text.st_mode & 07777), 01411);
        QVERIFY(::geteuid() != 0 ||
                failure(DeviceFiles::copy(LayoutText, "/home/www/splice/splice4.txt", false)) ==
                    "can't write /home/www/splice/splice4.txt: Permission denied");
    }

private:
    std::unique_ptr<TestUnit> m_unit;
    std::unique_ptr<MxShm> m_shm;
};

static const RegisteredTest<TestFiles> registered;
#include "testfiles.moc"
