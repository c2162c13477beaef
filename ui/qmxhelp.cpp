#include "qmxhelp.h"

#include "mxshm.h"
#include "page.h"
#include "touchbutton.h"

#include <QFile>

namespace
{
enum Action { Back, Forward, Return };
constexpr QSize ButtonSize(75, 70);
constexpr int ButtonsTop = 420;

QString pictureOf(int page)
{
    return QStringLiteral("./help/%1/%2.png")
        .arg(QString::fromLatin1(g_mxConfig->language.get()), QString::number(page));
}
} // namespace

QMxHelp::QMxHelp(QWidget *parent)
    : QWidget(parent)
    , m_buttons(new QButtonGroup(this))
    , m_sheet(new QWidget(this))
{
    hide();
    resize(PageSize);
    connectClicks(m_buttons, this, &QMxHelp::OnActionPressed);
    m_sheet->resize(PageSize);
    m_sheet->setStyleSheet(QStringLiteral("background-color: #ffffff;"));
    addButton("<<", Back, 765);
    addButton(">>", Forward, 850);
    addButton("Return", Return, 935);
}

void QMxHelp::addButton(const char *text, int id, int x)
{
    auto *button = new TouchButton(ButtonSize, QLatin1String(text), TouchButton::Plain, this);
    button->move(x, ButtonsTop);
    m_buttons->addButton(button, id);
}

void QMxHelp::show()
{
    QWidget::show();
    showPage();
}

void QMxHelp::showPage()
{
    m_sheet->setStyleSheet(
        QStringLiteral("background-color: #ffffff; background-image: url(%1);").arg(pictureOf(m_page)));
}

void QMxHelp::OnActionPressed(int id)
{
    if (id == Forward && QFile::exists(pictureOf(m_page + 1))) {
        ++m_page;
        showPage();
    } else if (id == Back && m_page > 1) {
        --m_page;
        showPage();
    } else if (id == Return) {
        hide();
    }
}
