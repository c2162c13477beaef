#include "bareunit.h"
#include "fuzz.h"
#include "gpio.h"
#include "matrixlink.h"
#include "matrixsender.h"
#include "qmxcomm.h"
#include "qmxscene.h"
#include "qmxsetup.h"
#include "qmxstatus.h"
#include "qmxswitch.h"

#include <QApplication>
#include <QImage>
#include <QMouseEvent>
#include <QTimerEvent>
#include <memory>
#include <sys/mman.h>
#include <unistd.h>

namespace
{
/// The sender, and what it has sent in a pass: nothing, or whole frames of the matrix, whatever size it has.
class Board
{
public:
    explicit Board(MxShm &record)
        : m_record(record)
        , m_sender(record, m_link, m_gpio)
    {
        m_link.adopt(m_sent);
    }
    void pass(int ms)
    {
        const int ports = portCount(m_record);
        m_sender.step(m_now += static_cast<quint32>(ms));
        const auto sent = ::lseek(m_sent, 0, SEEK_CUR);
        const int map = 2 * (4 * ports + 10);
        const int splice = 4 * ports + 7;
        require(sent == 0 || sent == map || sent == splice || sent == map + splice);
        ::lseek(m_sent, 0, SEEK_SET);
    }

private:
    const int m_sent = ::memfd_create("sent", MFD_CLOEXEC);
    quint32 m_now = 10000;
    MxShm &m_record;
    MatrixLink m_link;
    Gpio m_gpio;
    MatrixSender m_sender;
};

std::unique_ptr<QWidget> makePage(int page)
{
    QWidget *const made = page == 0   ? static_cast<QWidget *>(new QMxSwitch)
                          : page == 1 ? static_cast<QWidget *>(new QMxScene)
                          : page == 2 ? static_cast<QWidget *>(new QMxSetup)
                                      : new QMxStatus;
    made->setFixedSize(1024, 505);
    made->show();
    return std::unique_ptr<QWidget>(made);
}

void paint(QWidget &page)
{
    static QImage image(1024, 505, QImage::Format_RGB32);
    page.render(&image);
}

void touch(QWidget &page, const QPoint &place)
{
    QWidget *const touched = page.childAt(place);
    for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        if (touched != nullptr) {
            QMouseEvent event(type, touched->mapFrom(&page, place), Qt::LeftButton, Qt::LeftButton,
                              Qt::NoModifier);
            QCoreApplication::sendEvent(touched, &event);
        }
    }
}

/// Nothing that an operation has left for the event loop stays for the next input.
void settle()
{
    for (int turn = 0; turn < 5; ++turn) {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

void makeApplication()
{
    static int count = 1;
    static char name[] = "fuzz";
    static char *names[] = {name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static const QApplication application(count, names);
    // Pictures that are not there are no finding.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
}
} // namespace

/// Another process writes the record while it is sent to the board and shown on a page that fingers touch.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const bool isPrepared = (makeApplication(), true);
    Q_UNUSED(isPrepared)
    Input input(data, size);
    MxShm &record = newRecord(2 + input.below(20), 10);
    disturb(record, input);
    Board board(record);
    std::unique_ptr<QWidget> page = makePage(input.below(4));
    for (int action = 0; action < 10 && !input.isEmpty(); ++action) {
        switch (input.below(6)) {
        case 0:
            disturb(record, input);
            break;
        case 1:
            board.pass(16 * input.byte());
            break;
        case 2: {
            QTimerEvent tick(-1);
            QCoreApplication::sendEvent(page.get(), &tick);
            break;
        }
        case 3:
            paint(*page);
            break;
        case 4: {
            const int x = 4 * input.byte();
            touch(*page, {x, 2 * input.byte()});
            break;
        }
        case 5:
            emit g_mxComm->OnLoadCaption();
            emit g_mxComm->OnLoadConfig();
        }
    }
    board.pass(2000);
    paint(*page);
    page.reset();
    settle();
    return 0;
}
