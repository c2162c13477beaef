#include "fuzz.h"
#include "fuzzunit.h"
#include "gpio.h"
#include "matrixlink.h"
#include "matrixsender.h"
#include "qmxcomm.h"
#include "qmxscene.h"
#include "qmxsetup.h"
#include "qmxstatus.h"
#include "qmxswitch.h"

#include <QApplication>
#include <QPixmap>
#include <QMouseEvent>
#include <QTimerEvent>
#include <memory>
#include <sys/mman.h>
#include <unistd.h>

namespace
{
/// What is sent to the board, and when.
struct Board {
    explicit Board(MxShm &record)
        : sender(record, link, gpio)
    {
    }

    const int sent = ::memfd_create("sent", MFD_CLOEXEC);
    quint32 now = 10000;
    MatrixLink link;
    Gpio gpio;
    MatrixSender sender;
};

/// Sends nothing, or whole frames of the matrix, whatever size it has.
void pass(Board &board, int ms, int ports)
{
    board.sender.step(board.now += static_cast<quint32>(ms));
    const auto sent = ::lseek(board.sent, 0, SEEK_CUR);
    const int map = 2 * (4 * ports + 10);
    const int splice = 4 * ports + 7;
    require(sent == 0 || sent == map || sent == splice || sent == map + splice);
    ::lseek(board.sent, 0, SEEK_SET);
}

QWidget *makePage(int page)
{
    switch (page) {
    case 0:
        return new QMxSwitch;
    case 1:
        return new QMxScene;
    case 2:
        return new QMxSetup;
    default:
        return new QMxStatus;
    }
}

void touch(QWidget &page, const QPoint &place)
{
    QWidget *const child = page.childAt(place);
    QWidget *const touched = child != nullptr ? child : &page;
    for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        QMouseEvent event(type, touched->mapFrom(&page, place), Qt::LeftButton, Qt::LeftButton, {});
        QCoreApplication::sendEvent(touched, &event);
    }
}
} // namespace

/// Another process writes the record while it is sent to the board and shown on a page that fingers touch.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static int count = 0;
    static const QApplication application(count, nullptr);
    // Pictures that are not there are no finding.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    Input input(data, size);
    MxShm &record = newRecord(2 + input.below(20), 10);
    disturb(record, input);
    Board board(record);
    board.link.adopt(board.sent);
    std::unique_ptr<QWidget> page(makePage(input.below(4)));
    page->setFixedSize(1024, 505);
    page->show();
    for (int action = 0; action < 10 && !input.isEmpty(); ++action) {
        switch (input.below(6)) {
        case 0:
            disturb(record, input);
            break;
        case 1:
            pass(board, 16 * input.byte(), portCount(record));
            break;
        case 2: {
            QTimerEvent tick(-1);
            QCoreApplication::sendEvent(page.get(), &tick);
            break;
        }
        case 3:
            page->grab();
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
    pass(board, 2000, portCount(record));
    page->grab();
    page.reset();
    for (int turn = 0; turn < 5; ++turn) { // nothing is left for the next input
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    return 0;
}
