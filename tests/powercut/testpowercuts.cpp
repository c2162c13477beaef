#include "captionstore.h"
#include "cutstates.h"
#include "product.h"
#include "rows.h"
#include "scenestore.h"
#include "settingsstore.h"
#include "sharedobjects.h"
#include "testregistry.h"
#include "testunit.h"

#include <QCryptographicHash>
#include <QDir>
#include <QTest>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>

namespace
{
constexpr int Rounds = 2;
constexpr const char *Folders[] = {"/etc", "/home/app/config", "/home/app/data", "/home/www/splice"};

/// What a file has after a cut: what was last saved, what was saved before (and `Late`, when the saver had
/// returned), what it has when it is empty, anything else; or the program does not start.
enum Verdict { New, Old, Late, Empty, Mixture, Other, Verdicts };
constexpr const char *Names[] = {"new ", "old ", "late ", "empty ", "mixture ", "other "};

/// Takes what is printed for its lifetime: thousands of lines that say which scenes there are not.
class Quiet
{
public:
    Quiet()
    {
        std::fflush(stdout);
        const FileDescriptor none(::open("/dev/null", O_WRONLY));
        ::dup2(none.get(), STDOUT_FILENO);
    }
    ~Quiet()
    {
        std::fflush(stdout);
        ::dup2(m_before.get(), STDOUT_FILENO);
    }

private:
    const FileDescriptor m_before{::dup(STDOUT_FILENO)};
};

} // namespace

/// Every state that a power cut may leave of what a saver does twice, and what the program makes of it. With
/// MX_LONG the program is started on each; else its loading code runs in this process, and the program itself
/// on a few.
class TestPowerCuts : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        if (m_everyStart) {
            qunsetenv("TMPDIR"); // on a disk, where a flush takes time
        }
    }

    void cuts_data()
    {
        columns<QByteArray, size_t, size_t, QByteArray, QByteArray>("saver", "from", "to", "file", "spoilt");
        const auto addRow = [](const char *name, const char *saver, size_t from, size_t to,
                               const char *spoilt) { row(name, saver, from, to, "", spoilt); };
        const size_t scene = offsetof(MxShm, map) + 3 * sizeof MxShm::map;
        const size_t words = offsetof(MxShm, spliceData);
        addRow("settings", "settings", 0, offsetof(MxShm, uptime), "");
        addRow("addresses of eth0", "settings", offsetof(MxShm, eth0Address), offsetof(MxShm, eth1Address),
               "");
        addRow("addresses of eth1", "settings", offsetof(MxShm, eth1Address), offsetof(MxShm, reserved2), "");
        addRow("captions", "captions", offsetof(MxShm, inputCaption), offsetof(MxShm, map), "");
        addRow("live map", "live", offsetof(MxShm, map), offsetof(MxShm, map) + 2 * MxMaxPort, "");
        addRow("scene", "scene", scene, scene + 2 * MxMaxPort, "");
        // Longer than a sector, and written in place.
        addRow("splice", "scene", words, words + 4 * MxMaxPort, "mixture ");
        row("layout", "layout", size_t(0), size_t(0), "/home/www/splice/splice3.txt", "mixture ");
        row("layout recalled", "recall", size_t(0), size_t(0), "/home/www/splice/splice.txt", "mixture ");
        addRow("plain QSettings", "qsettings", offsetof(MxShm, inputCaption), offsetof(MxShm, map),
               "late empty ");
        addRow("truncate and write", "truncate", offsetof(MxShm, inputCaption), offsetof(MxShm, map),
               "late empty mixture ");
    }
    void cuts()
    {
        QFETCH(QByteArray, saver);
        TestUnit unit(MxMaxPort);
        m_unit = &unit;
        CutStates states(present());
        std::vector<QByteArray> values = {loaded()};
        std::vector<int> ends = {0};
        for (int round = 1; round <= Rounds; ++round) {
            states.add(recorded(saver, round));
            values.push_back(loaded());
            ends.push_back(states.operations());
            QVERIFY(ends[size_t(round)] > ends[size_t(round - 1)]);
            QVERIFY(values[size_t(round)] != values[size_t(round - 1)]);
        }

        std::map<QByteArray, QByteArray> seen; ///< values by the states that have them
        std::vector<int> counts(Verdicts);
        int all = 0;
        int starts = 0;
        qint64 window = 0;
        size_t round = 1;
        for (int done = 1; done <= states.operations(); ++done) {
            round += done > ends[round];
            const int good = counts[New] + counts[Old];
            const int before = all;
            states.forEach(done, m_everyStart ? 256 : 16, [&](const Files &files) {
                const auto [known, isNew] = seen.try_emplace(hash(files));
                if (isNew) {
                    lay(files);
                    known->second = loaded();
                    if (m_everyStart || seen.size() % 64 == 2) {
                        lay(files);
                        ++starts;
                        if (started() != known->second) {
                            known->second = "no start";
                        }
                    }
                }
                ++all;
                ++counts[verdict(known->second, values, round, done == ends[round])];
            });
            if (counts[New] + counts[Old] - good != all - before && done < ends[round]) {
                window += states.duration(done);
            }
        }
        qInfo("%-20s%6d%8d%8d%8d%8d%8d%8d%8d%8d%8d%8.0f us", QTest::currentDataTag(), states.operations(),
              all, int(seen.size()), starts, counts[New], counts[Old], counts[Late], counts[Empty],
              counts[Mixture], counts[Other], double(window) / Rounds);
        QByteArray spoilt;
        for (int bad = Late; bad < Verdicts; ++bad) {
            spoilt += counts[size_t(bad)] > 0 ? Names[bad] : "";
        }
        QTEST(spoilt, "spoilt");
    }

private:
    static QByteArray hash(const Files &files)
    {
        QCryptographicHash hash(QCryptographicHash::Sha1);
        for (const auto &[path, content] : files) {
            hash.addData(path + '\0' + QByteArray::number(content.size()) + '\0' + content);
        }
        return hash.result();
    }

    static Verdict verdict(const QByteArray &value, const std::vector<QByteArray> &values, size_t round,
                           bool returned)
    {
        if (value == "no start") {
            return Other;
        }
        if (value == values[round]) {
            return New;
        }
        if (value == values[round - 1]) {
            return returned ? Late : Old;
        }
        return value == values[0] ? Empty : Mixture;
    }

    Files present() const
    {
        Files files;
        for (const char *folder : Folders) {
            for (const QString &name : QDir(m_unit->path(folder)).entryList(QDir::Files | QDir::Hidden)) {
                const QByteArray path = folder + ('/' + QFile::encodeName(name));
                files[m_unit->root().toUtf8() + path] = m_unit->fileContent(path.constData());
            }
        }
        return files;
    }
    void lay(const Files &files)
    {
        const int root = m_unit->root().toUtf8().size();
        for (const auto &file : present()) {
            QFile::remove(QFile::decodeName(file.first));
        }
        for (const auto &[path, content] : files) {
            m_unit->makeFolder(path.mid(root, path.lastIndexOf('/') - root).constData());
            m_unit->writeFile(path.constData() + root, content);
            // Settings of the same size and time would not be read again by this process.
            const timespec time[2] = {{++m_laid, 0}, {m_laid, 0}};
            QVERIFY(::utimensat(AT_FDCWD, path.constData(), time, 0) == 0);
        }
    }

    /// What the saver's process did to the unit's files.
    QByteArray recorded(const QByteArray &saver, int round) const
    {
        QFile log(m_unit->path("/log"));
        log.remove();
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("LD_PRELOAD"), QStringLiteral(RECORDER));
        environment.insert(QStringLiteral("MX_CUT_LOG"), log.fileName());
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(SAVER), {QString::fromLatin1(saver), QString::number(round)});
        if (!process.waitForFinished() || process.exitCode() != 0 || !log.open(QIODevice::ReadOnly)) {
            qWarning("no record: %s", process.readAllStandardError().constData());
        }
        return log.readAll();
    }

    /// Of the file, or of the record that was filled from the files.
    QByteArray value(MxShm &shm) const
    {
        QFETCH(size_t, from);
        QFETCH(size_t, to);
        QFETCH(QByteArray, file);
        const QByteArray content = m_unit->fileContent(file.constData());
        const Quiet quiet;
        SceneStore::loadSplice(shm, 3);
        return content + QByteArray(reinterpret_cast<const char *>(&shm) + from, int(to - from));
    }
    /// By the program's own loading code.
    QByteArray loaded() const
    {
        const Quiet quiet;
        const auto shm = std::make_unique<MxShm>();
        SettingsStore::load(*shm);
        CaptionStore::load(*shm);
        SceneStore::load(*shm);
        return value(*shm);
    }
    /// By the program itself.
    QByteArray started() const
    {
        Product product(false);
        SharedObjects objects;
        MxShm *record = product.await("t0 ") ? objects.open() : nullptr;
        if (record == nullptr) {
            return "no start: " + product.errors();
        }
        QByteArray all = value(*record);
        objects.close();
        return all;
    }

    const bool m_everyStart = qEnvironmentVariableIsSet("MX_LONG");
    TestUnit *m_unit = nullptr;
    time_t m_laid = 0;
};

static const RegisteredTest<TestPowerCuts> registered;
#include "testpowercuts.moc"
