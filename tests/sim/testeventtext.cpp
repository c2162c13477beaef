#include "eventtext.h"
#include "testregistry.h"

#include <QTest>

Q_DECLARE_METATYPE(std::vector<uint16_t>)

class TestEventText : public QObject
{
    Q_OBJECT

private slots:
    void switches_data();
    void switches();
    void otherEvents();
};

void TestEventText::switches_data()
{
    QTest::addColumn<std::vector<uint16_t>>("before");
    QTest::addColumn<std::vector<uint16_t>>("after");
    QTest::addColumn<QString>("text");

    using Inputs = std::vector<uint16_t>;
    const Inputs none;
    const Inputs dark(6, 0xFFFF);
    QTest::newRow("first, all dark") << none << dark << "switch   outputs 1-6 dark";
    QTest::newRow("first, whole routing") << none << Inputs{0, 0, 0, 1, 0xFFFF, 2}
                                          << "switch   input 1 on outputs 1-3; input 2 on output 4; "
                                             "input 3 on output 6; output 5 dark";
    QTest::newRow("only what changed")
        << Inputs{0, 1, 2} << Inputs{0, 2, 2} << "switch   input 3 on output 2";
    QTest::newRow("two apart") << dark << Inputs{2, 0xFFFF, 0xFFFF, 2, 0xFFFF, 0xFFFF}
                               << "switch   input 3 on outputs 1, 4";
    QTest::newRow("two together") << dark << Inputs{159, 159, 0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF}
                                  << "switch   input 160 on outputs 1-2";
    QTest::newRow("runs") << dark << Inputs{0, 0xFFFF, 0, 0, 0, 0xFFFF}
                          << "switch   input 1 on outputs 1, 3-5";
    QTest::newRow("nothing") << dark << dark << "switch   no change";
}

void TestEventText::switches()
{
    QFETCH(std::vector<uint16_t>, before);
    QFETCH(std::vector<uint16_t>, after);
    QFETCH(QString, text);

    sim::EventText words;
    if (!before.empty()) {
        words.line(sim::SwitchFrame{0, before});
    }
    QCOMPARE(QString::fromStdString(words.line(sim::SwitchFrame{0, after})), text);
}

void TestEventText::otherEvents()
{
    sim::EventText words;
    QCOMPARE(words.line(sim::SpliceFrame{0, {1, 2}}), std::string("splice   2 words"));
    QCOMPARE(words.line(sim::PassedFrame{0, {0xEB, 0x90, 0, 5, 0}}), std::string("passed   EB 90 00 05 00"));
    QCOMPARE(words.line(sim::PassedFrame{0, std::vector<uint8_t>(17, 0x1F)}),
             std::string("passed   1F 1F 1F 1F 1F 1F 1F 1F 1F 1F 1F 1F 1F 1F 1F 1F ... (17 bytes)"));
    QCOMPARE(words.line(sim::WireFault{0, "why"}), std::string("fault    why"));

    // The buzzer's line tells when it rises, no other line does.
    std::string heard;
    for (const auto &[line, level] : {std::pair(4, 0), {8, 1}, {4, 1}, {4, 1}, {4, 0}, {4, 1}}) {
        heard += words.line(sim::LineWrite{0, line, level}) + ".";
    }
    QCOMPARE(heard, std::string("..buzzer...buzzer."));
}

static const RegisteredTest<TestEventText> registered;

#include "testeventtext.moc"
