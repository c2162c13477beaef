#include "routing.h"

#include "mxshm.h"
#include "testregistry.h"

#include <QTest>
#include <memory>
#include <random>

/// The routing operations against a model of one vector, with outputs far outside the matrix among the
/// arguments.
class TestRouting : public QObject
{
    Q_OBJECT

private slots:
    void randomWalkAgreesWithModel_data()
    {
        QTest::addColumn<int>("ports");
        for (const int ports : {2, 10, 41, 160}) {
            QTest::newRow(QByteArray::number(ports).constData()) << ports;
        }
    }

    void randomWalkAgreesWithModel()
    {
        QFETCH(int, ports);
        const auto shm = std::make_unique<MxShm>();
        shm->port = ports;
        std::vector<quint16> model(1024, 0);
        std::mt19937 random(20261122);
        const auto any = [&](int limit) {
            return static_cast<quint16>(random() % static_cast<unsigned>(limit));
        };
        const auto set = [&](int output, quint16 input) {
            if (output < ports) {
                model[static_cast<size_t>(output)] = input;
            }
        };
        for (int step = 0; step < 2000; ++step) {
            const quint16 input = random() % 8 == 0 ? MxNoInput : any(ports + 3);
            const quint16 outputs[] = {any(ports), any(ports), any(0x10000), 0xFFFF,
                                       static_cast<quint16>(ports)};
            switch (random() % 6) {
            case 0:
                Routing::oneToOne(*shm, input, outputs[step % 5]);
                set(outputs[step % 5], input);
                break;
            case 1:
                Routing::oneToSome(*shm, input, outputs, step % 7 - 1);
                for (int i = 0; i < step % 7 - 1; ++i) {
                    set(outputs[i], input);
                }
                break;
            case 2:
                Routing::oneToNone(*shm, input);
                std::replace(model.begin(), model.begin() + ports, input, MxNoInput);
                break;
            case 3: {
                std::vector<quint16> map(static_cast<size_t>(ports));
                for (int o = 0; o < ports; ++o) {
                    map[static_cast<size_t>(o)] = any(0x10000);
                    set(o, map[static_cast<size_t>(o)]);
                }
                Routing::setMap(*shm, map.data());
                break;
            }
            case 4:
                Routing::allToAll(*shm);
                for (int o = 0; o < ports; ++o) {
                    set(o, static_cast<quint16>(o));
                }
                break;
            default:
                input == MxNoInput ? Routing::allToNone(*shm) : Routing::oneToAll(*shm, input);
                std::fill(model.begin(), model.begin() + ports, input);
            }
            for (int o = 0; o < 1024; ++o) {
                QCOMPARE(quint16(shm->map[o]), model[static_cast<size_t>(o)]);
            }
        }
        for (int o = 0; o < 1024; ++o) {
            QCOMPARE(int(shm->sceneMap[1][o]), 0);
        }
    }
};

static const RegisteredTest<TestRouting> registered;
#include "testrouting.moc"
